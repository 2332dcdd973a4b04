// From which score on a choice is taken for one that holds for all higher ones.

#include "search/kept_way.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "settings/settings.h"
#include "support/default_settings.h"

namespace quorix {
namespace {

using LeastFreeScore = testing::CDefaultSettings;

constexpr std::int64_t kHighestScore = std::numeric_limits<std::int32_t>::max();

TEST_F(LeastFreeScore, leaves_room_for_all_edits_of_a_path) {
  global_mismatch_score = -6;
  global_indel_score = -9;
  global_maximum_recursion_depth = 5;
  // Five indels lead from 42 to -3, and -4 is the floor of units of 4.
  EXPECT_EQ(least_free_score(4), 42);
  global_mismatch_score = -11;
  EXPECT_EQ(least_free_score(4), 52);
  global_maximum_recursion_depth = kDeepestRecursion;
  EXPECT_EQ(least_free_score(4), 255 * 11 - 3);
}

TEST_F(LeastFreeScore, is_above_every_score_if_a_path_may_make_any_number_of_edits) {
  global_maximum_recursion_depth = kDeepestRecursion + 1;
  EXPECT_GT(least_free_score(28), kHighestScore);
  global_maximum_recursion_depth = std::numeric_limits<int>::max();
  EXPECT_GT(least_free_score(1), kHighestScore);
}

}  // namespace
}  // namespace quorix
