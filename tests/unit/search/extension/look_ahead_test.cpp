// How far up the score can still go. Every case is looked at in both directions: to the right in
// the text as it stands, to the left in the text read backwards.

#include "search/extension/look_ahead.h"

#include <cstdint>
#include <limits>

#include "search/extension/direction.h"
#include "unit/search/look_ahead_value.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using LookAhead = testing::CSearchSettings;
using testing::CBases;
using testing::CSearchedSequence;
using testing::look_ahead_value;

constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

TEST_F(LookAhead, adds_one_for_each_match_around_the_unit) {
  EXPECT_EQ(look_ahead_value("ACGACGACT", 3), 5);
  EXPECT_EQ(look_ahead_value("AAAAG", 1), 3);
  EXPECT_EQ(look_ahead_value("ACGACGACT", 3, {.score = 10, .best_score = 10}), 15);
}

TEST_F(LookAhead, stops_at_the_limit) {
  EXPECT_EQ(look_ahead_value("ACACAC", 2), 4);
  EXPECT_EQ(look_ahead_value("ACACAC", 2, {.limit = 4}), 2);
  EXPECT_EQ(look_ahead_value("ACACAC", 2, {.score = 3, .limit = 2}), 3);
}

TEST_F(LookAhead, passes_a_run_of_Ns_of_any_length_without_scoring_it) {
  // Nine N's leave a C to be expected.
  EXPECT_EQ(look_ahead_value("ACNNNNNNNNNCACAG", 2), 4);
  EXPECT_EQ(look_ahead_value("ACNNNNNNNNNACAC", 2), 0);
  global_Ns_allowed_in_a_row = 1;
  EXPECT_EQ(look_ahead_value("ACNNNNNNNNNCACAG", 2), 4);
  EXPECT_EQ(look_ahead_value("ACNNN", 2, {.score = 1, .best_score = 1}), 1);
}

TEST_F(LookAhead, takes_an_N_for_a_base_that_differs_where_Ns_are_missense) {
  EXPECT_EQ(look_ahead_value("ACNCACACACA", 2, {.score = 5, .best_score = 5}), 13);
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(look_ahead_value("ACNCACACACA", 2, {.score = 5, .best_score = 5}), 7);
}

TEST_F(LookAhead, takes_an_N_for_a_base_that_differs_where_none_is_allowed) {
  global_Ns_allowed_in_a_row = 0;
  EXPECT_EQ(look_ahead_value("ACNCACACACA", 2, {.score = 5, .best_score = 5}), 7);
}

TEST_F(LookAhead, sees_beyond_a_mismatch) {
  // 5 - 6 + 8
  EXPECT_EQ(look_ahead_value("ACGTCGACGACG", 3, {.score = 5, .best_score = 5}), 7);
  global_mismatch_score = -7;
  EXPECT_EQ(look_ahead_value("ACGTCGACGACG", 3, {.score = 5, .best_score = 5}), 6);
  set_penalties(-100, -6);
  EXPECT_EQ(look_ahead_value("ACGTCGACGACG", 3, {.score = 5, .best_score = 5}), 5);
}

TEST_F(LookAhead, sees_beyond_an_insertion) {
  // 5 - 6 + 9
  EXPECT_EQ(look_ahead_value("ACGTACGACGACG", 3, {.score = 5, .best_score = 5}), 8);
  global_indel_score = -7;
  EXPECT_EQ(look_ahead_value("ACGTACGACGACG", 3, {.score = 5, .best_score = 5}), 7);
  set_penalties(-6, -100);
  EXPECT_EQ(look_ahead_value("ACGTACGACGACG", 3, {.score = 5, .best_score = 5}), 5);
}

TEST_F(LookAhead, sees_beyond_a_deletion) {
  // 5 - 6 + 8
  EXPECT_EQ(look_ahead_value("ACGCGACGACG", 3, {.score = 5, .best_score = 5}), 7);
  global_indel_score = -7;
  EXPECT_EQ(look_ahead_value("ACGCGACGACG", 3, {.score = 5, .best_score = 5}), 6);
  set_penalties(-6, -100);
  EXPECT_EQ(look_ahead_value("ACGCGACGACG", 3, {.score = 5, .best_score = 5}), 5);
}

TEST_F(LookAhead, makes_no_edit_that_brings_the_score_down_to_the_unit_length_below_zero) {
  // 4 - 6 is -2, and not above it; 5 - 6 is.
  EXPECT_EQ(look_ahead_value("ACGCACACACACA", 2, {.score = 4, .best_score = 4}), 4);
  EXPECT_EQ(look_ahead_value("ACGCACACACACA", 2, {.score = 5, .best_score = 5}), 9);
}

TEST_F(LookAhead, makes_no_edit_that_brings_the_score_down_by_the_reduction_limit) {
  global_maximum_scorereduction = 6;
  EXPECT_EQ(look_ahead_value("ACGCACACACACA", 2, {.score = 9, .best_score = 9}), 9);
  global_maximum_scorereduction = 7;
  EXPECT_EQ(look_ahead_value("ACGCACACACACA", 2, {.score = 9, .best_score = 9}), 13);
}

TEST_F(LookAhead, measures_the_reduction_from_the_best_score_so_far) {
  global_maximum_scorereduction = 8;
  EXPECT_EQ(look_ahead_value("ACGCACACACACA", 2, {.score = 8, .best_score = 10}), 8);
  EXPECT_EQ(look_ahead_value("ACGCACACACACA", 2, {.score = 8, .best_score = 9}), 12);
}

TEST_F(LookAhead, raises_the_best_score_on_its_way) {
  // Five matches, then two mismatches in a row. With a reduction of 3 only the first may be made,
  // at 5 - 2: the second would leave 1, measured from 5.
  set_penalties(-2, -2);
  global_maximum_scorereduction = 3;
  EXPECT_EQ(look_ahead_value("ACACACAGGCACACACACA", 2), 5);
  global_maximum_scorereduction = 5;
  EXPECT_EQ(look_ahead_value("ACACACAGGCACACACACA", 2), 11);
}

// CA: two matches, then A where C is expected. An insertion leads over four matches to 4. A
// deletion leads over five to 5; measured from the 4 with a reduction of 3 it could not have been
// made.
TEST_F(LookAhead, does_not_measure_an_edit_by_what_one_tried_before_it_led_to) {
  set_penalties(-2, -2);
  global_maximum_recursion_depth = 3;
  global_maximum_scorereduction = 3;
  EXPECT_EQ(look_ahead_value("CACAACACAA", 2), 5);
}

// GA: two matches, then A where G is expected. A deletion and another one after it lead to 4. A
// mismatch leads over five matches to 5; measured from 4, with a reduction of 4, it could not have
// been made.
TEST_F(LookAhead, does_not_measure_an_edit_by_what_one_tried_after_it_led_to) {
  set_penalties(-2, -2);
  global_maximum_recursion_depth = 3;
  global_maximum_scorereduction = 4;
  EXPECT_EQ(look_ahead_value("GAGAAAGAGA", 2), 5);
}

TEST_F(LookAhead, returns_the_highest_score_met_and_not_the_last_one) {
  // Up to 5, then down to -1 and up to 1.
  EXPECT_EQ(look_ahead_value("ACACACATACT", 2), 5);
}

// After the limit a mismatch would lead over nine matches.
TEST_F(LookAhead, makes_no_edit_at_the_limit) {
  set_penalties(-2, -2);
  EXPECT_EQ(look_ahead_value("ACACACAC", 2), 6);
  EXPECT_EQ(look_ahead_value("ACACACTCACACACAC", 2, {.limit = 6}), 4);
}

// 4 - 6 is above -3, though not above -2.
TEST_F(LookAhead, takes_the_floor_from_the_unit_length_that_it_is_given) {
  const CBases bases("ACGCACACACACA");
  CSearchedSequence any("A");
  const auto value_with_unit_length = [&](std::int64_t unit_length) {
    return any.search.extend_imperfect_forward_leap_ahead(
        bases.at(2), bases.at(0), bases.at(0), bases.at(2), 4, unit_length, 1, bases.end(), 4);
  };
  EXPECT_EQ(value_with_unit_length(2), 4);
  EXPECT_EQ(value_with_unit_length(3), 8);
}

TEST_F(LookAhead, keeps_scores_within_32_bits) {
  EXPECT_EQ(look_ahead_value("AAAA", 1, {.score = kHighest - 1, .best_score = kHighest}), kHighest);
  set_penalties(kLowest, kLowest);
  EXPECT_EQ(look_ahead_value("AAAAGAA", 1, {.score = kLowest, .best_score = kLowest}), kLowest + 3);
  global_maximum_scorereduction = kLowest;
  EXPECT_EQ(look_ahead_value("AAAAGAA", 1, {.score = kHighest - 3, .best_score = kHighest}),
            kHighest);
}

TEST_F(LookAhead, is_wide_enough_inside_for_what_is_cut_off_outside) {
  const CBases bases("AAAA");
  CLookAhead look_ahead;
  EXPECT_EQ(look_ahead.highest_score<Rightward>({bases.at(1), bases.at(0), kHighest, kHighest, 1},
                                                {bases.at(0), bases.at(1), 1, bases.end()}),
            std::int64_t{kHighest} + 3);
}

}  // namespace
}  // namespace quorix
