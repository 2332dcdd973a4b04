#pragma once

/// @file
/// The number of ones in a word, without a call. The processors that a portable build is for need
/// not have an instruction for it, so `std::popcount` becomes a call of a library function there.

#include <array>
#include <cstddef>
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

/// For each bit of a word, the ones from it on.
using OnesFromEachBit = std::array<std::uint8_t, 64>;

/// Returns, for each byte, the ones from each of its bits on, as the bytes of a word; the lowest is
/// first.
[[nodiscard]] constexpr std::array<std::uint64_t, 256> make_ones_of_bytes() {
  std::array<std::uint64_t, 256> ones = {};
  for (std::size_t byte = 0; byte < ones.size(); ++byte) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      ones[byte] |= static_cast<std::uint64_t>(count_ones(byte >> bit)) << (8 * bit);
    }
  }
  return ones;
}
inline constexpr std::array<std::uint64_t, 256> kOnesOfByte = make_ones_of_bytes();

/// Returns the number of ones in `word` from each bit on, from the lowest one to the highest.
[[nodiscard]] constexpr OnesFromEachBit ones_from_each_bit(std::uint64_t word) {
  OnesFromEachBit ones = {};
  std::uint64_t above = 0;
  for (std::size_t begin = 64; begin > 0;) {
    begin -= 8;
    const std::uint64_t here = kOnesOfByte[word >> begin & 0xFFU] + above * 0x0101'0101'0101'0101U;
    for (std::size_t bit = 0; bit < 8; ++bit) {
      ones[begin + bit] = static_cast<std::uint8_t>(here >> (8 * bit));
    }
    above = here & 0xFFU;
  }
  return ones;
}

}  // namespace quorix
