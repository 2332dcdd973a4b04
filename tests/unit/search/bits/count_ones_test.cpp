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

}  // namespace
}  // namespace quorix::testing
