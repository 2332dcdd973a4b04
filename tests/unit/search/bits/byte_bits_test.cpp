// Letters taken apart, eight at a time.

#include "search/bits/byte_bits.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorix {
namespace {

TEST(ByteBits, loads_the_first_byte_lowest) {
  EXPECT_EQ(load_eight("\x01\x02\x03\x04\x05\x06\x07\x08"), 0x0807060504030201U);
}

TEST(ByteBits, loads_no_more_than_it_is_asked_for) {
  for (std::size_t count = 0; count <= 8; ++count) {
    const std::vector<char> bases(count, '\x7F');  // a block of exactly that size
    const std::uint64_t all = 0x7F7F7F7F7F7F7F7FU;
    const std::uint64_t expected = count == 8 ? all : all & ~(~std::uint64_t{0} << (8 * count));
    EXPECT_EQ(load_up_to_eight(bases.data(), static_cast<std::int64_t>(count)), expected);
  }
}

TEST(ByteBits, reverses_bytes) {
  EXPECT_EQ(reverse_bytes(0x0102030405060708U), 0x0807060504030201U);
}

TEST(ByteBits, gathers_the_lowest_bit_of_each_byte) {
  for (std::uint64_t bits = 0; bits < 256; ++bits) {
    std::uint64_t bytes = 0;
    for (unsigned i = 0; i < 8; ++i) bytes |= ((bits >> i & 1U) | 0xFEU) << (8 * i);
    EXPECT_EQ(gather_lowest_bits(bytes), bits);
  }
}

TEST(ByteBits, knows_Ns_by_one_bit) {
  EXPECT_EQ(load_eight("ACGTNTGC") & kNBits, 0x0000000800000000U);
}

}  // namespace
}  // namespace quorix
