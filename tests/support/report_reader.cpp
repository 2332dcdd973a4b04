#include "support/report_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

namespace quorix::testing {

namespace {

constexpr std::array<std::string_view, 6> kClassNames{"mononucleotide",  "dinucleotide",
                                                      "trinucleotide",   "tetranucleotide",
                                                      "pentanucleotide", "hexanucleotide"};

/// The text that is still to be read.
class CReportCursor {
 public:
  explicit CReportCursor(std::string_view text) : text_(text) {}

  [[nodiscard]] bool is_at(std::string_view words) const { return rest().starts_with(words); }

  void expect(std::string_view words) {
    if (!is_at(words)) fail("\"" + std::string(words) + "\"");
    place_ += words.size();
  }

  void skip_blanks() {
    while (is_at(" ")) ++place_;
  }

  std::int64_t number() {
    std::int64_t value = 0;
    const std::string_view digits = rest();
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc()) fail("a number");
    place_ += static_cast<std::size_t>(end - digits.data());
    return value;
  }

  /// A number to the right of its column, and what stands after it.
  std::int64_t figure(std::string_view suffix) {
    skip_blanks();
    const std::int64_t value = number();
    expect(suffix);
    return value;
  }

  /// The text up to `mark`, which is taken as well.
  std::string up_to(std::string_view mark) {
    const std::size_t length = rest().find(mark);
    if (length == std::string_view::npos) fail("\"" + std::string(mark) + "\" at some place");
    const std::string found(rest().substr(0, length));
    place_ += length + mark.size();
    return found;
  }

  std::string line() { return up_to("\n"); }

  void expect_end() const {
    if (!rest().empty()) fail("the end");
  }

  [[noreturn]] void fail(const std::string& expected) const {
    throw std::runtime_error("byte " + std::to_string(place_) + " of the report should be " +
                             expected + ", and what is there is \"" +
                             std::string(rest().substr(0, 60)) + "\"");
  }

 private:
  [[nodiscard]] std::string_view rest() const { return text_.substr(place_); }

  std::string_view text_;
  std::size_t place_ = 0;
};

/// What the head says of the format of repeats.
struct ReportForm {
  std::string format;
  std::string sequence_mode;
  bool has_n_column;
};

/// Reads "# LABEL:   VALUE" lines: the value begins in column 36 after the prefix, or after a
/// label that is longer.
void read_settings(CReportCursor& cursor, ReadReport& report) {
  constexpr std::size_t kValueColumn = 36;
  cursor.expect("# Results computed with:\n# ");
  cursor.skip_blanks();
  cursor.line();
  cursor.expect("# Parameter settings used in this search:\n");
  while (!cursor.is_at("# \n")) {
    cursor.expect("# ");
    const std::string line = cursor.line();
    const std::size_t colon = line.find(':');
    const std::size_t value = std::max(kValueColumn, colon + 2);
    if (colon == std::string::npos || line.size() < value) cursor.fail("a setting before it");
    const std::size_t label = line.find_first_not_of(' ');
    report.settings[line.substr(label, colon - label)] = line.substr(value);
  }
}

void read_columns(CReportCursor& cursor, ReadReport& report) {
  cursor.expect("# \n# Columns in lines of output providing repeat information:\n");
  while (!cursor.is_at("# \n")) {
    cursor.expect("# Column ");
    const std::int64_t column = cursor.figure(": ");
    if (column != static_cast<std::int64_t>(report.columns.size()) + 1) cursor.fail("no gap");
    report.columns.push_back(cursor.line());
  }
  cursor.expect("# \n");
}

std::int64_t read_class(CReportCursor& cursor) {
  cursor.skip_blanks();
  for (std::size_t i = 0; i < kClassNames.size(); ++i) {
    if (cursor.is_at(kClassNames[i])) {
      cursor.expect(kClassNames[i]);
      return static_cast<std::int64_t>(i) + 1;
    }
  }
  return cursor.figure("-nucleotide");
}

std::vector<ReadEdit> read_edits(CReportCursor& cursor) {
  std::vector<ReadEdit> edits;
  cursor.expect("Missense: ");
  while (cursor.is_at("(")) {
    cursor.expect("(");
    const std::int64_t position = cursor.figure(",");
    const std::string kind = cursor.up_to("),");
    if (kind.size() != 1) cursor.fail("one letter before it");
    edits.push_back({position, kind.front()});
  }
  cursor.expect("\n");
  return edits;
}

void read_padded_line(CReportCursor& cursor, const ReportForm& form, ReadRepeat& repeat) {
  repeat.first_position = cursor.figure(" : ");
  repeat.last_position = cursor.figure(" | ");
  repeat.length = cursor.figure(" bp | ");
  repeat.normalized_length = cursor.figure(" BP | ");
  repeat.score = cursor.figure(" pt | ");
  cursor.skip_blanks();
  repeat.perfection = cursor.up_to(" % |");
  if (form.format == "extended quorix format") {
    repeat.mismatches = cursor.figure(" mis | ");
    repeat.insertions = cursor.figure(" ins | ");
    repeat.deletions = cursor.figure(" del | ");
    if (form.has_n_column) repeat.n_count = cursor.figure(" N | ");
  }
  cursor.expect(" unit ");
  repeat.unit = cursor.line();
  if (form.format == "extended quorix format") repeat.edits = read_edits(cursor);
}

void read_sputnik_line(CReportCursor& cursor, ReadRepeat& repeat) {
  repeat.first_position = cursor.figure(" : ");
  repeat.last_position = cursor.figure(" -- length ");
  repeat.normalized_length = cursor.figure(" score ");
  repeat.score = cursor.figure(" perfection ");
  repeat.perfection = std::to_string(cursor.figure(" unit "));
  repeat.unit = cursor.line();
}

ReadRepeat read_repeat(CReportCursor& cursor, const ReportForm& form) {
  ReadRepeat repeat{};
  repeat.unit_length = read_class(cursor);
  if (form.format == "sputnik compatible format") {
    read_sputnik_line(cursor, repeat);
  } else {
    read_padded_line(cursor, form, repeat);
  }
  const std::size_t line_count = form.sequence_mode == "print alignment"  ? 3
                                 : form.sequence_mode == "print sequence" ? 1
                                                                          : 0;
  while (repeat.lines.size() < line_count) repeat.lines.push_back(cursor.line());
  return repeat;
}

ReadBlock read_block(CReportCursor& cursor, const ReportForm& form) {
  constexpr std::string_view kEnd = "# Analysis of sequence \"";
  ReadBlock block;
  cursor.expect(">");
  block.name = cursor.line();
  cursor.expect("sequence length: ");
  block.sequence_length = cursor.figure("\n");
  while (!cursor.is_at(kEnd)) block.repeats.push_back(read_repeat(cursor, form));
  cursor.expect(kEnd);
  cursor.expect(block.name);
  cursor.expect("\" completed.\n");
  return block;
}

}  // namespace

ReadReport read_report(std::string_view text) {
  CReportCursor cursor(text);
  ReadReport report;
  read_settings(cursor, report);
  read_columns(cursor, report);
  const ReportForm form{report.settings["Output format"], report.settings["Print sequence mode"],
                        report.settings["Treat N's as"] == "neutral"};
  while (!cursor.is_at("## ")) report.blocks.push_back(read_block(cursor, form));
  cursor.expect("## Finished successfully. ##\n");
  cursor.expect_end();
  return report;
}

}  // namespace quorix::testing
