// The bound of one seed or exact repeat, against a table of all its states in 64-bit numbers.

#include "search/filter/single_bound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "support/filter/bound_verdict.h"
#include "support/filter/plain_score_paths.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

/// Asks about `repeat` as an exact repeat.
bool may_reach(const PlainRepeat& repeat, std::int64_t min_score, BoundWork& work) {
  const CBases bases(repeat.text);
  const auto at = [&](std::int64_t offset) { return bases.at(static_cast<std::size_t>(offset)); };
  return may_repeat_reach(
      {bases.begin(), bases.end(), repeat.scoring},
      {at(repeat.start), at(repeat.end), at(repeat.unit_begin), at(repeat.unit_end),
       repeat.right_phase, repeat.left_phase, repeat.score},
      min_score, work);
}

bool may_reach(const PlainRepeat& repeat, std::int64_t min_score) {
  BoundWork work;
  return may_reach(repeat, min_score, work);
}

/// Asks for each of `min_scores`. `outcome` is that of all paths of `repeat`.
void expect_bounds_of(const PlainRepeat& repeat, const Outcome& outcome,
                      const std::vector<std::int64_t>& min_scores, VerdictTally& tally) {
  if (!outcome.is_complete) return;
  const bool is_exact = is_in_reach_of_bound(repeat, outcome);
  for_each_vector_target([&](const char* target) {
    for (const std::int64_t min_score : min_scores) {
      const auto describe = [&] {
        return std::string(target) + " unit [" + std::to_string(repeat.unit_begin) + "," +
               std::to_string(repeat.unit_end) + ") of " + repeat.text + " score " +
               std::to_string(repeat.score) + " best " + std::to_string(outcome.best) + " needed " +
               std::to_string(min_score) + " penalties " +
               std::to_string(repeat.scoring.mismatch_penalty) + "," +
               std::to_string(repeat.scoring.indel_penalty);
      };
      expect_verdict(may_reach(repeat, min_score),
                     {repeat.unit_length(), outcome.best, min_score, is_exact}, tally, describe);
    }
  });
}

/// A repeat of `unit_length` in the midst of an array between stretches of `margin` random bases.
PlainRepeat draw_repeat(RandomEngine& engine, std::size_t unit_length, std::size_t margin) {
  PlainRepeat repeat{};
  const std::string unit = draw_letters(engine, unit_length, "ACGT");
  const std::string noise = draw_letters(engine, margin, "ACGT");
  std::string copies;
  const std::size_t count = draw_between(engine, 0, 2);
  for (std::size_t i = 0; i < count; ++i)
    copies += unit.substr(0, draw_between(engine, 0, unit_length));
  for (char& base : copies) {
    if (draw_chance(engine, 12)) base = "ACGTNN"[draw_between(engine, 0, 5)];
  }
  if (!copies.empty() && draw_chance(engine, 30)) {
    copies.erase(draw_between(engine, 0, copies.size() - 1), 1);
  }
  repeat.text = noise + copies;
  repeat.unit_begin = static_cast<std::int64_t>(repeat.text.size());
  repeat.text += unit;
  repeat.unit_end = static_cast<std::int64_t>(repeat.text.size());
  repeat.text += copies +
                 (draw_chance(engine, 30) ? std::string(draw_between(engine, 1, 6), 'N') : "") +
                 draw_letters(engine, margin, "ACGT");
  repeat.start = repeat.unit_begin;
  repeat.end = repeat.unit_end;
  repeat.left_phase = repeat.unit_length() - 1;
  if (draw_chance(engine, 30)) {  // a repeat that was extended before
    repeat.score = draw_number(engine, 1, 30);
    repeat.start -= draw_number(engine, 0, std::min<std::size_t>(margin, 20));
    repeat.end += draw_number(engine, 0, std::min<std::size_t>(margin, 20));
    repeat.right_phase = draw_number(engine, 0, unit_length - 1);
    repeat.left_phase = draw_number(engine, 0, unit_length - 1);
  }
  repeat.scoring.mismatch_penalty = draw_number(engine, 2, 12);
  repeat.scoring.indel_penalty =
      draw_chance(engine, 50) ? repeat.scoring.mismatch_penalty : draw_number(engine, 2, 12);
  repeat.scoring.is_N_neutral = draw_chance(engine, 50);
  return repeat;
}

TEST(SingleBound, is_the_best_of_all_paths) {
  RandomEngine engine(12);
  VerdictTally tally;
  for (int round = 0; round < 700; ++round) {
    const PlainRepeat repeat = draw_repeat(engine, draw_between(engine, 1, 40), 700);
    const std::int64_t near = draw_number(engine, 0, 12) - 6;
    const Outcome outcome = follow_all_paths(repeat);
    // At the best score itself, just above it, and at the usual minimum.
    ASSERT_NO_FATAL_FAILURE(expect_bounds_of(repeat, outcome,
                                             {outcome.best, outcome.best + 1, outcome.best + near,
                                              std::max<std::int64_t>(repeat.unit_length(), 6)},
                                             tally));
  }
  EXPECT_GT(tally.rejected, 1000);
  EXPECT_GT(tally.had_to_be_rejected, tally.rejected * 3 / 4);
  EXPECT_GT(tally.undecided, 1000);
}

TEST(SingleBound, is_the_best_of_all_paths_of_long_units) {
  RandomEngine engine(13);
  VerdictTally tally;
  for (int round = 0; round < 60; ++round) {
    PlainRepeat repeat = draw_repeat(engine, draw_between(engine, 100, 300), 1300);
    repeat.scoring.mismatch_penalty += 4;
    repeat.scoring.indel_penalty += 4;
    const Outcome outcome = follow_all_paths(repeat);
    ASSERT_NO_FATAL_FAILURE(expect_bounds_of(
        repeat, outcome, {outcome.best, outcome.best + 1, repeat.unit_length(), 100'000}, tally));
  }
  EXPECT_GT(tally.with_16_bits, 50);
  EXPECT_GT(tally.had_to_be_rejected, 50);
  EXPECT_GT(tally.undecided, 50);
}

TEST(SingleBound, rejects_nothing_wrongly_near_the_ends_of_the_text) {
  RandomEngine engine(14);
  VerdictTally tally;
  for (int round = 0; round < 1500; ++round) {
    const PlainRepeat repeat =
        draw_repeat(engine, draw_between(engine, 1, 40), draw_between(engine, 0, 90));
    const Outcome outcome = follow_all_paths(repeat);
    ASSERT_NO_FATAL_FAILURE(expect_bounds_of(
        repeat, outcome, {outcome.best, outcome.best + 1, outcome.best + 20}, tally));
  }
  EXPECT_GT(tally.rejected, 100);
  EXPECT_GT(tally.undecided, 1000);
}

PlainRepeat lone_unit(std::size_t unit_length, std::size_t margin) {
  PlainRepeat repeat{};
  repeat.text = std::string(margin, 'A') + std::string(unit_length, 'C') + std::string(margin, 'A');
  repeat.unit_begin = repeat.start = static_cast<std::int64_t>(margin);
  repeat.unit_end = repeat.end = repeat.start + static_cast<std::int64_t>(unit_length);
  repeat.left_phase = repeat.unit_length() - 1;
  repeat.scoring.mismatch_penalty = repeat.scoring.indel_penalty = 6;
  return repeat;
}

TEST(SingleBound, leaves_undecided_what_has_the_score_already) {
  PlainRepeat repeat = lone_unit(5, 500);
  EXPECT_FALSE(may_reach(repeat, 1));
  EXPECT_TRUE(may_reach(repeat, 0));
  EXPECT_TRUE(may_reach(repeat, -7));
  repeat.score = 30;
  EXPECT_TRUE(may_reach(repeat, 30));
  EXPECT_FALSE(may_reach(repeat, 31));
}

// Some compilers build for processors with vectors alone.
#if (HWY_TARGETS & HWY_SCALAR) != 0
TEST(SingleBound, leaves_all_undecided_without_vectors) {
  with_no_vectors([] { EXPECT_TRUE(may_reach(lone_unit(5, 500), 5)); });
  EXPECT_FALSE(may_reach(lone_unit(5, 500), 5));
}
#endif

TEST(SingleBound, leaves_undecided_what_is_too_large_for_the_table) {
  EXPECT_FALSE(may_reach(lone_unit(1000, 3000), std::numeric_limits<std::int32_t>::max()));
  EXPECT_TRUE(may_reach(lone_unit(4097, 20'000), 4097));
  PlainRepeat repeat = lone_unit(1000, 3000);
  repeat.score = 60'000;
  EXPECT_TRUE(may_reach(repeat, 100'000));
}

/// What it takes to bound `repeat`.
BoundWork work_of(const PlainRepeat& repeat, std::int64_t min_score) {
  BoundWork work;
  (void)may_reach(repeat, min_score, work);
  return work;
}

/// Cells of a row of the tables of a seed, 0 if there is no table.
std::uint64_t lanes_for(std::int64_t unit_length, std::int64_t indel_penalty, std::int64_t score,
                        std::int64_t min_score) {
  PlainRepeat repeat = lone_unit(static_cast<std::size_t>(unit_length), 3000);
  repeat.scoring.indel_penalty = indel_penalty;
  repeat.score = score;
  const BoundWork work = work_of(repeat, min_score);
  return work.rows == 0 ? 0 : work.cells / work.rows;
}

/// The seeds of a long unit in its array and beside it, all asked about at once.
TEST(SingleBound, bounds_each_seed_of_a_question_by_itself) {
  RandomEngine engine(34);
  const std::string text = draw_letters(engine, 700, "ACGT") +
                           repeated(draw_letters(engine, 30, "ACGT"), 3) +
                           draw_letters(engine, 700, "ACGT");
  const CBases bases(text);
  const std::int64_t first = 690;
  const std::uint64_t asked = 0xF0F0'0F0F'F1F3'0055U;
  std::uint64_t expected = 0;
  for (std::int64_t k = 0; k < 64; ++k) {
    const std::int64_t begin = first + k;
    const PlainRepeat seed{text, begin, begin + 30, begin, begin + 30, 0, 29, 0, {6, 6, true}};
    const bool is_asked = (asked >> k & 1) != 0;
    if (is_asked && may_reach(seed, 40)) expected |= std::uint64_t{1} << k;
  }
  BoundWorkspace workspace;
  EXPECT_EQ(single_bound({bases.begin(), bases.end(), {6, 6, true}},
                         {bases.at(static_cast<std::size_t>(first)), 30, asked, 40}, workspace),
            expected);
  EXPECT_NE(expected, 0U);
  EXPECT_NE(expected, asked);
}

TEST(SingleBound, has_as_many_lanes_as_paths_can_reach) {
  // The reach is (score + unit length) * 3 / (2 * penalty) + 3.
  EXPECT_EQ(lanes_for(8, 6, 0, 50), 16U);
  EXPECT_EQ(lanes_for(55, 6, 0, 50), 16U);
  EXPECT_EQ(lanes_for(56, 6, 0, 50), 32U);
  EXPECT_EQ(lanes_for(119, 6, 0, 50), 32U);
  EXPECT_EQ(lanes_for(120, 6, 0, 50), 64U);
  EXPECT_EQ(lanes_for(247, 6, 0, 50), 64U);
  EXPECT_EQ(lanes_for(248, 6, 0, 50), 128U);
  EXPECT_EQ(lanes_for(503, 6, 0, 50), 128U);
  EXPECT_EQ(lanes_for(504, 6, 0, 50), 256U);
  EXPECT_EQ(lanes_for(1015, 6, 0, 50), 256U);
  EXPECT_EQ(lanes_for(1016, 6, 0, 50), 0U);
  EXPECT_EQ(lanes_for(1000, 6, 15, 50), 256U);
  EXPECT_EQ(lanes_for(1000, 6, 16, 50), 0U);
}

TEST(SingleBound, has_narrow_values_where_they_have_room) {
  EXPECT_EQ(lanes_for(50, 6, 0, 205), 16U);
  EXPECT_EQ(lanes_for(50, 6, 0, 206), 32U);
}

TEST(SingleBound, takes_values_of_up_to_60000) {
  EXPECT_EQ(lanes_for(1000, 1000, 59'000, 59'001), 128U);
  EXPECT_EQ(lanes_for(1000, 1000, 59'001, 59'002), 0U);
  EXPECT_EQ(lanes_for(4096, 1000, 0, 9), 32U);
  EXPECT_EQ(lanes_for(4097, 1000, 0, 9), 0U);
}

// Its rows read more bases than the seed itself lives through; not more than they have to.
TEST(SingleBound, needs_few_bases_around_a_seed) {
  for_each_vector_target([](const char* target) {
    std::size_t margin = 0;
    while (margin < 200 && may_reach(lone_unit(40, margin), 5)) ++margin;
    EXPECT_EQ(margin, 15U) << target;
  });
}

TEST(SingleBound, bounds_units_of_up_to_4096_bases) {
  PlainRepeat repeat = lone_unit(4096, 9000);
  repeat.scoring.mismatch_penalty = repeat.scoring.indel_penalty = 1000;  // for a narrow table
  EXPECT_FALSE(may_reach(repeat, 500));
  repeat = lone_unit(4097, 9000);
  repeat.scoring.mismatch_penalty = repeat.scoring.indel_penalty = 1000;
  EXPECT_TRUE(may_reach(repeat, 500));
}

TEST(SingleBound, takes_penalties_of_any_height) {
  PlainRepeat repeat = lone_unit(8, 500);
  repeat.scoring.mismatch_penalty = repeat.scoring.indel_penalty = 2147483648;
  EXPECT_FALSE(may_reach(repeat, 8));
  repeat.text.replace(static_cast<std::size_t>(repeat.end), 8, 8, 'C');
  EXPECT_TRUE(may_reach(repeat, 8));
  EXPECT_FALSE(may_reach(repeat, 9));
  repeat.text.replace(static_cast<std::size_t>(repeat.start) - 1, 1, 1, 'C');
  EXPECT_TRUE(may_reach(repeat, 9));
  EXPECT_FALSE(may_reach(repeat, 10));
}

TEST(SingleBound, leaves_undecided_what_lives_longer_than_it_is_followed) {
  RandomEngine engine(33);
  const std::string unit = draw_letters(engine, 50, "ACGT");
  const std::string noise = draw_letters(engine, 6000, "ACGT");
  const std::string copies = repeated(unit, 100);
  for (const bool is_rightward : {true, false}) {
    PlainRepeat repeat = lone_unit(50, 6000);
    // No path can pay for so many indels that it leaves the table at its sides.
    repeat.scoring.mismatch_penalty = repeat.scoring.indel_penalty = 1000;
    repeat.text = noise + (is_rightward ? unit + copies : copies + unit) + noise;
    repeat.unit_begin = repeat.start = is_rightward ? 6000 : 11'000;
    repeat.unit_end = repeat.end = repeat.start + 50;
    EXPECT_TRUE(may_reach(repeat, 5000));
    // The left side is followed after a few rows to the right.
    EXPECT_EQ(work_of(repeat, 5000).rows, is_rightward ? 8191U : 8191U + 2);
  }
}

}  // namespace
}  // namespace quorix::testing
