#pragma once

/// @file
/// Where a seed may stand: the marks of covered bases and the units that may start a repeat.
///
/// The exact and the imperfect search share both rules. A mark is 'a' while its base is free and
/// ' ' once it lies in a repeat already found. There is one guard mark before the first base and
/// one after the last, both free for ever.

#include <cstdint>
#include <string>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// One mark a base, with a guard at either end.
class CPlainMarks {
 public:
  /// All free, for a record of `base_count` bases.
  explicit CPlainMarks(std::int64_t base_count);

  /// True if the mark at `position` is free; -1 and the base count are the guards.
  [[nodiscard]] bool is_free(std::int64_t position) const;

  /// Closes every base of the repeat, then opens the positions of its edits again.
  void cover(const Repeat& repeat);

  /// Opens every base again.
  void clear();

 private:
  void set(std::int64_t position, char mark);

  std::string marks_;
};

/// True if a unit of `unit_length` bp at `position` may be a seed as far as marks go.
bool is_open_for_seed(const CPlainMarks& marks, std::int64_t position, std::int64_t unit_length);

/// True if the unit [unit_begin, unit_end) may start a repeat: not empty, no N in it and, when it
/// is longer than 1 bp, not one base repeated.
bool is_valid_starting_pattern(const std::string& bases, std::int64_t unit_begin,
                               std::int64_t unit_end);

}  // namespace quorix::reference
