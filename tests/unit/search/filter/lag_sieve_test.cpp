// The seeds that the lag sieve leaves undecided, against tables filled cell by cell.

#include "search/filter/lag_sieve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "search/filter/lag_grid.h"
#include "support/filter/plain_lag_sieve.h"
#include "support/filter/plain_score_paths.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

struct LagTally {
  std::int64_t undecided = 0;
  std::int64_t rejected = 0;
  std::int64_t max_segments = 0;
};

/// Holds the seeds of every kind of processor against the tables of the slow twin.
void expect_seeds_of(const std::string& text, const LagRule& rules, LagTally& tally) {
  const CPlainLagSieve twin(text, rules);
  const std::vector<std::vector<bool>> expected = twin.seeds();
  tally.max_segments = std::max(tally.max_segments, twin.segment_count());
  const CBases bases(text);
  for_each_vector_target([&](const char* target) {
    std::vector<CBitSet> seeds;
    for (const std::vector<bool>& bits : expected) seeds.emplace_back().reset_to_set(bits.size());
    sift_text_by_lags(bases.begin(), text.size(), rules, seeds);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
      for (std::size_t p = 0; p < expected[i].size(); ++p) {
        ASSERT_EQ(seeds[i].test(p), expected[i][p])
            << target << " unit " << rules.first_unit_length + static_cast<std::int64_t>(i)
            << " base " << p << " of " << text.size() << " penalties "
            << rules.scoring.mismatch_penalty << "," << rules.scoring.indel_penalty
            << (rules.scoring.is_N_neutral ? " neutral N's" : "");
        ++(expected[i][p] ? tally.undecided : tally.rejected);
      }
    }
  });
}

LagRule rules_for(std::uint64_t first_unit, std::uint64_t last_unit, std::int64_t mismatch_penalty,
                  std::int64_t indel_penalty, bool is_N_neutral) {
  LagRule rules{
      static_cast<std::int64_t>(first_unit), {}, {mismatch_penalty, indel_penalty, is_N_neutral}};
  for (std::uint64_t unit = first_unit; unit <= last_unit; ++unit) {
    rules.min_scores.push_back(static_cast<std::int64_t>(std::max<std::uint64_t>(unit, 6)));
  }
  return rules;
}

struct SievePenalties {
  std::int64_t mismatch;
  std::int64_t indel;
};
constexpr SievePenalties kSievePenalties[] = {{5, 5}, {6, 6},  {7, 7},   {9, 9},
                                              {5, 9}, {30, 6}, {6, 300}, {2147483648, 2147483648}};

struct Units {
  std::uint64_t first;
  std::uint64_t last;
};

TEST(LagSieve, leaves_the_seeds_of_its_tables_undecided) {
  RandomEngine engine(6);
  LagTally tally;
  for (const auto& [mismatch, indel] : kSievePenalties) {
    for (const auto& [first, last] :
         {Units{1, 1}, {1, 20}, {7, 30}, {7, 70}, {50, 52}, {50, 130}, {129, 130}}) {
      const std::size_t length = last + draw_between(engine, 1, 500);
      std::string text = draw_record(engine, length, last / 2 + 1);
      text += draw_array(engine, length + 1 - text.size(), last, 5);
      LagRule rules = rules_for(first, last, mismatch, indel, draw_chance(engine, 50));
      for (std::int64_t& score : rules.min_scores) {
        if (draw_chance(engine, 20))
          score = static_cast<std::int64_t>(draw_between(engine, 0, 400));
      }
      ASSERT_NO_FATAL_FAILURE(expect_seeds_of(text, rules, tally));
    }
  }
  EXPECT_GT(tally.undecided, 50'000);
  EXPECT_GT(tally.rejected, 50'000);
}

TEST(LagSieve, decides_texts_that_end_soon_after_the_unit) {
  RandomEngine engine(7);
  LagTally tally;
  for (const std::uint64_t unit : std::vector<std::uint64_t>{1, 2, 7, 50, 63, 64, 65}) {
    for (const std::uint64_t more : std::vector<std::uint64_t>{1, 2, 3, 20}) {
      for (const char* const alphabet : {"A", "ACGT", "AN"}) {
        const std::string text = draw_letters(engine, unit + more, alphabet);
        const LagRule rules =
            rules_for(std::max<std::uint64_t>(unit / 2, 1), unit, 6, 7, draw_chance(engine, 50));
        ASSERT_NO_FATAL_FAILURE(expect_seeds_of(text, rules, tally));
      }
    }
  }
  EXPECT_GT(tally.undecided, 0);
  EXPECT_GT(tally.rejected, 0);
}

TEST(LagSieve, joins_the_segments_of_long_texts) {
  RandomEngine engine(8);
  LagTally tally;
  for (const bool is_N_neutral : {false, true}) {
    std::string text;
    while (text.size() < 34'000) {
      text += draw_letters(engine, draw_between(engine, 1, 300), "ACGT");
      text += draw_array(engine, draw_between(engine, 1, 500), 120, 6);
    }
    const LagRule rules = rules_for(100, 130, 6, 6, is_N_neutral);
    ASSERT_NO_FATAL_FAILURE(expect_seeds_of(text, rules, tally));
  }
  EXPECT_GT(tally.max_segments, 2);
  EXPECT_GT(tally.undecided, 10'000);
  EXPECT_GT(tally.rejected, 100'000);
}

// So they can be taken by several threads, each with a workspace of its own.
TEST(LagSieve, sieves_segments_in_any_order) {
  RandomEngine engine(13);
  std::string text;
  while (text.size() < 40'000) {
    text += draw_letters(engine, draw_between(engine, 1, 300), "ACGT");
    text += draw_array(engine, draw_between(engine, 1, 500), 120, 6);
    if (draw_chance(engine, 5)) text += std::string(draw_between(engine, 1, 200), 'N');
  }
  const LagRule rule = rules_for(95, 140, 6, 6, true);
  std::vector<CBitSet> whole;
  for (std::int64_t u = rule.first_unit_length; u <= rule.last_unit_length(); ++u) {
    whole.emplace_back().reset_to_set(text.size() - static_cast<std::size_t>(u));
  }
  std::vector<CBitSet> parts = whole;
  std::vector<CBitSet> some = whole;
  sift_text_by_lags(text.data(), text.size(), rule, whole);
  CLagGrid workspaces[] = {{text.data(), text.size(), rule}, {text.data(), text.size(), rule}};
  const std::int64_t count = workspaces[0].segment_count();
  ASSERT_GT(count, 3);
  for (std::int64_t i = count - 1; i >= 0; --i) {
    sift_by_lags(workspaces[i % 2], workspaces[0].segment(i), parts);
  }
  const Segment second = workspaces[0].segment(1);
  sift_by_lags(workspaces[0], second, some);
  for (std::size_t i = 0; i < whole.size(); ++i) {
    ASSERT_EQ(parts[i].words(), whole[i].words()) << "unit " << 95 + i;
    for (std::uint64_t p = 0; p < some[i].size(); ++p) {
      const std::uint64_t middle = p + (95 + i) / 2;
      const bool is_inside = second.first <= middle && middle < second.end;
      ASSERT_EQ(some[i].test(p), !is_inside || whole[i].test(p))
          << "unit " << 95 + i << " at " << p;
    }
  }
}

/// Puts a unit and what follows it at every place where an extension begins near the end of a
/// segment, and expects the sieve to leave its seed undecided.
void expect_seeds_near_segment_end(const std::string& unit, const std::string& copies,
                                   const LagRule& rules) {
  constexpr std::size_t kBorder = 800;
  RandomEngine engine(10);
  const std::string noise = draw_letters(engine, 2 * kBorder, "ACGT");
  ASSERT_GT(noise.size(), kBorder + unit.size() + copies.size());
  for (std::size_t place = kBorder - 2 * unit.size(); place <= kBorder; ++place) {
    std::string text = noise;
    text.replace(place, unit.size() + copies.size(), unit + copies);
    const CBases bases(text);
    CLagGrid workspace(bases.begin(), text.size(), rules);
    for_each_vector_target([&](const char* target) {
      std::vector<CBitSet> seeds(1);
      seeds[0].reset_to_set(text.size() - unit.size());
      sift_by_lags(workspace, {0, kBorder}, seeds);
      sift_by_lags(workspace, {kBorder, text.size()}, seeds);
      EXPECT_TRUE(seeds[0].test(place)) << target << " base " << place;
    });
  }
}

TEST(LagSieve, looks_beyond_a_segment_as_far_as_a_copy_goes) {
  constexpr std::size_t kUnit = 130;
  constexpr std::int64_t kScore = 46;
  const LagRule rules{kUnit, {kScore}, {6, 6, false}};
  RandomEngine engine(11);
  const std::string unit = draw_letters(engine, kUnit, "CGT");
  const auto diverged_copy = [&](std::size_t mismatches, std::size_t distance) {
    std::string copy = unit;
    for (std::size_t i = 0; i < mismatches; ++i) copy[distance * i + distance - 1] = 'A';
    return copy;
  };
  // A copy that pays for its mismatches in its last third alone: 118 matches, 12 mismatches.
  expect_seeds_near_segment_end(unit, diverged_copy(12, 7), rules);
  // One that lives on, for its last third alone, and a copy that pays for it: 100 + 130 matches, 30
  // mismatches.
  expect_seeds_near_segment_end(unit, diverged_copy(30, 3) + unit, rules);
}

/// Three copies of a unit, of which the second one begins with so many mismatches that its own
/// matches pay for them only beyond what a byte holds.
std::string copies_with_mismatches(std::size_t unit_length, std::size_t mismatches) {
  RandomEngine engine(9);
  const std::string unit = draw_letters(engine, mismatches, "CGT") +
                           draw_letters(engine, unit_length - mismatches, "ACGT");
  const std::string hit = std::string(mismatches, 'A') + unit.substr(mismatches);
  return unit + hit + unit + unit + draw_letters(engine, 200, "ACGT");
}

TEST(LagSieve, lets_long_units_pay_for_edits_beyond_a_byte) {
  struct Case {
    std::size_t unit_length;
    std::size_t mismatches;
    std::int64_t penalty;
  };
  for (const Case& one : {Case{600, 9, 30}, Case{2000, 60, 6}}) {
    const std::size_t unit_length = one.unit_length;
    const std::string text = copies_with_mismatches(unit_length, one.mismatches);
    const std::string mirrored(text.rbegin(), text.rend());
    const LagRule rules = rules_for(unit_length, unit_length, one.penalty, one.penalty, true);
    for_each_vector_target([&](const char* target) {
      std::vector<CBitSet> seeds(1);
      seeds[0].reset_to_set(text.size() - unit_length);
      sift_text_by_lags(text.data(), text.size(), rules, seeds);
      EXPECT_TRUE(seeds[0].test(0)) << target << " unit " << unit_length;
      seeds[0].reset_to_set(text.size() - unit_length);
      sift_text_by_lags(mirrored.data(), mirrored.size(), rules, seeds);
      EXPECT_TRUE(seeds[0].test(text.size() - unit_length - 1)) << target;
    });
  }
}

enum class EditKind { kDeletion, kInsertion, kMismatch };

/// Copies of a unit, one of which has edits of one kind.
std::string draw_edited_copies(RandomEngine& engine, std::int64_t unit_length,
                               std::size_t edited_copy, std::size_t edits, EditKind kind) {
  const std::string unit = draw_letters(engine, static_cast<std::size_t>(unit_length), "ACGT");
  std::string copies = unit;
  for (std::size_t i = 1; i < 5; ++i) {
    std::string copy = unit;
    for (std::size_t k = 0; i == edited_copy && k < edits; ++k) {
      const std::size_t at = draw_between(engine, 0, copy.size() - 1);
      if (kind == EditKind::kDeletion) copy.erase(at, 1);
      if (kind == EditKind::kInsertion) copy.insert(at, 1, 'T');
      if (kind == EditKind::kMismatch) copy[at] = 'N';
    }
    copies += copy;
  }
  return draw_letters(engine, 10, "ACGT") + copies + draw_letters(engine, 10, "ACGT");
}

/// Returns the highest score of any path of the seed at `p` to the right and then to the left.
std::int64_t highest_score(const std::string& text, std::int64_t p, const LagRule& rules,
                           std::int64_t unit_length) {
  const PlainRepeat seed{
      text, p, p + unit_length, p, p + unit_length, 0, unit_length - 1, 0, rules.scoring};
  return follow_all_paths(seed).best;
}

// Not against the sieve's own tables: these may lack a lane that a path needs.
TEST(LagSieve, rejects_no_seed_with_a_path_of_the_minimum_score) {
  constexpr SievePenalties kDrawn[] = {{5, 5}, {6, 6}, {7, 11}, {12, 6}, {255, 20}, {9, 300}};
  RandomEngine engine(12);
  std::int64_t reached = 0;
  std::int64_t rejected = 0;
  for (int round = 0; round < 400; ++round) {
    const auto unit_length = static_cast<std::int64_t>(draw_between(engine, 8, 45));
    auto [mismatch, indel] = kDrawn[draw_between(engine, 0, std::size(kDrawn) - 1)];
    std::string text;
    if (round % 2 == 0) {
      // A path can pay for one such indel alone, which takes it to the outermost lag.
      mismatch = 32;
      indel = unit_length + static_cast<std::int64_t>(draw_between(engine, 15, 30));
      text =
          draw_edited_copies(engine, unit_length, 1, 1,
                             draw_chance(engine, 70) ? EditKind::kDeletion : EditKind::kInsertion);
    } else {
      text = draw_edited_copies(engine, unit_length, draw_between(engine, 1, 4),
                                draw_between(engine, 1, 3),
                                static_cast<EditKind>(draw_between(engine, 0, 2)));
    }
    LagRule rules{unit_length, {0}, {mismatch, indel, false}};
    const std::size_t seed_count = text.size() - static_cast<std::size_t>(unit_length);
    std::vector<std::int64_t> scores;
    for (std::size_t p = 0; p < seed_count; ++p) {
      scores.push_back(highest_score(text, static_cast<std::int64_t>(p), rules, unit_length));
    }
    for (const std::int64_t min_score : std::set<std::int64_t>(scores.begin(), scores.end())) {
      rules.min_scores[0] = std::max<std::int64_t>(min_score, 1);
      std::vector<CBitSet> seeds(1);
      seeds[0].reset_to_set(seed_count);
      sift_text_by_lags(text.data(), text.size(), rules, seeds);
      for (std::size_t p = 0; p < seed_count; ++p) {
        if (!seeds[0].test(p)) ++rejected;
        if (scores[p] < rules.min_scores[0]) continue;
        ++reached;
        ASSERT_TRUE(seeds[0].test(p))
            << "unit " << unit_length << " base " << p << " of " << text << " score " << scores[p]
            << " penalties " << mismatch << "," << indel;
      }
    }
  }
  EXPECT_GT(reached, 1000);
  EXPECT_GT(rejected, 1000);
}

// Some compilers build for processors with vectors alone.
#if (HWY_TARGETS & HWY_SCALAR) != 0
TEST(LagSieve, rejects_nothing_without_vectors) {
  RandomEngine engine(10);
  const std::string text = draw_letters(engine, 500, "ACGT");
  const LagRule rules = rules_for(20, 20, 9, 9, true);
  with_no_vectors([&] {
    std::vector<CBitSet> seeds(1);
    seeds[0].reset_to_set(text.size() - 20);
    sift_text_by_lags(text.data(), text.size(), rules, seeds);
    EXPECT_EQ(seeds[0].find_clear(0), seeds[0].size());
  });
}
#endif

}  // namespace
}  // namespace quorix::testing
