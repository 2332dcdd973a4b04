// What the two directions of growth call an edge, a limit and the next unit character.

#include "search/direction.h"

#include <gtest/gtest.h>

namespace quorix {
namespace {

constexpr char kText[] = "ACGT";

TEST(Rightward, moves_the_end_and_the_right_cursor) {
  Csat sat;
  sat.init_from_unit(kText, kText + 2);
  EXPECT_EQ(&Rightward::edge(sat), &sat.end);
  EXPECT_EQ(&Rightward::unit_cursor(sat), &sat.unit_pos_right);
}

TEST(Rightward, reads_the_base_at_the_edge_up_to_the_limit_itself) {
  const char* const limit = kText + 2;
  EXPECT_EQ(Rightward::base_beyond(kText + 1), kText + 1);
  EXPECT_EQ(Rightward::edge_beyond(kText + 1), kText + 2);
  EXPECT_FALSE(Rightward::is_at_limit(kText + 1, limit));
  EXPECT_TRUE(Rightward::is_at_limit(kText + 2, limit));
}

TEST(Rightward, goes_back_to_the_first_unit_character_behind_the_last) {
  EXPECT_EQ(Rightward::next_in_unit(kText, kText, kText + 3), kText + 1);
  EXPECT_EQ(Rightward::next_in_unit(kText + 1, kText, kText + 3), kText + 2);
  EXPECT_EQ(Rightward::next_in_unit(kText + 2, kText, kText + 3), kText);
  EXPECT_EQ(Rightward::next_in_unit(kText, kText, kText + 1), kText);
}

TEST(Rightward, counts_bases_and_unit_characters_to_the_right) {
  EXPECT_EQ(Rightward::distance(kText, kText), 0);
  EXPECT_EQ(Rightward::distance(kText + 1, kText + 4), 3);
  const char* const unit_end = kText + 3;
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 0, kText, unit_end), kText + 1);
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 1, kText, unit_end), kText + 2);
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 2, kText, unit_end), kText);
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 3'000'000'001, kText, unit_end), kText + 2);
}

TEST(Leftward, moves_the_start_and_the_left_cursor) {
  Csat sat;
  sat.init_from_unit(kText, kText + 2);
  EXPECT_EQ(&Leftward::edge(sat), &sat.start);
  EXPECT_EQ(&Leftward::unit_cursor(sat), &sat.unit_pos_left);
}

TEST(Leftward, reads_the_base_before_the_edge_down_to_the_one_behind_the_limit) {
  const char* const limit = kText + 1;
  EXPECT_EQ(Leftward::base_beyond(kText + 3), kText + 2);
  EXPECT_EQ(Leftward::edge_beyond(kText + 3), kText + 2);
  EXPECT_FALSE(Leftward::is_at_limit(kText + 3, limit));
  EXPECT_TRUE(Leftward::is_at_limit(kText + 2, limit));
}

TEST(Leftward, goes_on_to_the_last_unit_character_before_the_first) {
  EXPECT_EQ(Leftward::next_in_unit(kText + 2, kText, kText + 3), kText + 1);
  EXPECT_EQ(Leftward::next_in_unit(kText + 1, kText, kText + 3), kText);
  EXPECT_EQ(Leftward::next_in_unit(kText, kText, kText + 3), kText + 2);
  EXPECT_EQ(Leftward::next_in_unit(kText, kText, kText + 1), kText);
}

TEST(Leftward, counts_bases_and_unit_characters_to_the_left) {
  EXPECT_EQ(Leftward::distance(kText, kText), 0);
  EXPECT_EQ(Leftward::distance(kText + 4, kText + 1), 3);
  const char* const unit_end = kText + 3;
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 0, kText, unit_end), kText + 1);
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 1, kText, unit_end), kText);
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 2, kText, unit_end), kText + 2);
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 3'000'000'001, kText, unit_end), kText);
}

}  // namespace
}  // namespace quorix
