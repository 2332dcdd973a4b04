#include "tools/report/information_line.h"

#include <cmath>
#include <string>

#include "report/repeat_names.h"
#include "tools/report/dna_letters.h"
#include "tools/report/repeat_figures.h"
#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

constexpr std::size_t kClassWidth = 16;
constexpr std::size_t kUnitLengthWidth = 5;
constexpr std::size_t kPositionWidth = 9;
constexpr std::size_t kFigureWidth = 6;
constexpr std::size_t kPerfectionWidth = 7;
constexpr std::size_t kCountWidth = 3;

/// Takes the class of a repeat and the blank after it, and returns the unit length.
std::int64_t take_class(CTextCursor& cursor, bool is_padded) {
  const std::string_view rest = cursor.rest();
  const std::size_t blank_count = std::min(rest.find_first_not_of(' '), rest.size());
  for (std::size_t unit_length = 1; unit_length < REPEAT_NAMES.size(); ++unit_length) {
    const std::string_view name = REPEAT_NAMES[unit_length];
    if (!rest.substr(blank_count).starts_with(name)) continue;
    if (blank_count != (is_padded ? kClassWidth - name.size() : 0)) break;
    cursor.skip(blank_count + name.size());
    cursor.expect(" ");
    return static_cast<std::int64_t>(unit_length);
  }
  const std::int64_t unit_length = cursor.number(is_padded ? kUnitLengthWidth : 0, "-nucleotide ");
  if (unit_length < static_cast<std::int64_t>(REPEAT_NAMES.size())) {
    throw LineFault("the class of units of " + std::to_string(unit_length) + " bases has a name");
  }
  return unit_length;
}

void take_unit(CTextCursor& cursor, Repeat& repeat) {
  cursor.expect(" unit ");
  repeat.unit = cursor.last_word();
  if (!are_base_letters(repeat.unit)) throw LineFault("the unit is not of the letters ACGTN");
  if (static_cast<std::int64_t>(repeat.unit.size()) != repeat.unit_length) {
    throw LineFault("the unit has " + std::to_string(repeat.unit.size()) +
                    " bases, its class has " + std::to_string(repeat.unit_length));
  }
}

/// Takes the columns of both quorix formats, up to the bar after the perfection.
void take_common_columns(CTextCursor& cursor, Repeat& repeat) {
  repeat.unit_length = take_class(cursor, true);
  repeat.start = cursor.number(kPositionWidth, " : ");
  repeat.end = cursor.number(kPositionWidth, " | ");
  const std::int64_t length = cursor.number(kFigureWidth, " bp | ");
  if (length != repeat.length()) throw LineFault("bp is not end - start + 1");
  repeat.normalized_length = cursor.number(kFigureWidth, " BP | ");
  repeat.score = cursor.number(kFigureWidth, " pt | ");
  repeat.perfection = cursor.decimals(kPerfectionWidth, " % |");
}

void take_counts(CTextCursor& cursor, const ReportSettings& settings, Repeat& repeat) {
  cursor.expect(" ");
  repeat.mismatches = cursor.number(kCountWidth, " mis | ");
  repeat.insertions = cursor.number(kCountWidth, " ins | ");
  repeat.deletions = cursor.number(kCountWidth, " del | ");
  repeat.ns = settings.has_n_column() ? cursor.number(kCountWidth, " N | ") : kNotTold;
  if (repeat.normalized_length != repeat.length() - repeat.insertions + repeat.deletions) {
    throw LineFault("BP is not bp - insertions + deletions");
  }
}

/// Takes the columns of the sputnik compatible format, up to the unit.
void take_sputnik_columns(CTextCursor& cursor, Repeat& repeat) {
  repeat.unit_length = take_class(cursor, false);
  repeat.start = cursor.number(0, " : ");
  repeat.end = cursor.number(0, " -- length ");
  repeat.normalized_length = cursor.number(0, " score ");
  repeat.score = cursor.number(0, " perfection ");
  const std::string_view rest = cursor.rest();
  cursor.number(0, "");
  repeat.perfection = rest.substr(0, rest.size() - cursor.rest().size());
}

void check_figures(const Repeat& repeat, const ReportSettings& settings,
                   std::int64_t sequence_length) {
  if (repeat.start < 1 || repeat.end < repeat.start || repeat.end > sequence_length) {
    throw LineFault("the repeat does not lie in its sequence of " +
                    std::to_string(sequence_length) + " bases");
  }
  if (repeat.unit_length < settings.min_unit_length ||
      repeat.unit_length > settings.max_unit_length) {
    throw LineFault("the head has no units of " + std::to_string(repeat.unit_length) + " bases");
  }
  if (repeat.normalized_length < 1) throw LineFault("the normalized length is not positive");
  for (const std::int64_t count :
       {repeat.mismatches, repeat.insertions, repeat.deletions, repeat.ns}) {
    if (count < kNotTold || count > repeat.length() + repeat.normalized_length) {
      throw LineFault("a count of edits is impossible");
    }
  }
}

/// Throws: LineFault unless the perfection follows from the counts, as far as three decimals tell.
void check_perfection(const Repeat& repeat, const ReportSettings& settings) {
  constexpr double kTolerance = 0.000501;
  if (repeat.ns == kNotTold) return;
  std::int64_t matched =
      repeat.normalized_length - repeat.mismatches - repeat.insertions - repeat.deletions;
  std::int64_t counted = repeat.normalized_length;
  if (settings.n_perfection != NPerfection::kMatch) matched -= repeat.ns;
  if (settings.n_perfection == NPerfection::kNeutral) counted -= repeat.ns;
  const double told = perfection_of(repeat);
  const double expected = static_cast<double>(matched) / static_cast<double>(counted) * 100;
  const bool is_right =
      std::isfinite(expected) ? std::abs(told - expected) <= kTolerance : !std::isfinite(told);
  if (!is_right) throw LineFault("the perfection does not follow from the counts of edits");
}

}  // namespace

void read_information(std::string_view line, const ReportSettings& settings,
                      std::int64_t sequence_length, Repeat& repeat) {
  CTextCursor cursor(line);
  if (settings.format == ReportFormat::kSputnik) {
    take_sputnik_columns(cursor, repeat);
  } else {
    take_common_columns(cursor, repeat);
  }
  if (settings.format == ReportFormat::kExtendedQuorix) take_counts(cursor, settings, repeat);
  take_unit(cursor, repeat);
  check_figures(repeat, settings, sequence_length);
  check_perfection(repeat, settings);
}

}  // namespace quorix::tools
