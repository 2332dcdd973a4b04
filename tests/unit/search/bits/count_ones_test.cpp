#include "search/bits/count_ones.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "support/random_dna.h"

namespace quorix::testing {
namespace {

TEST(CountOnes, is_right_for_each_bit_and_for_runs) {
  for (unsigned first = 0; first < 64; ++first) {
    EXPECT_EQ(count_ones(std::uint64_t{1} << first), 1);
    EXPECT_EQ(count_ones(~std::uint64_t{0} >> first), 64 - static_cast<int>(first));
    EXPECT_EQ(count_ones(~std::uint64_t{0} << first), 64 - static_cast<int>(first));
  }
  EXPECT_EQ(count_ones(0), 0);
}

TEST(CountOnes, agrees_with_the_standard_library) {
  RandomEngine engine(5);
  for (int i = 0; i < 10'000; ++i) {
    const std::uint64_t dense = engine();
    const std::uint64_t sparse = dense & engine() & engine();
    ASSERT_EQ(count_ones(dense), std::popcount(dense));
    ASSERT_EQ(count_ones(sparse), std::popcount(sparse));
  }
}

TEST(CountOnes, counts_from_each_bit_on) {
  RandomEngine engine(32);
  for (int round = 0; round < 2000; ++round) {
    const std::uint64_t word = round == 0 ? 0 : round == 1 ? ~std::uint64_t{0} : engine();
    const OnesFromEachBit ones = ones_from_each_bit(word);
    for (unsigned bit = 0; bit < 64; ++bit) {
      ASSERT_EQ(ones[bit], std::popcount(word >> bit)) << word << " from " << bit;
    }
  }
}

}  // namespace
}  // namespace quorix::testing
