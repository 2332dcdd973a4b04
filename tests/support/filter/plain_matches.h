#pragma once

/// @file
/// Matching bases, compared one by one: the slow twins of the kernels that compare many at once.

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorix::testing {

/// True if base `x` of `text` may equal the one `lag` before it; an N equals every base if
/// `is_N_wild`, else none.
inline bool plain_match(const std::string& text, std::size_t x, std::size_t lag, bool is_N_wild) {
  if (x < lag) return false;
  const bool is_N_there = text[x] == 'N' || text[x - lag] == 'N';
  return is_N_there ? is_N_wild : text[x] == text[x - lag];
}

/// Returns what `common_prefix` should return. REQUIRES: both have `max_count` bases.
inline std::int64_t plain_prefix(const std::string& left, const std::string& right,
                                 std::int64_t max_count) {
  std::int64_t count = 0;
  while (count < max_count &&
         left[static_cast<std::size_t>(count)] == right[static_cast<std::size_t>(count)]) {
    ++count;
  }
  return count;
}

/// Returns what `common_suffix` should return. REQUIRES: both have `max_count` bases.
inline std::int64_t plain_suffix(const std::string& left, const std::string& right,
                                 std::int64_t max_count) {
  return plain_prefix({left.rbegin(), left.rend()}, {right.rbegin(), right.rend()}, max_count);
}

}  // namespace quorix::testing
