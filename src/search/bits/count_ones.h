#pragma once

/// @file
/// The number of ones in a word, without a call. The processors that a portable build is for need
/// not have an instruction for it, so `std::popcount` becomes a call of a library function there.

#include <cstdint>

namespace quorix {

/// Returns the number of ones in `word`. Fields of 2, 4 and 8 bits are added up side by side, and a
/// multiplication adds the bytes.
[[nodiscard]] constexpr int count_ones(std::uint64_t word) {
  word -= word >> 1U & 0x5555'5555'5555'5555U;
  word = (word & 0x3333'3333'3333'3333U) + (word >> 2U & 0x3333'3333'3333'3333U);
  word = (word + (word >> 4U)) & 0x0F0F'0F0F'0F0F'0F0FU;
  return static_cast<int>(word * 0x0101'0101'0101'0101U >> 56U);
}

}  // namespace quorix
