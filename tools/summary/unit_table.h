#pragma once

/// @file
/// The distinct units of a summary and their sums. A genome may have a million of them, of hundreds
/// of bases each, so a unit takes 72 bytes, 4 to 8 in the index, and a byte for three of its bases.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "tools/summary/repeat_sums.h"

namespace quorix::tools {

class CUnitTable {
 public:
  /// Returns the sums of a unit, which are zero for a new one; valid as long as this object.
  /// REQUIRES: the letters are ACGTN. Cost: O(length).
  RepeatSums& sums_of(std::string_view unit);

  /// Returns the number of distinct units.
  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  /// Returns the numbers of the commonest units, up to `max_count` of them, or all for 0. First
  /// come those with more repeats, then those with more bases, shorter ones, and the alphabet
  /// decides.
  [[nodiscard]] std::vector<std::uint32_t> commonest(std::size_t max_count) const;

  /// Returns the letters of the unit with a number, which is less than `size()`.
  [[nodiscard]] std::string unit_at(std::uint32_t number) const;

  [[nodiscard]] const RepeatSums& sums_at(std::uint32_t number) const {
    return entries_[number].sums;
  }

 private:
  struct Entry {
    RepeatSums sums;
    std::uint64_t text_begin;   ///< of the packed letters in `texts_`
    std::uint32_t unit_length;  ///< in bp
    std::uint32_t hash;
  };

  void pack(std::string_view unit);
  [[nodiscard]] std::uint32_t packed_hash() const;
  [[nodiscard]] bool has_packed_text(const Entry& entry) const;
  [[nodiscard]] bool comes_before(std::uint32_t left, std::uint32_t right) const;
  void grow_index();

  std::deque<Entry> entries_;       // not moved when it grows, and without spare room
  std::deque<std::uint8_t> texts_;  // three letters a byte
  std::vector<std::uint32_t> index_ = std::vector<std::uint32_t>(kFirstIndexSize, kNoEntry);
  std::string packed_;  // the unit that is looked for

  static constexpr std::size_t kFirstIndexSize = 1024;
  static constexpr std::uint32_t kNoEntry = UINT32_MAX;
};

}  // namespace quorix::tools
