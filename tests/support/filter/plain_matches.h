#pragma once

/// @file
/// Bases that match, told base by base, to hold the kernels that take many at a time against.

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

/// What `common_prefix` gives. REQUIRES: both have `most` bases.
inline std::int64_t plain_prefix(const std::string& left, const std::string& right,
                                 std::int64_t most) {
  std::int64_t count = 0;
  while (count < most &&
         left[static_cast<std::size_t>(count)] == right[static_cast<std::size_t>(count)]) {
    ++count;
  }
  return count;
}

/// What `common_suffix` gives. REQUIRES: both have `most` bases.
inline std::int64_t plain_suffix(const std::string& left, const std::string& right,
                                 std::int64_t most) {
  return plain_prefix({left.rbegin(), left.rend()}, {right.rbegin(), right.rend()}, most);
}

}  // namespace quorix::testing
