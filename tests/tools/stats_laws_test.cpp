// `stats` on random reports with random filters, beside figures that are counted base by base.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "support/engine_comparison.h"
#include "tools/commands/stats_command.h"
#include "tools/plain_summary.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

using nlohmann::json;

/// Draws filters, each of which is there half of the time.
tools::FilterOptions draw_filters(RandomEngine& engine) {
  tools::FilterOptions filters;
  const auto is_drawn = [&engine] { return draw_between(engine, 0, 1) == 1; };
  if (is_drawn()) filters.unit_lengths = std::to_string(draw_between(engine, 1, 3)) + "-5";
  if (is_drawn()) filters.min_length = static_cast<std::int64_t>(draw_between(engine, 5, 20));
  if (is_drawn()) filters.min_copies = static_cast<double>(draw_between(engine, 2, 5));
  if (is_drawn()) filters.min_score = static_cast<std::int64_t>(draw_between(engine, 3, 12));
  if (is_drawn()) filters.min_perfection = static_cast<double>(draw_between(engine, 60, 100));
  return filters;
}

/// What the filters say in other words.
bool passes(const tools::FilterOptions& filters, const OwnedRepeat& repeat) {
  const tools::Repeat& figures = repeat.figures;
  if (!filters.unit_lengths.empty() &&
      (figures.unit_length < filters.unit_lengths[0] - '0' || figures.unit_length > 5)) {
    return false;
  }
  if (figures.length() < filters.min_length) return false;
  if (static_cast<double>(figures.normalized_length) <
      filters.min_copies * static_cast<double>(figures.unit_length)) {
    return false;
  }
  if (filters.min_score && figures.score < *filters.min_score) return false;
  if (filters.min_perfection <= 0) return true;
  return repeat.perfection.find('n') == std::string::npos &&
         std::stod(repeat.perfection) >= filters.min_perfection;
}

void expect_group(const json& group, const PlainGroup& plain, std::int64_t length) {
  EXPECT_EQ(group.at("repeats"), plain.repeats);
  EXPECT_EQ(group.at("bases"), plain.bases.size());
  EXPECT_NEAR(group.at("copies"), static_cast<double>(plain.copies), 0.00501);
  const double share =
      length == 0 ? 0 : static_cast<double>(plain.bases.size()) / static_cast<double>(length);
  EXPECT_NEAR(group.at("share"), share, 1e-6);
  ASSERT_EQ(group.contains("mean_perfection"), plain.perfections > 0);
  if (plain.perfections == 0) return;
  const long double mean = plain.perfection / static_cast<long double>(plain.perfections);
  EXPECT_NEAR(group.at("mean_perfection"), static_cast<double>(mean), 0.000501);
}

void expect_groups(const json& object, const CPlainSummary& plain, std::int64_t length) {
  for (const json& record : object.at("records")) {
    const auto found = plain.records.find(record.at("sequence"));
    expect_group(record, found == plain.records.end() ? PlainGroup() : found->second,
                 record.at("length"));
  }
  expect_group(object.at("total"), plain.total, length);
  EXPECT_EQ(object.at("total").at("length"), length);
  EXPECT_EQ(object.at("total").at("distinct_units"), plain.units.size());
  ASSERT_EQ(object.at("unit_lengths").size(), plain.unit_lengths.size());
  for (const json& group : object.at("unit_lengths")) {
    expect_group(group, plain.unit_lengths.at(group.at("unit_length")), length);
  }
  ASSERT_EQ(object.at("units").size(), plain.units.size());
  for (const json& group : object.at("units")) {
    const std::string unit = group.at("unit");
    EXPECT_EQ(group.at("unit_length"), unit.size());
    expect_group(group, plain.units.at(unit), length);
  }
}

/// The rows of the tsv as the objects of the JSON, in one list.
std::vector<json> objects_of(const std::string& tsv) {
  std::istringstream lines(tsv);
  std::vector<std::string> names;
  std::vector<json> objects;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream columns(line);
    json object;
    std::size_t i = 0;
    for (std::string column; std::getline(columns, column, '\t'); ++i) {
      if (objects.empty() && names.size() == i) {
        names.push_back(column);
      } else if (i > 0 && column != ".") {
        const bool is_text = names.at(i) == "sequence" || names.at(i) == "unit";
        object[names.at(i)] = is_text ? json(column) : json::parse(column);
      }
    }
    if (!object.is_null()) objects.push_back(object);
  }
  return objects;
}

/// The same without what the tsv does not have.
std::vector<json> rows_of(const json& object) {
  std::vector<json> rows(object.at("records").begin(), object.at("records").end());
  rows.push_back(object.at("total"));
  rows.back().erase("records");
  rows.back().erase("distinct_units");
  for (const char* const key : {"unit_lengths", "units"}) {
    rows.insert(rows.end(), object.at(key).begin(), object.at(key).end());
  }
  return rows;
}

TEST(StatsLaws, figures_are_those_that_are_counted_base_by_base) {
  silence_standard_error();
  const CToolFolder folder;
  std::int64_t taken = 0;
  std::int64_t left_out = 0;
  for (std::uint64_t seed = 1; seed <= 300 && !HasFailure(); ++seed) {
    const RandomReport drawn = draw_report(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + joined(drawn.options));
    RandomEngine engine(seed);
    tools::StatsOptions options;
    options.reports.names = {folder.write("in.report", drawn.text)};
    options.reports.has_full_names = true;
    options.max_unit_count = 0;
    options.filters = draw_filters(engine);
    for (const char* const format : {"json", "tsv"}) {
      options.format = format;
      options.output_name = folder.path(format);
      tools::stats(options);
    }

    CPlainSummary plain;
    std::int64_t length = 0;
    std::vector<std::string> names;
    for (const OwnedSequence& sequence : read_whole(drawn.text).sequences) {
      length += sequence.length;
      names.push_back(sequence.name);
      for (const OwnedRepeat& repeat : sequence.repeats) {
        const bool is_taken = passes(options.filters, repeat);
        if (is_taken) plain.add(sequence.name, repeat);
        ++(is_taken ? taken : left_out);
      }
    }
    const json object = json::parse(folder.read("json"));
    ASSERT_EQ(object.at("records").size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
      EXPECT_EQ(object.at("records")[i].at("sequence"), names[i]);
    }
    expect_groups(object, plain, length);
    EXPECT_EQ(objects_of(folder.read("tsv")), rows_of(object));
  }
  EXPECT_GT(taken, 300);
  EXPECT_GT(left_out, 300);
}

}  // namespace
}  // namespace quorix::testing
