// The seeds that the run sieve leaves undecided, against the rule written out base by base.

#include "search/filter/run_sieve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/filter/plain_run_sieve.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

struct RunTally {
  std::int64_t undecided = 0;
  std::int64_t rejected = 0;
};

void expect_seeds_of(const std::string& bases, bool is_N_wild, const RunRule& rule,
                     CNeighbourLags& lags, RunTally& tally) {
  const CPlainText text(bases, is_N_wild);
  const auto lag = static_cast<std::uint64_t>(rule.unit_length);
  lags.move_to(lag, rule.min_run < rule.sure_run);
  CBitSet seeds;
  seeds.reset_to_set(bases.size() - lag);
  sift_by_runs(lags, rule, {0, bases.size()}, seeds);
  for (std::uint64_t p = 0; p < seeds.size(); ++p) {
    const bool expected = is_run_seed(text, lags.planes(), rule, static_cast<std::int64_t>(p));
    ASSERT_EQ(seeds.test(p), expected)
        << bases << " unit " << lag << " base " << p << " rule " << rule.min_run << ","
        << rule.sure_run << "," << rule.min_two_runs << (is_N_wild ? " wild" : "");
    ++(expected ? tally.undecided : tally.rejected);
  }
  // A unit that ends with the text has no base after it and seeds nothing.
  for (std::uint64_t p = seeds.size(); p < seeds.words().size() * kWordBits; ++p) {
    ASSERT_FALSE(seeds.test(p)) << "after " << bases << " unit " << lag;
  }
}

RunRule draw_rule(RandomEngine& engine, std::int64_t unit_length) {
  const auto between = [&](std::size_t first, std::size_t last) {
    return static_cast<std::int64_t>(draw_between(engine, first, last));
  };
  const std::int64_t min_run = between(1, 9);
  switch (draw_between(engine, 0, 3)) {
    case 0:
      return {unit_length, min_run, min_run, min_run};
    case 1:
      return {unit_length, min_run, min_run + between(0, 12), between(1, 30)};
    case 2:
      return {unit_length, min_run, 150, between(1, 150)};
    default:
      return {unit_length, between(50, 140), 150, between(60, 200)};
  }
}

TEST(RunSieve, leaves_the_seeds_of_the_rule_undecided) {
  RandomEngine engine(4);
  RunTally tally;
  for (int round = 0; round < 1500; ++round) {
    std::string bases = draw_record(engine, 400, draw_chance(engine, 70) ? 4 : 30);
    if (draw_chance(engine, 50)) std::replace(bases.begin(), bases.end(), 'N', 'C');
    if (draw_chance(engine, 20)) bases += draw_array(engine, 300, 3, 1);
    const CBases block(bases);
    const CBasePlanes planes(block.begin(), bases.size());
    const bool is_N_wild = draw_chance(engine, 50);
    CNeighbourLags lags(planes, is_N_wild);
    for (std::uint64_t lag = draw_between(engine, 1, 9); lag < bases.size() && lag < 40;
         lag += draw_between(engine, 1, 4)) {
      const RunRule rule = draw_rule(engine, static_cast<std::int64_t>(lag));
      ASSERT_NO_FATAL_FAILURE(expect_seeds_of(bases, is_N_wild, rule, lags, tally));
    }
  }
  EXPECT_GT(tally.undecided, 100'000);
  EXPECT_GT(tally.rejected, 1'000'000);
}

/// Copies of a unit with an edit between two of them, after which `matches` bases match, and noise
/// around them.
std::string edited_copies(RandomEngine& engine, std::size_t unit_length, char kind,
                          std::size_t matches) {
  const std::string unit = draw_letters(engine, unit_length, "ACGT");
  const std::string copies = unit + unit + unit;
  const std::size_t edited = unit_length + 20;
  std::string text = copies.substr(0, edited);
  if (kind != 'D') text += draw_letters(engine, 1, "ACGT");
  const std::size_t next = edited + (kind == 'I' ? 0 : 1);
  text += copies.substr(next, matches);
  return draw_letters(engine, 150, "ACGT") + text + draw_letters(engine, 150, "ACGT");
}

TEST(RunSieve, counts_up_to_64_bases_after_an_edit) {
  RandomEngine engine(6);
  RunTally tally;
  for (const char kind : {'M', 'I', 'D'}) {
    for (std::size_t matches = 59; matches <= 66; ++matches) {
      for (const std::size_t unit_length : {61U, 63U, 64U, 65U, 66U, 90U}) {
        std::string bases = edited_copies(engine, unit_length, kind, matches);
        for (int turn = 0; turn < 2; ++turn, std::reverse(bases.begin(), bases.end())) {
          const CBases block(bases);
          const CBasePlanes planes(block.begin(), bases.size());
          CNeighbourLags lags(planes, false);
          for (const std::int64_t chained : {60, 80, 84, 150}) {
            const RunRule rule{static_cast<std::int64_t>(unit_length), 10, 200, chained};
            ASSERT_NO_FATAL_FAILURE(expect_seeds_of(bases, false, rule, lags, tally));
          }
        }
      }
    }
  }
  EXPECT_GT(tally.undecided, 1000);
  EXPECT_GT(tally.rejected, 100'000);
}

TEST(RunSieve, reaches_from_one_end_of_the_text_to_the_other) {
  RunTally tally;
  for (const std::size_t length :
       std::vector<std::size_t>{2, 63, 64, 65, 66, 127, 128, 129, 130, 200}) {
    const std::string bases(length, 'A');
    const CBases block(bases);
    const CBasePlanes planes(block.begin(), length);
    CNeighbourLags lags(planes, false);
    for (std::int64_t lag = 1; lag < static_cast<std::int64_t>(length) && lag < 70; ++lag) {
      const auto run = static_cast<std::int64_t>(length) - lag;
      for (const std::int64_t min_run : {run, run + 1}) {
        const RunRule rule{lag, min_run, min_run, min_run};
        ASSERT_NO_FATAL_FAILURE(expect_seeds_of(bases, false, rule, lags, tally));
      }
    }
  }
  EXPECT_GT(tally.undecided, 1000);
  EXPECT_GT(tally.rejected, 1000);
}

TEST(RunSieve, rejects_the_same_seeds_however_a_text_is_split) {
  RandomEngine engine(7);
  for (int round = 0; round < 300; ++round) {
    std::string bases = draw_record(engine, 900, draw_chance(engine, 70) ? 4 : 30);
    if (draw_chance(engine, 30)) bases += std::string(draw_between(engine, 1, 300), 'A');
    if (draw_chance(engine, 50)) std::replace(bases.begin(), bases.end(), 'N', 'C');
    const auto lag = draw_between(engine, 1, 30);
    if (bases.size() <= lag) continue;
    const CBases block(bases);
    const CBasePlanes planes(block.begin(), bases.size());
    CNeighbourLags lags(planes, draw_chance(engine, 50));
    RunRule rule = draw_rule(engine, static_cast<std::int64_t>(lag));
    if (draw_chance(engine, 50)) rule = {static_cast<std::int64_t>(lag), 1, 9, 9};
    lags.move_to(lag, true);
    CBitSet whole;
    whole.reset_to_set(bases.size() - lag);
    CBitSet parts = whole;
    CBitSet part;
    sift_by_runs(lags, rule, {0, bases.size()}, whole);
    for (std::uint64_t first = 0; first < bases.size();) {
      const std::uint64_t end = first + draw_between(engine, 1, draw_chance(engine, 50) ? 200 : 70);
      part.reset_to_set(bases.size() - lag);
      sift_by_runs(lags, rule, {first, end}, part);
      sift_by_runs(lags, rule, {first, end}, parts);
      for (std::uint64_t p = 0; p < part.size(); ++p) {
        ASSERT_EQ(part.test(p), p < first || p >= end || whole.test(p)) << p << " of " << bases;
      }
      first = end;
    }
    EXPECT_EQ(parts.words(), whole.words());
  }
}

TEST(NeighbourLags, have_the_matches_of_a_lag_and_of_those_beside_it) {
  RandomEngine engine(5);
  const std::string bases = draw_array(engine, 150, 5, 20);
  const CBases block(bases);
  const CBasePlanes planes(block.begin(), bases.size());
  CNeighbourLags lags(planes, true);
  CBitSet expected;
  for (const std::uint64_t lag : std::vector<std::uint64_t>{2, 3, 4, 9, 8, 7, 60, 3}) {
    lags.move_to(lag, draw_chance(engine, 30));
    planes.find_matches(lag, true, expected);
    EXPECT_EQ(lags.at().words(), expected.words()) << lag;
    lags.move_to(lag, true);
    EXPECT_EQ(lags.at().words(), expected.words()) << lag;
    planes.find_matches(lag - 1, true, expected);
    EXPECT_EQ(lags.shorter().words(), expected.words()) << lag;
    planes.find_matches(lag + 1, true, expected);
    EXPECT_EQ(lags.longer().words(), expected.words()) << lag;
  }
}

}  // namespace
}  // namespace quorix::testing
