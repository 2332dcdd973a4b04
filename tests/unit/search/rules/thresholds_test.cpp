// The least score or length by unit length.

#include "search/rules/thresholds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace quorix {
namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::uint64_t kLongestUnit = 4294967295U;

TEST(ThresholdRule, gives_the_constant_where_the_linear_term_is_lower) {
  const ThresholdRule rule{6, 2, 0.0F};
  EXPECT_EQ(rule.minimum_for(0), 6);
  EXPECT_EQ(rule.minimum_for(1), 6);
  EXPECT_EQ(rule.minimum_for(1000), 6);
}

TEST(ThresholdRule, gives_the_linear_term_where_it_is_higher) {
  const ThresholdRule rule{6, 0, 1.0F};
  EXPECT_EQ(rule.minimum_for(5), 6);
  EXPECT_EQ(rule.minimum_for(6), 6);
  EXPECT_EQ(rule.minimum_for(7), 7);
}

TEST(ThresholdRule, adds_the_offset_to_the_product) {
  const ThresholdRule rule{1, 3, 2.0F};
  EXPECT_EQ(rule.minimum_for(0), 3);
  EXPECT_EQ(rule.minimum_for(5), 13);
}

TEST(ThresholdRule, rounds_a_fractional_product_up) {
  const ThresholdRule rule{0, 0, 1.5F};
  EXPECT_EQ(rule.minimum_for(1), 2);
  EXPECT_EQ(rule.minimum_for(2), 3);
  EXPECT_EQ(rule.minimum_for(3), 5);
}

TEST(ThresholdRule, rounds_a_negative_sum_up_too) {
  const ThresholdRule rule{-100, -3, 0.5F};
  EXPECT_EQ(rule.minimum_for(1), -2);  // of -2.5
  const ThresholdRule falling{-100, 0, -0.5F};
  EXPECT_EQ(falling.minimum_for(1), 0);   // of -0.5
  EXPECT_EQ(falling.minimum_for(3), -1);  // of -1.5
}

// A float is as near to 0.1 as it can be, which is a little above it; 0.7 is a little below.
TEST(ThresholdRule, multiplies_the_single_precision_factor_as_it_is) {
  const ThresholdRule tenths{0, 0, 0.1F};
  EXPECT_EQ(tenths.minimum_for(9), 1);
  EXPECT_EQ(tenths.minimum_for(10), 2);
  EXPECT_EQ(tenths.minimum_for(20), 3);
  EXPECT_EQ((ThresholdRule{0, 0, 0.7F}).minimum_for(10), 7);
  EXPECT_EQ((ThresholdRule{0, 0, 0.25F}).minimum_for(4), 1);
}

TEST(ThresholdRule, saturates_at_the_highest_32_bit_number) {
  const ThresholdRule rising{0, kHighest - 1, 1.0F};
  EXPECT_EQ(rising.minimum_for(0), kHighest - 1);
  EXPECT_EQ(rising.minimum_for(1), kHighest);
  EXPECT_EQ(rising.minimum_for(2), kHighest);
  EXPECT_EQ((ThresholdRule{0, 0, std::numeric_limits<float>::max()}).minimum_for(kLongestUnit),
            kHighest);
}

TEST(ThresholdRule, saturates_at_the_lowest_32_bit_number) {
  const ThresholdRule falling{kLowest, kLowest + 2, -1.0F};
  EXPECT_EQ(falling.minimum_for(1), kLowest + 1);
  EXPECT_EQ(falling.minimum_for(2), kLowest);
  EXPECT_EQ(falling.minimum_for(3), kLowest);
  EXPECT_EQ(
      (ThresholdRule{kLowest, 0, std::numeric_limits<float>::lowest()}).minimum_for(kLongestUnit),
      kLowest);
}

TEST(ThresholdRule, keeps_every_bit_of_a_long_unit_length) {
  const ThresholdRule rule{kLowest, kLowest, 1.0F};
  EXPECT_EQ(rule.minimum_for(kLongestUnit - 2), kHighest - 2);
  EXPECT_EQ(rule.minimum_for(kLongestUnit - 1), kHighest - 1);
  EXPECT_EQ(rule.minimum_for(kLongestUnit), kHighest);
}

TEST(ThresholdTable, stores_what_the_rule_gives_from_unit_length_0_on) {
  const CThresholdTable table({6, 1, 1.5F}, 10);
  EXPECT_EQ(table[0], 6);
  EXPECT_EQ(table[3], 6);   // 5.5
  EXPECT_EQ(table[4], 7);   // 7
  EXPECT_EQ(table[9], 15);  // 14.5
  EXPECT_EQ(table[10], 16);
}

TEST(ThresholdTable, follows_the_rule_beyond_what_it_stores) {
  const CThresholdTable table({6, 1, 1.5F}, 10);
  EXPECT_EQ(table[11], 18);        // 17.5
  EXPECT_EQ(table[12345], 18519);  // 18518.5
  EXPECT_EQ(table[kLongestUnit], kHighest);
}

// A stored entry for each of them would take 16 GB.
TEST(ThresholdTable, serves_the_longest_unit_length_of_all) {
  const CThresholdTable table({6, 1, 1.5F}, kLongestUnit);
  EXPECT_EQ(table[10], 16);
  EXPECT_EQ(table[999'999], 1'500'000);  // 1499999.5
  EXPECT_EQ(table[1'000'000], 1'500'001);
  EXPECT_EQ(table[1'000'001], 1'500'003);  // 1500002.5
  EXPECT_EQ(table[kLongestUnit], kHighest);
}

TEST(ThresholdTable, has_an_entry_for_unit_length_0_alone) {
  const CThresholdTable table({0, 7, 2.0F}, 0);
  EXPECT_EQ(table[0], 7);
  EXPECT_EQ(table[1], 9);
}

}  // namespace
}  // namespace quorix
