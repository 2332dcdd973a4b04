#pragma once

/// @file
/// How far two stretches of bases agree, eight bases at a time.

#include <bit>
#include <cstdint>
#include <cstring>

namespace quorix {

/// The number of bases, `max_count` at most, that agree from `left` and `right` on upwards.
[[nodiscard]] inline std::int64_t common_prefix(const char* left, const char* right,
                                                std::int64_t max_count) {
  std::int64_t count = 0;
  if constexpr (std::endian::native == std::endian::little) {
    for (; count + 8 <= max_count; count += 8) {
      std::uint64_t left_bases = 0;
      std::uint64_t right_bases = 0;
      std::memcpy(&left_bases, left + count, 8);
      std::memcpy(&right_bases, right + count, 8);
      const std::uint64_t difference = left_bases ^ right_bases;
      if (difference != 0) return count + std::countr_zero(difference) / 8;
    }
  }
  while (count < max_count && left[count] == right[count]) ++count;
  return count;
}

/// The number of bases, `max_count` at most, that agree from before `left_end` and `right_end`
/// on downwards.
[[nodiscard]] inline std::int64_t common_suffix(const char* left_end, const char* right_end,
                                                std::int64_t max_count) {
  std::int64_t count = 0;
  if constexpr (std::endian::native == std::endian::little) {
    for (; count + 8 <= max_count; count += 8) {
      std::uint64_t left_bases = 0;
      std::uint64_t right_bases = 0;
      std::memcpy(&left_bases, left_end - count - 8, 8);
      std::memcpy(&right_bases, right_end - count - 8, 8);
      const std::uint64_t difference = left_bases ^ right_bases;
      if (difference != 0) return count + std::countl_zero(difference) / 8;
    }
  }
  while (count < max_count && left_end[-1 - count] == right_end[-1 - count]) ++count;
  return count;
}

}  // namespace quorix
