// How far the seeds of a block may get by lag, against all paths of each of them.

#include "search/filter/block_drift.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

#include "search/filter/filter_plan.h"
#include "support/filter/plain_score_paths.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

constexpr std::int64_t kNoMinimumScore = 1 << 20;

/// A seed, and the unit lengths that are judged along with its own.
struct DriftCase {
  std::string text;
  std::int64_t base;
  std::int64_t unit_length;
  UnitLengths units;
  ScoringRules scoring;
};

SideReach reach_of(const DriftCase& drawn, BlockSide side, std::int64_t entry) {
  const CBases bases(drawn.text);
  const std::int64_t max_lag = 8 * drawn.units.last + kBeginSpread;
  CBlockNets nets(bases.begin(), drawn.text.size(), drawn.scoring, max_lag,
                  drawn.units.last / kBlockCharacters + kTailBlocks + 2);
  CBlockDrift drift(nets, side, max_lag, drawn.scoring.indel_penalty);
  return drift.follow(drawn.base / kBlockCharacters, drawn.units, entry);
}

Outcome outcome_of(const DriftCase& drawn, BlockSide side, std::int64_t entry) {
  const std::int64_t end = drawn.base + drawn.unit_length;
  return follow_all_paths({drawn.text, drawn.base, end, drawn.base, end, 0, drawn.unit_length - 1,
                           entry, drawn.scoring},
                          side == BlockSide::kRight, entry);
}

/// Copies of a unit with edits; some have many bases more or fewer at one place.
std::string draw_drifting_copies(RandomEngine& engine, const std::string& unit) {
  std::string copies;
  const std::size_t percent = draw_between(engine, 0, 6);
  for (std::size_t copy = draw_between(engine, 2, 6); copy > 0; --copy) {
    const std::size_t place = draw_between(engine, 0, 2 * unit.size());
    const std::size_t drift = draw_between(engine, 1, 30);
    const bool is_shorter = draw_chance(engine, 50);
    for (std::size_t i = 0; i < unit.size(); ++i) {
      if (i == place && !is_shorter) copies += draw_letters(engine, drift, "ACGT");
      if (i >= place && i < place + drift && is_shorter) continue;
      copies += draw_chance(engine, percent) ? 'A' : unit[i];
    }
  }
  return copies;
}

DriftCase draw_case(RandomEngine& engine) {
  DriftCase drawn{};
  const std::size_t of_array = draw_between(engine, 96, 200);
  drawn.text = draw_letters(engine, draw_between(engine, 0, 250), "ACGT");
  const std::size_t array = drawn.text.size();
  drawn.text += draw_drifting_copies(engine, draw_letters(engine, of_array, "ACGT"));
  drawn.text += draw_letters(engine, draw_between(engine, 230, 500), "ACGT");
  drawn.unit_length =
      std::max<std::int64_t>(kMinBlockUnit, draw_number(engine, of_array - 3, of_array + 3));
  drawn.base = draw_number(engine, array > 40 ? array - 40 : 0,
                           drawn.text.size() - static_cast<std::size_t>(drawn.unit_length) - 1);
  drawn.units = {drawn.unit_length, drawn.unit_length, kNoMinimumScore};
  if (draw_chance(engine, 60)) {
    const std::int64_t shorter = draw_number(engine, 0, kUnitsAtOnce - 1);
    drawn.units.first = std::max<std::int64_t>(kMinBlockUnit, drawn.unit_length - shorter);
    drawn.units.last = drawn.units.first + kUnitsAtOnce - 1;
  }
  drawn.scoring = {draw_number(engine, 4, 9), draw_number(engine, 3, 7), draw_chance(engine, 50)};
  return drawn;
}

TEST(BlockDrift, is_no_lower_than_any_path) {
  RandomEngine engine(81);
  int compared = 0;
  int far = 0;
  for (int round = 0; round < 400; ++round) {
    const DriftCase drawn = draw_case(engine);
    for (const BlockSide side : {BlockSide::kRight, BlockSide::kLeft}) {
      const std::int64_t entry =
          side == BlockSide::kRight ? 0 : static_cast<std::int64_t>(draw_between(engine, 0, 150));
      const Outcome outcome = outcome_of(drawn, side, entry);
      if (!outcome.is_complete) continue;
      for_each_vector_target([&](const char* target) {
        const SideReach reach = reach_of(drawn, side, entry);
        if (reach.is_open) return;
        ++compared;
        far += outcome.best > entry + 30 && outcome.widest > 16 ? 1 : 0;
        ASSERT_GE(reach.best_score, outcome.best)
            << target << " base " << drawn.base << " unit length " << drawn.unit_length << " of "
            << drawn.units.first << " to " << drawn.units.last << " penalties "
            << drawn.scoring.mismatch_penalty << "," << drawn.scoring.indel_penalty << " entry "
            << entry << " of " << drawn.text;
      });
    }
  }
  EXPECT_GT(compared, 1500);
  EXPECT_GT(far, 100);
}

/// A few copies without a match beside them: flanks and what is inserted have letters of their own.
/// So little is left between what a path collects and its bound.
DriftCase draw_case_among_strangers(RandomEngine& engine) {
  DriftCase drawn{};
  const std::size_t of_array = draw_between(engine, 96, draw_chance(engine, 60) ? 160 : 400);
  const std::string unit = draw_letters(engine, of_array, "ACGT");
  const std::size_t array = draw_between(engine, 0, 250);
  drawn.text = std::string(array, 'R');
  for (std::size_t copy = draw_between(engine, 2, 3); copy > 0; --copy) {
    std::string bases = unit;
    while (draw_chance(engine, 40)) {
      const std::size_t place = draw_between(engine, 0, bases.size());
      const std::size_t drift = draw_between(engine, 1, draw_chance(engine, 70) ? 20 : 66);
      if (draw_chance(engine, 50)) {
        bases.insert(place, drift, 'K');
      } else {
        bases.erase(place, drift);
      }
    }
    drawn.text += bases;
  }
  drawn.text.append(std::max(of_array + 2, draw_between(engine, 0, 400)), 'Y');
  drawn.unit_length = static_cast<std::int64_t>(of_array);
  drawn.base = draw_number(engine, array, array + of_array);
  const std::int64_t shorter = draw_number(engine, 0, kUnitsAtOnce - 1);
  drawn.units.first = std::max<std::int64_t>(kMinBlockUnit, drawn.unit_length - shorter);
  drawn.units.last = drawn.units.first + kUnitsAtOnce - 1;
  if (draw_chance(engine, 40)) drawn.units = {drawn.unit_length, drawn.unit_length, 0};
  drawn.units.min_score = kNoMinimumScore;
  drawn.scoring = {draw_number(engine, 4, 12), draw_number(engine, 4, 8), false};
  return drawn;
}

TEST(BlockDrift, is_no_lower_than_paths_among_strangers) {
  RandomEngine engine(85);
  int compared = 0;
  int close = 0;
  for (int round = 0; round < 2500; ++round) {
    const DriftCase drawn = draw_case_among_strangers(engine);
    for (const BlockSide side : {BlockSide::kRight, BlockSide::kLeft}) {
      const Outcome outcome = outcome_of(drawn, side, 0);
      const SideReach reach = reach_of(drawn, side, 0);
      if (!outcome.is_complete || reach.is_open) continue;
      ++compared;
      close += outcome.best > 30 && reach.best_score < outcome.best + 4 ? 1 : 0;
      ASSERT_GE(reach.best_score, outcome.best)
          << "base " << drawn.base << " unit length " << drawn.unit_length << " of "
          << drawn.units.first << " to " << drawn.units.last << " penalties "
          << drawn.scoring.mismatch_penalty << "," << drawn.scoring.indel_penalty << " of "
          << drawn.text;
    }
  }
  EXPECT_GT(compared, 2000);
  EXPECT_GT(close, 50);
}

/// A unit of 208 bases from base 320 on, and its only copy 208 + `more` bases later.
DriftCase two_copies(RandomEngine& engine, std::size_t more) {
  const std::string unit = draw_letters(engine, 208, "ACGT");
  return {draw_letters(engine, 320, "ACGT") + unit + draw_letters(engine, more, "ACGT") + unit +
              draw_letters(engine, 1000, "ACGT"),
          320,
          208,
          {208, 208, kNoMinimumScore},
          {6, 6, true}};
}

TEST(BlockDrift, pays_for_lags) {
  RandomEngine engine(82);
  std::int64_t last = 300;
  for (const std::size_t more : {0U, 48U, 96U}) {
    const DriftCase drawn = two_copies(engine, more);
    const SideReach reach = reach_of(drawn, BlockSide::kRight, 0);
    EXPECT_FALSE(reach.is_open);
    EXPECT_GE(reach.best_score, outcome_of(drawn, BlockSide::kRight, 0).best);
    EXPECT_LT(reach.best_score, last - 40) << more;
    last = reach.best_score;
  }
}

// The copy begins at the last lag of a bucket, and goes on 17 lags later: two buckets, in one
// block.
TEST(BlockDrift, lets_a_path_drift_by_two_buckets_in_a_block) {
  for (const BlockSide side : {BlockSide::kRight, BlockSide::kLeft}) {
    RandomEngine engine(84);
    const std::string unit = draw_letters(engine, 303, "ACGT");
    const std::string drift = draw_letters(engine, 17, "ACGT");
    const bool is_right = side == BlockSide::kRight;
    const std::string copy = is_right ? unit.substr(0, 64) + drift + unit.substr(64)
                                      : unit.substr(0, 239) + drift + unit.substr(239);
    const std::string around = draw_letters(engine, 656, "ACGT");
    const DriftCase drawn{around + (is_right ? unit + copy : copy + unit) + around,
                          is_right ? 656 : 656 + 320,
                          303,
                          {303, 303, kNoMinimumScore},
                          {4, 4, false}};
    const SideReach reach = reach_of(drawn, side, 0);
    const std::int64_t best = outcome_of(drawn, side, 0).best;
    EXPECT_GE(best, 303 - 17 * 4);
    EXPECT_FALSE(reach.is_open);
    EXPECT_GE(reach.best_score, best);
  }
}

// 15 lags more in each copy than those of the shortest unit.
TEST(BlockDrift, lets_the_lags_of_the_longest_unit_grow) {
  RandomEngine engine(85);
  const std::string unit = draw_letters(engine, 303, "ACGT");
  const std::string around = draw_letters(engine, 640, "ACGT");
  DriftCase drawn{around + unit + unit + unit + unit + around,
                  640,
                  303,
                  {288, 303, kNoMinimumScore},
                  {30, 30, false}};
  for (const BlockSide side : {BlockSide::kRight, BlockSide::kLeft}) {
    drawn.base = side == BlockSide::kRight ? 640 : 640 + 3 * 303;
    const SideReach reach = reach_of(drawn, side, 0);
    const std::int64_t best = outcome_of(drawn, side, 0).best;
    EXPECT_GE(best, 3 * 303);
    EXPECT_FALSE(reach.is_open);
    EXPECT_GE(reach.best_score, best);
  }
}

TEST(BlockDrift, takes_indel_penalties_of_any_size) {
  RandomEngine engine(86);
  DriftCase drawn = two_copies(engine, 48);
  for (const std::int64_t penalty : {200'000'000LL, 1'000'000'000LL, 2'147'483'648LL}) {
    drawn.scoring.indel_penalty = penalty;
    for (const BlockSide side : {BlockSide::kRight, BlockSide::kLeft}) {
      const SideReach reach = reach_of(drawn, side, 0);
      EXPECT_FALSE(reach.is_open);
      EXPECT_GE(reach.best_score, outcome_of(drawn, side, 0).best);
      EXPECT_LT(reach.best_score, 100) << penalty;
    }
  }
}

TEST(BlockDrift, ends_at_the_minimum_score) {
  RandomEngine engine(83);
  DriftCase drawn = two_copies(engine, 0);
  const std::int64_t best = reach_of(drawn, BlockSide::kRight, 0).best_score;
  EXPECT_GE(best, 208);
  drawn.units.min_score = 100;
  EXPECT_GE(reach_of(drawn, BlockSide::kRight, 0).best_score, 100);
  EXPECT_LT(reach_of(drawn, BlockSide::kRight, 0).best_score, best);
}

TEST(BlockDrift, leaves_arrays_open) {
  DriftCase drawn{std::string(4000, 'A'), 1000, 100, {100, 100, kNoMinimumScore}, {6, 6, true}};
  for (const BlockSide side : {BlockSide::kRight, BlockSide::kLeft}) {
    EXPECT_TRUE(reach_of(drawn, side, 0).is_open);
  }
}

}  // namespace
}  // namespace quorix::testing
