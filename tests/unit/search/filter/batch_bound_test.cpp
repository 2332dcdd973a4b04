// The bound of seeds side by side, against a table of all states of each of them in 64-bit numbers.

#include "search/filter/batch_bound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "support/filter/bound_verdict.h"
#include "support/filter/plain_batch_reach.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

std::uint32_t undecided(const Batch& batch, std::uint32_t asked, std::int64_t min_score) {
  const CBases bases(batch.text);
  BoundWorkspace workspace;
  return static_cast<std::uint32_t>(batch_bound(
      {bases.begin(), bases.end(), batch.scoring},
      {bases.at(static_cast<std::size_t>(batch.first)), batch.unit_length, asked, min_score},
      workspace));
}

/// A seed may be rejected only if no path of it gets to `min_score`, and has to be far from the
/// ends.
void expect_bound_of(const Batch& batch, const BatchReach& reaches, std::uint32_t asked,
                     std::int64_t min_score, VerdictTally& tally) {
  const bool is_exact = min_score > 0 && is_in_reach_of_bound(batch, asked, reaches);
  for_each_vector_target([&](const char* target) {
    const std::uint32_t answer = undecided(batch, asked, min_score);
    const auto describe = [&](std::int64_t k) {
      return std::string(target) + " seed " + std::to_string(batch.first) + "+" +
             std::to_string(k) + " unit length " + std::to_string(batch.unit_length) + " of " +
             batch.text + " needed " + std::to_string(min_score) + " penalties " +
             std::to_string(batch.scoring.mismatch_penalty) + "," +
             std::to_string(batch.scoring.indel_penalty) + " asked " + std::to_string(asked);
    };
    ASSERT_EQ(answer & ~asked, 0U) << describe(0);
    for (std::int64_t k = 0; k < kSeeds; ++k) {
      const std::optional<Outcome>& reach = reaches[static_cast<std::size_t>(k)];
      if ((asked & seed_bit(k)) == 0 || !reach) continue;
      expect_verdict((answer & seed_bit(k)) != 0,
                     {batch.unit_length, reach->best, min_score, is_exact}, tally,
                     [&] { return describe(k); });
    }
  });
}

/// All of the seeds, half of them, few of them, one of them.
std::uint32_t draw_mask(RandomEngine& engine) {
  const auto bits = [&] { return static_cast<std::uint32_t>(engine()); };
  switch (draw_between(engine, 0, 3)) {
    case 0:
      return ~std::uint32_t{0};
    case 1:
      return bits();
    case 2:
      return bits() & bits() & bits();
    default:
      return seed_bit(draw_number(engine, 0, kSeeds - 1));
  }
}

/// Asks for all seeds and for some of them, at scores around those that they reach.
void expect_bounds(RandomEngine& engine, const Batch& batch, VerdictTally& tally) {
  const std::uint32_t seeds = batch.units_without_Ns();
  const BatchReach reaches = reach_of(batch, seeds);
  const auto& some_reach = reaches[draw_between(engine, 0, kSeeds - 1)];
  const std::int64_t best = some_reach ? some_reach->best : 6;
  for (const std::int64_t min_score : {best, best + 1, best + draw_number(engine, 0, 12) - 6,
                                       std::max<std::int64_t>(batch.unit_length, 6)}) {
    ASSERT_NO_FATAL_FAILURE(expect_bound_of(batch, reaches, seeds, min_score, tally));
    ASSERT_NO_FATAL_FAILURE(
        expect_bound_of(batch, reaches, seeds & draw_mask(engine), min_score, tally));
  }
}

/// Copies of a unit with edits, some N's among them at times.
std::string draw_copies(RandomEngine& engine, const std::string& unit, std::size_t max_count) {
  std::string copies;
  const std::size_t count = draw_between(engine, 0, max_count);
  for (std::size_t i = 0; i < count; ++i) {
    copies += unit.substr(
        0, draw_chance(engine, 50) ? unit.size() : draw_between(engine, 0, unit.size()));
  }
  const bool has_Ns = draw_chance(engine, 30);
  for (char& base : copies) {
    if (draw_chance(engine, 8)) base = (has_Ns ? "ACGTN" : "ACGTT")[draw_between(engine, 0, 4)];
  }
  if (!copies.empty() && draw_chance(engine, 30)) {
    copies.erase(draw_between(engine, 0, copies.size() - 1), 1);
  }
  return copies;
}

/// Seeds in and beside an array of a unit of `unit_length` with `before` random bases before it and
/// `after` after it.
Batch draw_batch(RandomEngine& engine, std::size_t unit_length, std::size_t before,
                 std::size_t after) {
  Batch batch{};
  batch.unit_length = static_cast<std::int64_t>(unit_length);
  const std::string unit = draw_letters(engine, unit_length, "ACGT");
  batch.text = draw_letters(engine, before, "ACGT") + draw_copies(engine, unit, 2);
  batch.first = static_cast<std::int64_t>(batch.text.size()) - draw_number(engine, 0, 20);
  batch.first = std::max<std::int64_t>(batch.first, 0);
  batch.text += unit + draw_copies(engine, unit, 2);
  if (draw_chance(engine, 30)) batch.text += std::string(draw_between(engine, 1, 6), 'N');
  batch.text += draw_letters(engine, after, "ACGT");
  const std::int64_t missing = batch.first + batch.unit_length + kSeeds - batch.text_length();
  if (missing > 0) batch.text += draw_letters(engine, static_cast<std::size_t>(missing), "ACGT");
  batch.scoring.mismatch_penalty = draw_number(engine, 2, 9);
  batch.scoring.indel_penalty =
      draw_chance(engine, 30) ? batch.scoring.mismatch_penalty : draw_number(engine, 2, 9);
  batch.scoring.is_N_neutral = draw_chance(engine, 50);
  return batch;
}

TEST(BatchBound, is_the_best_of_all_paths_of_each_seed) {
  RandomEngine engine(21);
  VerdictTally tally;
  for (int round = 0; round < 120; ++round) {
    const Batch batch = draw_batch(engine, draw_between(engine, 1, 40), 700, 700);
    ASSERT_NO_FATAL_FAILURE(expect_bounds(engine, batch, tally));
  }
  EXPECT_GT(tally.rejected, 10'000);
  EXPECT_GT(tally.had_to_be_rejected, tally.rejected * 3 / 4);
  EXPECT_GT(tally.undecided, 5000);
}

TEST(BatchBound, is_the_best_of_all_paths_of_each_seed_of_long_units) {
  RandomEngine engine(22);
  VerdictTally tally;
  for (int round = 0; round < 12; ++round) {
    const Batch batch = draw_batch(engine, draw_between(engine, 130, 200), 1300, 1300);
    ASSERT_NO_FATAL_FAILURE(expect_bounds(engine, batch, tally));
  }
  EXPECT_GT(tally.with_16_bits, 500);
  EXPECT_GT(tally.had_to_be_rejected, 500);
  EXPECT_GT(tally.undecided, 500);
}

TEST(BatchBound, rejects_nothing_wrongly_near_the_ends_of_the_text) {
  RandomEngine engine(23);
  VerdictTally tally;
  for (int round = 0; round < 250; ++round) {
    Batch batch = draw_batch(engine, draw_between(engine, 1, 40), draw_between(engine, 0, 90),
                             draw_between(engine, 0, 90));
    const std::int64_t last = batch.text_length() - batch.unit_length - kSeeds;
    if (draw_chance(engine, 30)) batch.first = 0;
    if (draw_chance(engine, 30)) batch.first = last;
    ASSERT_NO_FATAL_FAILURE(expect_bounds(engine, batch, tally));
  }
  EXPECT_GT(tally.rejected, 500);
  EXPECT_GT(tally.undecided, 10'000);
}

/// Seeds far from the ends that cannot extend: no base beyond the units equals one in them.
Batch lone_units(std::int64_t unit_length, std::size_t margin) {
  Batch batch{};
  batch.text = std::string(margin, 'A') +
               std::string(static_cast<std::size_t>(unit_length + kSeeds), 'C') +
               std::string(margin, 'A');
  batch.first = static_cast<std::int64_t>(margin);
  batch.unit_length = unit_length;
  batch.scoring.mismatch_penalty = batch.scoring.indel_penalty = 6;
  return batch;
}

TEST(BatchBound, leaves_seeds_undecided_that_cannot_be_read_whole) {
  Batch batch = lone_units(5, 500);
  const std::uint32_t asked = 0xF0F0F0F1U;
  EXPECT_EQ(undecided(batch, asked, 100), 0U);
  batch.first = batch.text_length() - 5 - kSeeds;
  EXPECT_EQ(undecided(batch, asked, 100), asked);
  for (; batch.first + 5 < batch.text_length(); ++batch.first) {
    EXPECT_EQ(undecided(batch, asked & batch.units_without_Ns(), 100),
              asked & batch.units_without_Ns());
  }
}

// The seeds of one vector are followed together, so wider ones need more.
TEST(BatchBound, needs_few_bases_around_its_seeds) {
  for_each_vector_target([](const char* target) {
    constexpr std::size_t kEnough = 200;
    std::size_t after = 0;
    std::size_t before = kEnough;
    const auto is_undecided = [&] {
      Batch lone = lone_units(5, kEnough);
      lone.text.resize(lone.text.size() - kEnough + after);
      lone.text.erase(0, kEnough - before);
      lone.first -= static_cast<std::int64_t>(kEnough - before);
      return undecided(lone, 1, 100) != 0;
    };
    while (after < kEnough && is_undecided()) ++after;
    const std::size_t needed_after = after;
    after = kEnough;
    before = 0;
    while (before < kEnough && is_undecided()) ++before;
    EXPECT_EQ(before, 7U) << target;
    // 16 or 32 seeds read one base after the other.
    EXPECT_TRUE(needed_after == 7 + 15 || needed_after == 7 + 31) << target << needed_after;
  });
}

/// What it takes to give up a seed in the middle of an array that is longer than it is followed:
/// the rows to the right, and the first two to the left.
BoundWork work_along_an_array(std::size_t unit_length) {
  RandomEngine engine(35);
  Batch batch = lone_units(static_cast<std::int64_t>(unit_length), 10);
  batch.text = repeated(draw_letters(engine, unit_length, "ACGT"), 20'000 / unit_length);
  batch.first = 10'000;
  const CBases bases(batch.text);
  BoundWorkspace workspace;
  EXPECT_EQ(batch_bound({bases.begin(), bases.end(), {1000, 1000, false}},
                        {bases.at(10'000), batch.unit_length, 1, 9'000}, workspace),
            1U);
  return workspace.work;
}

TEST(BatchBound, follows_short_units_less_far_than_others) {
  for_each_vector_target([](const char* target) {
    EXPECT_EQ(work_along_an_array(28).rows, 1023U + 2) << target;
    EXPECT_EQ(work_along_an_array(29).rows, 8191U + 2) << target;
  });
}

TEST(BatchBound, fits_units_of_up_to_30000_bases) {
  for (const std::size_t unit_length : {30'000U, 30'001U}) {
    const std::string text(unit_length + 40, 'A');
    BoundWorkspace workspace;
    EXPECT_EQ(batch_bound({text.data(), text.data() + text.size(), {6, 6, false}},
                          {text.data(), static_cast<std::int64_t>(unit_length), 1, 9}, workspace),
              1U);
    EXPECT_EQ(workspace.work.tables, unit_length == 30'000 ? 2U : 0U);
  }
}

TEST(BatchBound, leaves_seeds_undecided_that_have_the_score_already) {
  const Batch batch = lone_units(40, 1500);
  EXPECT_EQ(undecided(batch, 0x1234U, 0), 0x1234U);
  EXPECT_EQ(undecided(batch, 0x1234U, -7), 0x1234U);
  // To the right of seed k lie 32 - k more bases of the array, to its left k.
  EXPECT_EQ(undecided(batch, 0x1234U, 32), 0x1234U);
  EXPECT_EQ(undecided(batch, 0x1234U, 33), 0U);
}

TEST(BatchBound, leaves_seeds_beyond_its_batch_undecided) {
  const Batch batch = lone_units(40, 1500);
  const CBases bases(batch.text);
  BoundWorkspace workspace;
  const std::uint64_t asked = 0xF000'0001'8000'0001U;
  EXPECT_EQ(
      batch_bound({bases.begin(), bases.end(), batch.scoring},
                  {bases.at(static_cast<std::size_t>(batch.first)), 40, asked, 33}, workspace),
      0xF000'0001'0000'0000U);
}

TEST(BatchBound, answers_for_no_seed_without_a_question) {
  EXPECT_EQ(undecided(lone_units(5, 500), 0, 5), 0U);
}

// Some compilers build for processors with vectors alone.
#if (HWY_TARGETS & HWY_SCALAR) != 0
TEST(BatchBound, leaves_all_undecided_without_vectors) {
  with_no_vectors([] { EXPECT_EQ(undecided(lone_units(40, 1500), 0xFFU, 33), 0xFFU); });
  EXPECT_EQ(undecided(lone_units(40, 1500), 0xFFU, 33), 0U);
}
#endif

TEST(BatchBound, takes_penalties_of_any_height) {
  Batch batch = lone_units(8, 500);
  batch.scoring.mismatch_penalty = batch.scoring.indel_penalty = 2147483648;
  EXPECT_EQ(undecided(batch, 0xFFFFFFFFU, 32), 0xFFFFFFFFU);
  EXPECT_EQ(undecided(batch, 0xFFFFFFFFU, 33), 0U);
}

}  // namespace
}  // namespace quorix::testing
