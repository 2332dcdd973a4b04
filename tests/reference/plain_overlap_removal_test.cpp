// Overlap removal on repeats made by hand: only ends, unit length and score count.

#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainOverlapRemoval = CWithDefaultSettings;

Repeat made(std::int64_t start, std::int64_t end, std::int64_t unit_length, int score) {
  Repeat repeat = repeat_from_unit(start, start + unit_length);
  repeat.end = end;
  repeat.score = score;
  return repeat;
}

/// The scores of the survivors; each test gives its repeats scores that tell them apart.
std::vector<int> surviving_scores(const std::vector<Repeat>& repeats) {
  std::vector<int> scores;
  for (const Repeat& repeat : remove_hidden(repeats)) {
    scores.push_back(repeat.score);
  }
  return scores;
}

using Scores = std::vector<int>;

TEST_F(PlainOverlapRemoval, leaves_empty_and_single_lists_alone) {
  EXPECT_TRUE(remove_hidden({}).empty());
  EXPECT_EQ(surviving_scores({made(0, 10, 2, 8)}), (Scores{8}));
}

TEST_F(PlainOverlapRemoval, keeps_repeats_that_merely_touch) {
  EXPECT_EQ(surviving_scores({made(0, 10, 2, 8), made(10, 12, 2, 1)}), (Scores{8, 1}));
}

TEST_F(PlainOverlapRemoval, drops_the_worse_of_two_when_one_lies_in_the_other) {
  EXPECT_EQ(surviving_scores({made(0, 20, 2, 18), made(5, 15, 2, 8)}), (Scores{18}));
  EXPECT_EQ(surviving_scores({made(0, 20, 2, 7), made(5, 15, 2, 8)}), (Scores{8}));
}

TEST_F(PlainOverlapRemoval, drops_the_later_of_two_that_score_the_same) {
  const std::vector<Repeat> nested = remove_hidden({made(0, 20, 2, 8), made(5, 15, 3, 8)});
  ASSERT_EQ(nested.size(), 1U);
  EXPECT_EQ(nested[0].start, 0);
  // With the same start the longer one is the later one.
  const std::vector<Repeat> same_start = remove_hidden({made(0, 10, 2, 8), made(0, 12, 3, 8)});
  ASSERT_EQ(same_start.size(), 1U);
  EXPECT_EQ(same_start[0].end, 10);
}

TEST_F(PlainOverlapRemoval, keeps_both_as_long_as_each_shows_a_whole_unit) {
  // Overlap 4. The first has 10 - 4 = 6 bases of its own, the second 12 - 4 = 8.
  EXPECT_EQ(surviving_scores({made(0, 10, 6, 4), made(6, 18, 8, 5)}), (Scores{4, 5}));
  // One base more in either unit is one too many.
  EXPECT_EQ(surviving_scores({made(0, 10, 7, 4), made(6, 18, 8, 5)}), (Scores{5}));
  EXPECT_EQ(surviving_scores({made(0, 10, 6, 4), made(6, 18, 9, 3)}), (Scores{4}));
}

TEST_F(PlainOverlapRemoval, lets_a_repeat_that_dropped_others_be_dropped_in_turn) {
  // 6 drops the 5 that lies in it and then gives way to 9, which lies in it as well. 4 lay in both
  // 6 and 9, and is looked at again from 9.
  EXPECT_EQ(surviving_scores(
                {made(0, 30, 2, 6), made(2, 8, 2, 5), made(10, 28, 2, 9), made(12, 20, 2, 4)}),
            (Scores{9}));
}

TEST_F(PlainOverlapRemoval, goes_on_after_a_dropped_repeat_with_the_one_that_followed_it) {
  // 3 and 12 overlap by two bases and keep a unit each. 3 and 9 overlap by one, which leaves 9 no
  // room for its unit of 11, and 3 goes. The next pair is 12 and 9, not 9 and what follows it.
  EXPECT_EQ(surviving_scores({made(0, 10, 6, 3), made(8, 14, 2, 12), made(9, 20, 11, 9)}),
            (Scores{12}));
}

TEST_F(PlainOverlapRemoval, stops_looking_at_the_first_repeat_after_the_end) {
  EXPECT_EQ(surviving_scores({made(0, 5, 2, 3), made(5, 50, 2, 9), made(6, 9, 2, 1)}),
            (Scores{3, 9}));
}

TEST_F(PlainOverlapRemoval, drops_nothing_when_it_is_switched_off) {
  global_remove_mostly_hidden = false;
  EXPECT_EQ(surviving_scores({made(0, 20, 2, 18), made(5, 15, 2, 8), made(6, 10, 2, 9)}),
            (Scores{18, 8, 9}));
}

}  // namespace
}  // namespace quorix::reference
