// The seeds that the block sieve leaves undecided, against all paths of each seed.

#include "search/filter/block_sieve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/filter/plain_score_paths.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

LagRule units_rule(std::int64_t first_unit, std::int64_t last_unit, const ScoringRules& scoring) {
  LagRule rule{first_unit, {}, scoring};
  for (std::int64_t unit = first_unit; unit <= last_unit; ++unit) rule.min_scores.push_back(unit);
  return rule;
}

/// All seeds of the unit lengths of a rule.
std::vector<CBitSet> set_seeds(const std::string& text, const LagRule& rule) {
  std::vector<CBitSet> seeds;
  for (std::size_t i = 0; i < rule.min_scores.size(); ++i) {
    seeds.emplace_back().reset_to_set(text.size() -
                                      static_cast<std::size_t>(rule.first_unit_length) - i);
  }
  return seeds;
}

std::vector<CBitSet> left_seeds(const std::string& text, const LagRule& rule) {
  const CBases bases(text);
  std::vector<CBitSet> seeds = set_seeds(text, rule);
  sift_text_by_blocks(bases.begin(), text.size(), rule, seeds);
  return seeds;
}

/// An array of `unit` with edits, some of them as long as a few units.
std::string draw_edited_copies(RandomEngine& engine, const std::string& unit, std::size_t length,
                               std::size_t percent) {
  std::string copies;
  while (copies.size() < length) {
    for (const char letter : unit) {
      if (draw_chance(engine, percent)) {
        const auto kind = draw_between(engine, 0, 3);
        if (kind == 0) continue;
        copies += kind == 1 ? "AN" : kind == 2 ? "C" : "GT";
        continue;
      }
      copies += letter;
    }
  }
  return copies.substr(0, length);
}

std::string draw_text_around_array(RandomEngine& engine, std::size_t unit_length) {
  std::string text = draw_letters(engine, draw_between(engine, 0, 300), "ACGT");
  const std::string unit = draw_letters(engine, unit_length, "ACGT");
  text += draw_edited_copies(engine, unit, draw_between(engine, unit_length, 4 * unit_length),
                             draw_between(engine, 0, 12));
  return text + draw_letters(engine, draw_between(engine, unit_length + 2, 400), "ACGT");
}

std::int64_t best_of(const std::string& text, std::int64_t p, std::int64_t unit_length,
                     const ScoringRules& scoring) {
  const std::int64_t end = p + unit_length;
  const Outcome outcome = follow_all_paths({text, p, end, p, end, 0, unit_length - 1, 0, scoring});
  return outcome.is_complete ? outcome.best : -1;
}

TEST(BlockSieve, rejects_no_seed_that_reaches_its_score) {
  RandomEngine engine(71);
  std::int64_t rejected = 0;
  std::int64_t kept = 0;
  for (int round = 0; round < 150; ++round) {
    const auto of_array = draw_between(engine, 90, 180);
    const std::string text = draw_text_around_array(engine, of_array);
    const auto unit_length = static_cast<std::int64_t>(
        std::max<std::size_t>(96, of_array + draw_between(engine, 0, 6) - std::size_t{3}));
    if (unit_length + 2 > static_cast<std::int64_t>(text.size())) continue;
    const ScoringRules scoring{draw_number(engine, 2, 9), draw_number(engine, 2, 9),
                               draw_chance(engine, 50)};
    const std::int64_t p =
        draw_number(engine, 0, text.size() - static_cast<std::size_t>(unit_length) - 1);
    if (text.substr(static_cast<std::size_t>(p), static_cast<std::size_t>(unit_length)).find('N') !=
        std::string::npos) {
      continue;
    }
    const std::int64_t best = best_of(text, p, unit_length, scoring);
    if (best < 1) continue;
    for (const std::int64_t spread : {0, 5, 40}) {
      const std::int64_t last =
          std::min(unit_length + spread / 2, static_cast<std::int64_t>(text.size()) - 1);
      LagRule rule = units_rule(std::max<std::int64_t>(unit_length - spread, 1), last, scoring);
      const auto index = static_cast<std::size_t>(unit_length - rule.first_unit_length);
      for (const std::int64_t more : {0, 1, 60}) {
        rule.min_scores[index] = best + more;
        for_each_vector_target([&](const char* target) {
          const bool is_left = left_seeds(text, rule)[index].test(static_cast<std::uint64_t>(p));
          ++(is_left ? kept : rejected);
          if (more != 0) return;
          ASSERT_TRUE(is_left) << target << " base " << p << " of " << text << " unit length "
                               << unit_length << " penalties " << scoring.mismatch_penalty << ","
                               << scoring.indel_penalty << " spread " << spread;
        });
      }
    }
  }
  EXPECT_GT(rejected, 100);
  EXPECT_GT(kept, 300);
}

/// Two copies of a random unit, the first one from base `lead` on. A seed at the copy in question
/// extends over the other one, and no farther.
std::string text_of_two_copies(RandomEngine& engine, std::size_t lead, std::size_t unit_length,
                               bool is_first_copy) {
  const std::string unit = "A" + draw_letters(engine, unit_length - 2, "ACGT") + "C";
  const std::string before = draw_letters(engine, lead - 1, is_first_copy ? "ACGT" : "N") + "T";
  return before + unit + unit + "G" + draw_letters(engine, 150, is_first_copy ? "N" : "ACGT");
}

// Bases and unit lengths at the ends of their blocks, where a tail has all its blocks.
TEST(BlockSieve, counts_every_character_of_each_of_16_unit_lengths) {
  RandomEngine engine(75);
  for (const std::int64_t penalty : {std::int64_t{100}, std::int64_t{1} << 31}) {
    for (const std::int64_t first_unit : {96, 97, 126, 127}) {
      for (const std::int64_t unit_length : {first_unit, first_unit + 15}) {
        for (const std::int64_t p : {256, 257, 286, 287}) {
          for (const bool is_first_copy : {true, false}) {
            LagRule rule = units_rule(first_unit, first_unit + 15, {penalty, penalty, false});
            std::fill(rule.min_scores.begin(), rule.min_scores.end(), unit_length);
            const std::int64_t lead = is_first_copy ? p : p - unit_length;
            const std::string text =
                text_of_two_copies(engine, static_cast<std::size_t>(lead),
                                   static_cast<std::size_t>(unit_length), is_first_copy);
            const auto index = static_cast<std::size_t>(unit_length - first_unit);
            for_each_vector_target([&](const char* target) {
              EXPECT_TRUE(left_seeds(text, rule)[index].test(static_cast<std::uint64_t>(p)))
                  << target << " units from " << first_unit << " unit length " << unit_length
                  << " base " << p << (is_first_copy ? " first" : " second") << " copy";
            });
          }
        }
      }
    }
  }
}

TEST(BlockSieve, lets_each_unit_fall_to_its_own_floor) {
  RandomEngine engine(76);
  constexpr std::int64_t kUnit = 111;
  constexpr std::int64_t kPenalty = 98;
  // After three blocks the score is -102: no more than minus 96, but above minus 111.
  constexpr std::int64_t kScore = (94 - 2 * kPenalty) + (kUnit - 96) + 2 * kUnit;
  const std::string unit = draw_letters(engine, kUnit, "ACGT");
  std::string copy = unit;
  for (const std::size_t last_of_block : {63U, 95U}) {
    copy[last_of_block] = copy[last_of_block] == 'A' ? 'C' : 'A';
  }
  const std::string text = draw_letters(engine, 64, "ACGT") + unit + copy + unit + unit +
                           draw_letters(engine, 150, "ACGT");
  LagRule rule = units_rule(96, kUnit, {kPenalty, kPenalty, true});
  std::fill(rule.min_scores.begin(), rule.min_scores.end(), kScore);
  for_each_vector_target(
      [&](const char* target) { EXPECT_TRUE(left_seeds(text, rule).back().test(64)) << target; });
}

TEST(BlockSieve, leaves_seeds_of_arrays_longer_than_it_follows) {
  RandomEngine engine(77);
  constexpr std::int64_t kUnit = 128;
  constexpr std::int64_t kCopies = kMaxBlockCopies + 4;
  const std::string unit = draw_letters(engine, kUnit, "ACGT");
  std::string text = draw_letters(engine, 64, "ACGT");
  for (std::int64_t i = 0; i < kCopies; ++i) text += unit;
  text += draw_letters(engine, 150, "ACGT");
  LagRule rule = units_rule(kUnit, kUnit, {6, 6, true});
  rule.min_scores[0] = (kCopies - 1) * kUnit;
  for_each_vector_target([&](const char* target) {
    const std::vector<CBitSet> left = left_seeds(text, rule);
    EXPECT_TRUE(left[0].test(64)) << target;                          // all copies to the right
    EXPECT_TRUE(left[0].test(64 + (kCopies - 1) * kUnit)) << target;  // and to the left
  });
}

// Together, what a path pays for its lags counts for the group alone.
TEST(BlockSieve, leaves_hardly_more_seeds_if_units_are_judged_together) {
  RandomEngine engine(72);
  std::int64_t rejected = 0;
  std::int64_t more = 0;
  std::int64_t kept = 0;
  for (int round = 0; round < 6; ++round) {
    const std::string text = draw_text_around_array(engine, draw_between(engine, 100, 300));
    const ScoringRules scoring{6, 6, round % 2 == 0};
    const std::int64_t first = draw_number(engine, 80, 110);
    const std::int64_t last =
        std::min<std::int64_t>(first + 70, static_cast<std::int64_t>(text.size()) - 1);
    const std::vector<CBitSet> together = left_seeds(text, units_rule(first, last, scoring));
    for (std::int64_t unit = first; unit <= last; ++unit) {
      const std::vector<CBitSet> alone = left_seeds(text, units_rule(unit, unit, scoring));
      const CBitSet& same = together[static_cast<std::size_t>(unit - first)];
      for (std::uint64_t p = 0; p < same.size(); ++p) {
        more += same.test(p) && !alone[0].test(p) ? 1 : 0;
        ++(same.test(p) ? kept : rejected);
      }
    }
  }
  EXPECT_GT(rejected, 1000);
  EXPECT_GT(kept, 1000);
  EXPECT_LT(more, kept / 10);
}

TEST(BlockSieve, rejects_nearly_all_seeds_of_random_dna) {
  RandomEngine engine(73);
  const std::string text = draw_letters(engine, 6000, "ACGT");
  for (const std::int64_t unit : {96, 171, 400, 1000}) {
    const CBitSet left = left_seeds(text, units_rule(unit, unit, {6, 6, true}))[0];
    std::uint64_t kept = 0;
    for (std::uint64_t p = 0; p < left.size(); ++p) kept += left.test(p) ? 1 : 0;
    EXPECT_LT(kept, left.size() / 50) << unit;
  }
}

TEST(BlockSieve, leaves_short_units_alone) {
  RandomEngine engine(74);
  const std::string text = draw_letters(engine, 900, "ACGT");
  const LagRule rule = units_rule(90, 99, {6, 6, true});
  const std::vector<CBitSet> all = set_seeds(text, rule);
  const std::vector<CBitSet> left = left_seeds(text, rule);
  for (std::size_t i = 0; i < left.size(); ++i) {
    EXPECT_EQ(left[i].words() == all[i].words(), 90 + i < 96) << i;
  }
}

}  // namespace
}  // namespace quorix::testing
