#pragma once

/// @file
/// What the bytes of a sequence line stand for. A table and not the C library's classification,
/// which would follow the locale.

#include <cstddef>

namespace quorix {

/// What `base_of` gives for a byte that stands for no base: white space, '-' and '*' are dropped,
/// all others are not allowed.
inline constexpr char kDroppedLetter = '-';
inline constexpr char kNoLetter = '\0';

/// The base that a byte, 0 to 255, stands for, of A, C, G, T and N; or one of the two above. Case
/// does not matter; U is T, the ambiguity codes RYKMSWBDHVX are N.
[[nodiscard]] char base_of(int byte);

/// Writes the bases of [letters, letters + count) to `bases`, up to the first letter that stands
/// for none. Gives how many these are; what is written behind them, within `count`, is undefined.
/// REQUIRES: the two do not overlap.
[[nodiscard]] std::size_t copy_bases(const char* letters, std::size_t count, char* bases);

}  // namespace quorix
