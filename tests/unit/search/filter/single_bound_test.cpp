// The bound of a growing score, against a table of all its states in 64-bit numbers.

#include "search/filter/single_bound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "support/filter/plain_score_paths.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

bool may_reach(const Growth& growth, std::int64_t min_score) {
  const CBases bases(growth.text);
  const auto at = [&](std::int64_t offset) { return bases.at(static_cast<std::size_t>(offset)); };
  CScoreBound bound;
  return bound.may_reach({at(growth.start), at(growth.end), at(growth.unit_begin),
                          at(growth.unit_end), growth.right_phase, growth.left_phase, growth.score},
                         {bases.begin(), bases.end(), growth.scoring}, min_score);
}

struct Tally {
  std::int64_t refuted = 0;
  std::int64_t had_to_be_refuted = 0;
  std::int64_t let_through = 0;
  std::int64_t with_16_bits = 0;
};

/// May be refuted at `min_score` only if no path gets there; and has to be if nothing hinders it.
void expect_bound_of(const Growth& growth, std::int64_t min_score, Tally& tally) {
  const Outcome right = follow_all_paths(growth, true, growth.score);
  if (!right.is_complete) return;
  const Outcome both = follow_all_paths(growth, false, right.best);
  if (!both.is_complete) return;

  const std::int64_t length = growth.unit_length();
  const bool must_be_refuted = both.best < min_score && is_in_reach_of_bound(growth, right, both);
  for_each_vector_target([&](const char* target) {
    const bool answer = may_reach(growth, min_score);
    const auto describe = [&] {
      return std::string(target) + " unit [" + std::to_string(growth.unit_begin) + "," +
             std::to_string(growth.unit_end) + ") of " + growth.text + " score " +
             std::to_string(growth.score) + " best " + std::to_string(both.best) + " needed " +
             std::to_string(min_score) + " penalties " +
             std::to_string(growth.scoring.mismatch_penalty) + "," +
             std::to_string(growth.scoring.indel_penalty);
    };
    ASSERT_TRUE(answer || both.best < min_score) << describe();
    ASSERT_FALSE(answer && must_be_refuted) << describe();
    ++(answer ? tally.let_through : tally.refuted);
    if (must_be_refuted) ++tally.had_to_be_refuted;
    if (!answer && length + min_score >= 256) ++tally.with_16_bits;
  });
}

std::int64_t draw_number(RandomEngine& engine, std::size_t first, std::size_t last) {
  return static_cast<std::int64_t>(draw_between(engine, first, last));
}

/// A repeat of `unit_length` in the midst of an array between stretches of `margin` random bases.
Growth draw_growth(RandomEngine& engine, std::size_t unit_length, std::size_t margin) {
  Growth growth{};
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
  growth.text = noise + copies;
  growth.unit_begin = static_cast<std::int64_t>(growth.text.size());
  growth.text += unit;
  growth.unit_end = static_cast<std::int64_t>(growth.text.size());
  growth.text += copies +
                 (draw_chance(engine, 30) ? std::string(draw_between(engine, 1, 6), 'N') : "") +
                 draw_letters(engine, margin, "ACGT");
  growth.start = growth.unit_begin;
  growth.end = growth.unit_end;
  growth.left_phase = growth.unit_length() - 1;
  if (draw_chance(engine, 30)) {  // a repeat that has grown before
    growth.score = draw_number(engine, 1, 30);
    growth.start -= draw_number(engine, 0, std::min<std::size_t>(margin, 20));
    growth.end += draw_number(engine, 0, std::min<std::size_t>(margin, 20));
    growth.right_phase = draw_number(engine, 0, unit_length - 1);
    growth.left_phase = draw_number(engine, 0, unit_length - 1);
  }
  growth.scoring.mismatch_penalty = draw_number(engine, 2, 12);
  growth.scoring.indel_penalty =
      draw_chance(engine, 50) ? growth.scoring.mismatch_penalty : draw_number(engine, 2, 12);
  growth.scoring.is_N_neutral = draw_chance(engine, 50);
  return growth;
}

TEST(ScoreBound, is_the_best_of_all_paths) {
  RandomEngine engine(12);
  Tally tally;
  for (int round = 0; round < 700; ++round) {
    const Growth growth = draw_growth(engine, draw_between(engine, 1, 40), 700);
    const std::int64_t near = draw_number(engine, 0, 12) - 6;
    const std::int64_t right = follow_all_paths(growth, true, growth.score).best;
    const std::int64_t best = follow_all_paths(growth, false, right).best;
    // At the best score itself, just above it, and at the usual minimum.
    for (const std::int64_t min_score :
         {best, best + 1, best + near, std::max<std::int64_t>(growth.unit_length(), 6)}) {
      ASSERT_NO_FATAL_FAILURE(expect_bound_of(growth, min_score, tally));
    }
  }
  EXPECT_GT(tally.refuted, 1000);
  EXPECT_GT(tally.had_to_be_refuted, tally.refuted * 3 / 4);
  EXPECT_GT(tally.let_through, 1000);
}

TEST(ScoreBound, is_the_best_of_all_paths_of_long_units) {
  RandomEngine engine(13);
  Tally tally;
  for (int round = 0; round < 60; ++round) {
    Growth growth = draw_growth(engine, draw_between(engine, 100, 300), 1300);
    growth.scoring.mismatch_penalty += 4;
    growth.scoring.indel_penalty += 4;
    const std::int64_t right = follow_all_paths(growth, true, growth.score).best;
    const std::int64_t best = follow_all_paths(growth, false, right).best;
    for (const std::int64_t min_score :
         {best, best + 1, growth.unit_length(), std::int64_t{100'000}}) {
      ASSERT_NO_FATAL_FAILURE(expect_bound_of(growth, min_score, tally));
    }
  }
  EXPECT_GT(tally.with_16_bits, 50);
  EXPECT_GT(tally.had_to_be_refuted, 50);
  EXPECT_GT(tally.let_through, 50);
}

TEST(ScoreBound, refutes_nothing_wrongly_near_the_ends_of_the_text) {
  RandomEngine engine(14);
  Tally tally;
  for (int round = 0; round < 1500; ++round) {
    const Growth growth =
        draw_growth(engine, draw_between(engine, 1, 40), draw_between(engine, 0, 90));
    const std::int64_t right = follow_all_paths(growth, true, growth.score).best;
    const std::int64_t best = follow_all_paths(growth, false, right).best;
    for (const std::int64_t min_score : {best, best + 1, best + 20}) {
      ASSERT_NO_FATAL_FAILURE(expect_bound_of(growth, min_score, tally));
    }
  }
  EXPECT_GT(tally.refuted, 100);
  EXPECT_GT(tally.let_through, 1000);
}

Growth lone_unit(std::size_t unit_length, std::size_t margin) {
  Growth growth{};
  growth.text = std::string(margin, 'A') + std::string(unit_length, 'C') + std::string(margin, 'A');
  growth.unit_begin = growth.start = static_cast<std::int64_t>(margin);
  growth.unit_end = growth.end = growth.start + static_cast<std::int64_t>(unit_length);
  growth.left_phase = growth.unit_length() - 1;
  growth.scoring.mismatch_penalty = growth.scoring.indel_penalty = 6;
  return growth;
}

TEST(ScoreBound, lets_through_what_is_there_already) {
  Growth growth = lone_unit(5, 500);
  EXPECT_FALSE(may_reach(growth, 1));
  EXPECT_TRUE(may_reach(growth, 0));
  EXPECT_TRUE(may_reach(growth, -7));
  growth.score = 30;
  EXPECT_TRUE(may_reach(growth, 30));
  EXPECT_FALSE(may_reach(growth, 31));
}

// Some compilers build for processors with vectors alone.
#if (HWY_TARGETS & HWY_SCALAR) != 0
TEST(ScoreBound, lets_all_through_without_vectors) {
  with_no_vectors([] { EXPECT_TRUE(may_reach(lone_unit(5, 500), 5)); });
  EXPECT_FALSE(may_reach(lone_unit(5, 500), 5));
}
#endif

TEST(ScoreBound, lets_through_what_is_too_large_for_the_table) {
  EXPECT_FALSE(may_reach(lone_unit(1000, 3000), std::numeric_limits<std::int32_t>::max()));
  EXPECT_TRUE(may_reach(lone_unit(4097, 20'000), 4097));
  Growth growth = lone_unit(1000, 3000);
  growth.score = 60'000;
  EXPECT_TRUE(may_reach(growth, 100'000));
}

/// What it takes to bound `growth`.
BoundWork work_of(const Growth& growth, std::int64_t min_score) {
  const CBases bases(growth.text);
  const auto at = [&](std::int64_t offset) { return bases.at(static_cast<std::size_t>(offset)); };
  CScoreBound bound;
  (void)bound.may_reach({at(growth.start), at(growth.end), at(growth.unit_begin),
                         at(growth.unit_end), growth.right_phase, growth.left_phase, growth.score},
                        {bases.begin(), bases.end(), growth.scoring}, min_score);
  return bound.work();
}

/// Cells of a row of the tables of a seed, 0 if there is no table.
std::uint64_t lanes_for(std::int64_t unit_length, std::int64_t indel_penalty, std::int64_t score,
                        std::int64_t min_score) {
  Growth growth = lone_unit(static_cast<std::size_t>(unit_length), 3000);
  growth.scoring.indel_penalty = indel_penalty;
  growth.score = score;
  const BoundWork work = work_of(growth, min_score);
  return work.rows == 0 ? 0 : work.cells / work.rows;
}

TEST(ScoreBound, has_as_many_lanes_as_paths_can_reach) {
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

TEST(ScoreBound, has_narrow_values_where_they_have_room) {
  EXPECT_EQ(lanes_for(50, 6, 0, 205), 16U);
  EXPECT_EQ(lanes_for(50, 6, 0, 206), 32U);
}

TEST(ScoreBound, takes_values_of_up_to_60000) {
  EXPECT_EQ(lanes_for(1000, 1000, 59'000, 59'001), 128U);
  EXPECT_EQ(lanes_for(1000, 1000, 59'001, 59'002), 0U);
  EXPECT_EQ(lanes_for(4096, 1000, 0, 9), 32U);
  EXPECT_EQ(lanes_for(4097, 1000, 0, 9), 0U);
}

// Its rows read more bases than the seed itself lives through; not more than they have to.
TEST(ScoreBound, needs_few_bases_around_a_seed) {
  for_each_vector_target([](const char* target) {
    std::size_t margin = 0;
    while (margin < 200 && may_reach(lone_unit(40, margin), 5)) ++margin;
    EXPECT_EQ(margin, 15U) << target;
  });
}

TEST(ScoreBound, bounds_units_of_up_to_4096_bases) {
  Growth growth = lone_unit(4096, 9000);
  growth.scoring.mismatch_penalty = growth.scoring.indel_penalty = 1000;  // for a narrow table
  EXPECT_FALSE(may_reach(growth, 500));
  growth = lone_unit(4097, 9000);
  growth.scoring.mismatch_penalty = growth.scoring.indel_penalty = 1000;
  EXPECT_TRUE(may_reach(growth, 500));
}

TEST(ScoreBound, takes_penalties_of_any_height) {
  Growth growth = lone_unit(8, 500);
  growth.scoring.mismatch_penalty = growth.scoring.indel_penalty = 2147483648;
  EXPECT_FALSE(may_reach(growth, 8));
  growth.text.replace(static_cast<std::size_t>(growth.end), 8, 8, 'C');
  EXPECT_TRUE(may_reach(growth, 8));
  EXPECT_FALSE(may_reach(growth, 9));
  growth.text.replace(static_cast<std::size_t>(growth.start) - 1, 1, 1, 'C');
  EXPECT_TRUE(may_reach(growth, 9));
  EXPECT_FALSE(may_reach(growth, 10));
}

TEST(ScoreBound, lets_through_what_lives_longer_than_it_is_followed) {
  RandomEngine engine(33);
  const std::string unit = draw_letters(engine, 50, "ACGT");
  const std::string noise = draw_letters(engine, 6000, "ACGT");
  const std::string copies = repeated(unit, 100);
  for (const bool is_rightward : {true, false}) {
    Growth growth = lone_unit(50, 6000);
    // No path can pay for so many indels that it leaves the table at its sides.
    growth.scoring.mismatch_penalty = growth.scoring.indel_penalty = 1000;
    growth.text = noise + (is_rightward ? unit + copies : copies + unit) + noise;
    growth.unit_begin = growth.start = is_rightward ? 6000 : 11'000;
    growth.unit_end = growth.end = growth.start + 50;
    EXPECT_TRUE(may_reach(growth, 5000));
    // To the left it is followed after a short way to the right.
    EXPECT_EQ(work_of(growth, 5000).rows, is_rightward ? 8191U : 8191U + 2);
  }
}

}  // namespace
}  // namespace quorix::testing
