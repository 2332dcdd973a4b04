#pragma once

/// @file
/// The meaning of each byte of a sequence line. A table decides, since the C library's character
/// classes depend on the locale.

#include <cstddef>

namespace quorix {

/// What `base_of` returns for a byte that is no base: white space, '-' and '*' are dropped, all
/// others are errors.
inline constexpr char kDroppedLetter = '-';
inline constexpr char kNoLetter = '\0';

/// Returns the base that a byte, 0 to 255, stands for: A, C, G, T or N; or one of the two letters
/// above. Case does not matter; U is T, the ambiguity codes RYKMSWBDHVX are N.
[[nodiscard]] char base_of(int byte);

/// Writes the bases of [letters, letters + count) to `bases`, up to the first letter that is no
/// base, and returns their number. The rest of the `count` bytes at `bases` is undefined.
/// REQUIRES: the two ranges do not overlap.
[[nodiscard]] std::size_t copy_bases(const char* letters, std::size_t count, char* bases);

}  // namespace quorix
