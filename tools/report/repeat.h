#pragma once

/// @file
/// One repeat of a report, as it stands there. Positions are 1-based, and both ends belong to the
/// repeat.

#include <cstdint>
#include <string_view>

namespace quorix::tools {

/// A count that a report's format does not tell.
inline constexpr std::int64_t kNotTold = -1;

/// Texts lie in the buffer of the reader, and end with its next call. An empty text is one that the
/// report does not tell, except `edits`, which `tells_edits` explains.
struct Repeat {
  std::int64_t ordinal = 0;  ///< among the repeats of its record, from 1
  std::int64_t unit_length = 0;
  std::int64_t start = 0;
  std::int64_t end = 0;                ///< inclusive
  std::int64_t normalized_length = 0;  ///< bases - insertions + deletions
  std::int64_t score = 0;
  std::int64_t mismatches = kNotTold;
  std::int64_t insertions = kNotTold;
  std::int64_t deletions = kNotTold;
  std::int64_t ns = kNotTold;
  bool tells_edits = false;
  std::string_view perfection;  ///< in percent, as printed, without blanks; may be "nan"
  std::string_view unit;        ///< as printed
  std::string_view motif;       ///< the unit on the forward strand, from the first base on
  std::string_view edits;       ///< "(13,I),(20,M),", empty if there are none
  std::string_view bases;       ///< with '-' for deletions if there is an alignment
  std::string_view marks;
  std::string_view aligned_unit;
  std::string_view left_flank;
  std::string_view right_flank;

  [[nodiscard]] std::int64_t length() const { return end - start + 1; }
};

/// The members of a repeat that are texts.
inline constexpr std::string_view Repeat::*kRepeatTexts[] = {
    &Repeat::perfection,   &Repeat::unit,       &Repeat::motif,
    &Repeat::edits,        &Repeat::bases,      &Repeat::marks,
    &Repeat::aligned_unit, &Repeat::left_flank, &Repeat::right_flank};

/// The record that repeats belong to.
struct ReportedSequence {
  std::string_view name;    ///< the whole header, valid until the next record
  std::int64_t length = 0;  ///< in bp
  std::uint64_t line = 0;   ///< of its name in the report, from 1
};

}  // namespace quorix::tools
