// tsv and jsonl on random reports of every kind: what is read back is what the report says.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "support/engine_comparison.h"
#include "support/random_options.h"
#include "tools/commands/convert_command.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

using Row = std::vector<std::string>;

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

std::string or_dot(const std::string& text) {
  return text.empty() ? "." : text;
}

std::string count_text(std::int64_t count) {
  return count == tools::kNotTold ? "." : std::to_string(count);
}

bool is_number(const std::string& perfection) {
  return perfection.find('n') == std::string::npos;
}

/// The row that a repeat should have, but for the copies.
Row expected_row(const std::string& sequence, const OwnedRepeat& repeat) {
  const tools::Repeat& figures = repeat.figures;
  return {sequence,
          std::to_string(figures.start),
          std::to_string(figures.end),
          std::to_string(figures.unit_length),
          repeat.unit,
          or_dot(repeat.motif),
          "",
          std::to_string(figures.end - figures.start + 1),
          std::to_string(figures.normalized_length),
          std::to_string(figures.score),
          is_number(repeat.perfection) ? repeat.perfection : ".",
          count_text(figures.mismatches),
          count_text(figures.insertions),
          count_text(figures.deletions),
          count_text(figures.ns),
          or_dot(repeat.edits),
          or_dot(repeat.bases),
          or_dot(repeat.aligned_unit)};
}

/// The object of a row: what the report does not tell is left out.
nlohmann::json expected_object(const Row& row, const OwnedRepeat& repeat, const Row& names) {
  nlohmann::json object;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const bool is_text = i == 0 || i == 4 || i == 5 || i >= 16;
    if (names[i] == "copies" || names[i] == "edits" || row[i] == ".") continue;
    if (is_text) {
      object[names[i]] = row[i];
    } else {
      object[names[i]] = nlohmann::json::parse(row[i]);
    }
  }
  if (!repeat.figures.tells_edits) return object;
  object["edits"] = nlohmann::json::array();
  for (const std::string& edit : split(repeat.edits, ')')) {
    if (edit.size() < 4) continue;
    const std::size_t number = edit.find('(') + 1;
    object["edits"].push_back({std::stoll(edit.substr(number)), std::string(1, edit.back())});
  }
  return object;
}

void expect_copies(double copies, const OwnedRepeat& repeat) {
  const auto exact = static_cast<double>(repeat.figures.normalized_length) /
                     static_cast<double>(repeat.figures.unit_length);
  EXPECT_NEAR(copies, exact, 0.00501);
}

void expect_rows(const std::string& tsv, const std::string& jsonl, const OwnedReport& report) {
  const std::vector<std::string> rows = split(tsv, '\n');
  const std::vector<std::string> objects = split(jsonl, '\n');
  ASSERT_FALSE(rows.empty());
  const Row names = split(rows.front(), '\t');
  std::size_t count = 0;
  for (const OwnedSequence& sequence : report.sequences) {
    for (const OwnedRepeat& repeat : sequence.repeats) {
      ASSERT_LT(count, objects.size());
      Row row = split(rows.at(count + 1), '\t');
      ASSERT_EQ(row.size(), names.size());
      expect_copies(std::stod(row[6]), repeat);
      row[6].clear();
      const Row expected = expected_row(sequence.name, repeat);
      EXPECT_EQ(row, expected);

      nlohmann::json object = nlohmann::json::parse(objects[count]);
      expect_copies(object.at("copies"), repeat);
      object.erase("copies");
      EXPECT_EQ(object, expected_object(expected, repeat, names));
      ++count;
    }
  }
  EXPECT_EQ(rows.size(), count + 1);
  EXPECT_EQ(objects.size(), count);
}

TEST(FormatLaws, tsv_and_jsonl_hold_what_the_report_says) {
  silence_standard_error();
  const CToolFolder folder;
  std::size_t repeat_count = 0;
  for (std::uint64_t seed = 1; seed <= 300 && !HasFailure(); ++seed) {
    const RandomReport drawn = draw_report(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + joined(drawn.options));
    tools::ConvertOptions options;
    options.reports.names = {folder.write("in.report", drawn.text)};
    options.reports.has_full_names = true;
    for (const char* const format : {"tsv", "jsonl"}) {
      options.format = format;
      options.output_name = folder.path(format);
      tools::convert(options);
    }
    const OwnedReport report = read_whole(drawn.text);
    for (const OwnedSequence& sequence : report.sequences) repeat_count += sequence.repeats.size();
    expect_rows(folder.read("tsv"), folder.read("jsonl"), report);
  }
  EXPECT_GT(repeat_count, 1000U);
}

}  // namespace
}  // namespace quorix::testing
