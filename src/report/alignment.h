#pragma once

/// @file
/// The alignment of a repeat with perfect copies of its unit, in three lines of equal length: the
/// bases, a mark for each, and the unit.

#include <cstdint>
#include <string>

#include "report/csat.h"

namespace quorix {

/// The bases of a record: [begin, end).
struct SequenceText {
  const char* begin;
  const char* end;
};

/// The bases beside a repeat, cut off at the ends of the sequence: [left_begin, repeat start) and
/// [repeat end, right_end).
struct Flanks {
  const char* left_begin;
  const char* right_end;
};

/// Returns the flanks of `flanking_length` bases on either side. REQUIRES: flanking_length >= 0.
[[nodiscard]] Flanks flanks_of(const Csat& repeat, const SequenceText& text,
                               std::int64_t flanking_length);

/// The lines of an alignment. The mark of a match is '|', of an N that counts as unknown '*', of an
/// edit ' '; '-' stands for a missing base or unit character.
struct Alignment {
  std::string bases;
  std::string marks;
  std::string unit;
};

/// Returns the alignment of a repeat with its unit. With a positive `flanking_length` the base line
/// includes the flanks, each separated from the repeat by a colon. REQUIRES: the edit list is
/// sorted.
[[nodiscard]] Alignment align(const Csat& repeat, const SequenceText& text,
                              std::int64_t flanking_length);

}  // namespace quorix
