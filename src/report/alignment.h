#pragma once

/// @file
/// A repeat set against perfect copies of its unit, in three lines of equal length: the bases, a
/// mark for each, and the unit.

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

/// The flanks of `flanking_length` bases on either side. REQUIRES: flanking_length >= 0.
[[nodiscard]] Flanks flanks_of(const Csat& repeat, const SequenceText& text,
                               std::int64_t flanking_length);

/// The lines of an alignment. A match is marked '|', an N that was walked over '*', an edit ' ';
/// '-' stands for a missing base or a missing unit character.
struct Alignment {
  std::string bases;
  std::string marks;
  std::string unit;
};

/// Aligns a repeat with its unit. With a positive `flanking_length` the flanks stand on the base
/// line, each parted from the repeat by a colon. REQUIRES: the edit list is sorted.
[[nodiscard]] Alignment align(const Csat& repeat, const SequenceText& text,
                              std::int64_t flanking_length);

}  // namespace quorix
