// Arithmetic of scores.

#include "search/rules/score.h"

#include <cstdint>
#include <limits>

#include "support/default_settings.h"

namespace quorix {
namespace {

using Score = testing::CDefaultSettings;

constexpr std::int32_t kMinScore32 = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMaxScore32 = std::numeric_limits<std::int32_t>::max();

TEST_F(Score, is_kept_within_32_bits) {
  EXPECT_EQ(saturated_score(0), 0);
  EXPECT_EQ(saturated_score(-7), -7);
  EXPECT_EQ(saturated_score(kMaxScore32), kMaxScore32);
  EXPECT_EQ(saturated_score(std::int64_t{kMaxScore32} + 1), kMaxScore32);
  EXPECT_EQ(saturated_score(std::numeric_limits<std::int64_t>::max()), kMaxScore32);
  EXPECT_EQ(saturated_score(kMinScore32), kMinScore32);
  EXPECT_EQ(saturated_score(std::int64_t{kMinScore32} - 1), kMinScore32);
  EXPECT_EQ(saturated_score(std::numeric_limits<std::int64_t>::min()), kMinScore32);
}

TEST_F(Score, must_stay_above_the_unit_length_below_zero_when_no_reduction_limit_is_set) {
  EXPECT_EQ(drop_off_limit(0, 2), -2);
  EXPECT_EQ(drop_off_limit(1000, 6), -6);
  EXPECT_EQ(drop_off_limit(kMaxScore32, 6), 0);  // no limit is a limit of INT_MAX after all
}

TEST_F(Score, must_stay_above_the_best_one_less_the_reduction_limit) {
  global_maximum_scorereduction = 8;
  EXPECT_EQ(drop_off_limit(10, 2), 2);
  EXPECT_EQ(drop_off_limit(7, 2), -1);
  EXPECT_EQ(drop_off_limit(6, 2), -2);
  EXPECT_EQ(drop_off_limit(5, 2), -2);
  global_maximum_scorereduction = 0;
  EXPECT_EQ(drop_off_limit(10, 2), 10);
}

TEST_F(Score, threshold_does_not_overflow_at_the_extremes_of_the_reduction_limit) {
  global_maximum_scorereduction = kMinScore32;
  EXPECT_EQ(drop_off_limit(10, 2), 2147483658);
  EXPECT_EQ(drop_off_limit(kMaxScore32, 2), 4294967295);
  global_maximum_scorereduction = kMaxScore32;
  EXPECT_EQ(drop_off_limit(kMinScore32, 2), -2);
}

TEST_F(Score, is_not_changed_by_an_N_unless_the_settings_say_so) {
  EXPECT_TRUE(is_N_neutral());
  global_Ns_allowed_in_a_row = 1;
  EXPECT_TRUE(is_N_neutral());
  global_Ns_allowed_in_a_row = 0;
  EXPECT_FALSE(is_N_neutral());
  global_treat_Ns_as_missense = true;
  EXPECT_FALSE(is_N_neutral());
  global_Ns_allowed_in_a_row = 4;
  EXPECT_FALSE(is_N_neutral());
}

}  // namespace
}  // namespace quorix
