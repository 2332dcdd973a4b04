#pragma once

/// @file
/// Letters of bases taken apart into bits, eight at a time.

#include <bit>
#include <cstdint>
#include <cstring>

namespace quorix {

/// Bits 0 of eight bytes, the first byte's lowest. The product moves each of them to a place of its
/// own in the top byte.
[[nodiscard]] inline std::uint64_t gather_lowest_bits(std::uint64_t bytes) {
  return ((bytes & 0x0101010101010101U) * 0x0102040810204080U) >> 56U;
}

/// Of A, C, G, T and N only N has bit 3 set.
inline constexpr std::uint64_t kNBits = 0x0808080808080808U;

/// Eight bytes, their order reversed.
[[nodiscard]] inline std::uint64_t reverse_bytes(std::uint64_t bytes) {
  bytes = (bytes & 0x00FF00FF00FF00FFU) << 8U | (bytes >> 8U & 0x00FF00FF00FF00FFU);
  bytes = (bytes & 0x0000FFFF0000FFFFU) << 16U | (bytes >> 16U & 0x0000FFFF0000FFFFU);
  return bytes << 32U | bytes >> 32U;
}

/// The eight bytes at `bases`, the first of them lowest.
[[nodiscard]] inline std::uint64_t load_eight(const char* bases) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, bases, sizeof(bytes));
  if constexpr (std::endian::native == std::endian::big) bytes = reverse_bytes(bytes);
  return bytes;
}

/// The first `count` of these, and zeros; at most eight.
[[nodiscard]] inline std::uint64_t load_up_to_eight(const char* bases, std::int64_t count) {
  if (count >= 8) return load_eight(bases);
  std::uint64_t bytes = 0;
  for (std::int64_t i = count; i-- > 0;) bytes = bytes << 8U | static_cast<unsigned char>(bases[i]);
  return bytes;
}

}  // namespace quorix
