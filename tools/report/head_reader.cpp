// The lines come in a fixed order. Two conditions decide which of them are there: a report on
// standard output has no name, and mode `exact` has no edits to score. The labels are those of the
// program, its two odd spellings included.

#include "tools/report/head_reader.h"

#include <array>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

/// A value and its text in the head.
template <class Value>
using Words = std::pair<std::string_view, Value>;

constexpr std::array<Words<SearchMode>, 3> kSearchModes{{
    {"exact repeats", SearchMode::kExact},
    {"exact repeats which are extended to imperfect repeats", SearchMode::kExtendExact},
    {"imperfect repeats", SearchMode::kImperfect},
}};
constexpr std::array<Words<bool>, 2> kYesOrNo{{{"yes", true}, {"no", false}}};
constexpr std::array<Words<bool>, 2> kNTreatments{{{"missense", true}, {"neutral", false}}};
constexpr std::array<Words<NPerfection>, 3> kNPerfections{{
    {"asMismatch", NPerfection::kMismatch},
    {"asNeutral", NPerfection::kNeutral},
    {"asMatch", NPerfection::kMatch},
}};
constexpr std::array<Words<UnitForm>, 3> kUnitForms{{
    {"as they are", UnitForm::kAsFound},
    {"alphabetical normal form", UnitForm::kAlphabetical},
    {"alphabetical normal form using reverse complement", UnitForm::kAlphabeticalBothStrands},
}};
constexpr std::array<Words<ReportFormat>, 3> kFormats{{
    {"quorix format", ReportFormat::kQuorix},
    {"extended quorix format", ReportFormat::kExtendedQuorix},
    {"sputnik compatible format", ReportFormat::kSputnik},
}};
constexpr std::array<Words<SequenceMode>, 3> kSequenceModes{{
    {"don't print sequence", SequenceMode::kNone},
    {"print sequence", SequenceMode::kBases},
    {"print alignment", SequenceMode::kAlignment},
}};

/// Returns the value of a text. Throws: LineFault if the table does not have it.
template <class Value, std::size_t kCount>
Value value_of(const std::array<Words<Value>, kCount>& table, std::string_view text) {
  for (const auto& [words, value] : table) {
    if (words == text) return value;
  }
  throw LineFault("\"" + std::string(text) + "\" is no value of this setting");
}

/// Takes a number at the cursor. Throws: LineFault if there is none that fits its type.
template <class Number>
Number take_number(CTextCursor& cursor) {
  const std::string_view text = cursor.rest();
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) throw LineFault("\"" + std::string(text) + "\" is no number that fits");
  cursor.take(text.substr(0, static_cast<std::size_t>(end - text.data())));
  return number;
}

template <class Number>
Number number_of(std::string_view text) {
  CTextCursor cursor(text);
  const auto number = take_number<Number>(cursor);
  cursor.expect_end();
  return number;
}

Threshold threshold_of(std::string_view text) {
  Threshold threshold;
  CTextCursor cursor(text);
  cursor.expect("maximum (");
  threshold.constant = take_number<std::int32_t>(cursor);
  cursor.expect(", ");
  threshold.offset = take_number<std::int32_t>(cursor);
  cursor.expect("+");
  threshold.factor = take_number<double>(cursor);
  cursor.expect("*unitlength )");
  cursor.expect_end();
  return threshold;
}

/// Takes the lines of the head one by one.
class CHeadLines {
 public:
  explicit CHeadLines(CReportLines& lines) : lines_(lines) {}

  /// Takes a whole line after its "# ".
  void expect(std::string_view text) {
    CTextCursor cursor(lines_.next());
    cursor.expect("# ");
    cursor.expect(text);
    cursor.expect_end();
  }

  /// Takes the line with a label and returns its value.
  std::string_view value(std::string_view label) {
    CTextCursor cursor(is_line_left_ ? line_ : lines_.next());
    is_line_left_ = false;
    cursor.expect("# ");
    cursor.expect(label);
    return cursor.rest();
  }

  /// Takes the line with a label if it comes next, and makes `value` its value.
  bool optional_value(std::string_view label, std::string_view& value) {
    line_ = lines_.next();
    CTextCursor cursor(line_);
    is_line_left_ = !cursor.take("# ") || !cursor.take(label);
    if (!is_line_left_) value = cursor.rest();
    return !is_line_left_;
  }

 private:
  CReportLines& lines_;
  std::string_view line_;
  bool is_line_left_ = false;
};

void read_files(CHeadLines& head, ReportSettings& settings) {
  settings.input_name = head.value("Input file name:                    ");
  std::string_view output_name;
  if (head.optional_value("Output file name:                   ", output_name)) {
    settings.output_name = output_name;
  }
}

void read_range(CHeadLines& head, ReportSettings& settings) {
  CTextCursor cursor(head.value("   Sequence range to process:       "));
  settings.first_sequence = take_number<std::uint32_t>(cursor);
  cursor.expect(" - ");
  if (cursor.rest() == "last sequence") return;
  settings.last_sequence = number_of<std::uint32_t>(cursor.rest());
}

void read_search(CHeadLines& head, ReportSettings& settings) {
  settings.search_mode = value_of(kSearchModes, head.value("   Satellites searched for:         "));
  if (settings.search_mode != SearchMode::kExact) {
    settings.recursion_depth =
        number_of<std::int32_t>(head.value("   Recursion depth:                 "));
    const std::string_view reduction = head.value("   Maximum score reduction:         ");
    if (reduction != "-") settings.max_score_reduction = number_of<std::int32_t>(reduction);
  }
  settings.min_unit_length =
      number_of<std::uint32_t>(head.value("   Minimum unit length:             "));
  settings.max_unit_length =
      number_of<std::uint32_t>(head.value("   Maximum unit length:             "));
  settings.min_score = threshold_of(head.value("   Minimum score:                   "));
  settings.min_length = threshold_of(head.value("   Minimum length:                  "));
  settings.treats_ns_as_missense =
      value_of(kNTreatments, head.value("   Treat N's as:                    "));
  settings.max_successive_ns =
      number_of<std::int32_t>(head.value("   Max. succesive N's allowed:      "));
  if (settings.search_mode != SearchMode::kExact) {
    settings.mismatch_score =
        number_of<std::int32_t>(head.value("   Mismatch score:                  "));
    settings.indel_score =
        number_of<std::int32_t>(head.value("   Indel score:                     "));
  }
}

void read_output(CHeadLines& head, ReportSettings& settings) {
  CTextCursor perfection(head.value("   Minimum perfection:              "));
  settings.min_perfection = take_number<double>(perfection);
  perfection.expect(" %");
  perfection.expect_end();
  settings.flank_length =
      number_of<std::int32_t>(head.value("   Number of flanking nucletides:   "));
  settings.removes_overlaps =
      value_of(kYesOrNo, head.value("   Remove mostly overlapping satellites: "));
  settings.masks = value_of(kYesOrNo, head.value("   Write file with masked seq.:     "));
  settings.n_perfection =
      value_of(kNPerfections, head.value("   Computing perfections treat N's: "));
  settings.unit_form = value_of(kUnitForms, head.value("   Report units as:                 "));
  settings.format = value_of(kFormats, head.value("   Output format:                   "));
  settings.sequence_mode =
      value_of(kSequenceModes, head.value("   Print sequence mode:             "));
}

void read_legend(CHeadLines& head, const ReportSettings& settings) {
  int column = 0;
  const auto expect_column = [&](std::string_view meaning) {
    ++column;
    head.expect((column < 10 ? "Column  " : "Column ") + std::to_string(column) + ": " +
                std::string(meaning));
  };
  head.expect("");
  head.expect("Columns in lines of output providing repeat information:");
  expect_column("Repeat unit length");
  expect_column("Position at which repeat starts in current sequence");
  expect_column("Position at which repeat ends in current sequence");
  expect_column("Length of repeat in original sequence, i.e. (end-start+1)");
  expect_column("Normalized repeat length, i.e. (end-start+1-insertions+deletions)");
  expect_column("Repeat score");
  expect_column("Repeat perfection");
  if (settings.format == ReportFormat::kExtendedQuorix) {
    expect_column("Number of mismatches");
    expect_column("Number of insertions");
    expect_column("Number of deletions");
    if (settings.has_n_column()) expect_column("Number of N's");
  }
  expect_column("Repeat unit");
  head.expect("");
}

}  // namespace

ReportSettings read_head(CReportLines& lines) {
  ReportSettings settings;
  CHeadLines head(lines);
  head.expect("Results computed with:");
  settings.version = head.value("   Quorix, version ");
  head.expect("Parameter settings used in this search:");
  read_files(head, settings);
  read_range(head, settings);
  read_search(head, settings);
  read_output(head, settings);
  read_legend(head, settings);
  return settings;
}

}  // namespace quorix::tools
