// The sieve of chains, against a search through the states of each seed by itself.

#include "search/filter/chain_sieve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "search/filter/chain_states.h"
#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {
namespace {

/// Edits and bases of a chain so far.
struct PlainState {
  std::int64_t mismatches = 0;
  std::int64_t insertions = 0;
  std::int64_t deletions = 0;
  std::int64_t bases = 0;

  [[nodiscard]] auto operator<=>(const PlainState& other) const = default;
  [[nodiscard]] std::int64_t edits() const { return mismatches + insertions + deletions; }
};

/// The chains of one seed, followed one after the other.
class CPlainChains {
 public:
  CPlainChains(const std::string& text, const ChainRule& rule, std::int64_t seed)
      : text_(text), rule_(rule), seed_(seed) {}

  [[nodiscard]] bool may_live() { return follow(true) || follow(false); }

 private:
  [[nodiscard]] char base(std::int64_t position) const {
    const bool is_inside = position >= 0 && position < static_cast<std::int64_t>(text_.size());
    return is_inside ? text_[static_cast<std::size_t>(position)] : 'A';
  }

  [[nodiscard]] bool is_equal(const PlainState& state, bool is_rightward) const {
    const std::int64_t characters = state.bases - state.insertions + state.deletions;
    const std::int64_t phase = characters % rule_.unit_length;
    const std::int64_t end = seed_ + rule_.unit_length;
    const char read = base(is_rightward ? end + state.bases : seed_ - 1 - state.bases);
    if (read == 'N') return rule_.scoring.is_N_neutral;
    return read == base(is_rightward ? seed_ + phase : end - 1 - phase);
  }

  [[nodiscard]] std::int64_t score(const PlainState& state) const {
    return entry_score_ + state.bases - state.mismatches - state.insertions -
           state.mismatches * rule_.scoring.mismatch_penalty -
           (state.insertions + state.deletions) * rule_.scoring.indel_penalty;
  }

  [[nodiscard]] bool is_undecided(const PlainState& state) const {
    const std::int64_t min_penalty = rule_.scoring.min_penalty();
    const std::int64_t beyond = (rule_.edits + 1 - state.edits()) * min_penalty;
    return score(state) >= rule_.min_score || score(state) - beyond > -rule_.unit_length ||
           state.bases == kMaxChainBases;
  }

  /// Returns true if a chain is undecided; else the best score becomes that on entry.
  bool follow(bool is_rightward) {
    std::set<PlainState> met;
    std::vector<PlainState> pending = {{}};
    std::int64_t best = entry_score_;
    while (!pending.empty()) {
      const PlainState state = pending.back();
      pending.pop_back();
      if (state.edits() > rule_.edits || !met.insert(state).second) continue;
      if (state.edits() > 0 && score(state) <= -rule_.unit_length) {
        // No edit may leave so low a score, and only edits lower it.
        continue;
      }
      best = std::max(best, score(state));
      if (is_undecided(state)) return true;
      PlainState next = state;
      if (is_equal(state, is_rightward)) {
        ++next.bases;
        pending.push_back(next);
        continue;
      }
      next = {state.mismatches + 1, state.insertions, state.deletions, state.bases + 1};
      pending.push_back(next);
      next = {state.mismatches, state.insertions + 1, state.deletions, state.bases + 1};
      pending.push_back(next);
      next = {state.mismatches, state.insertions, state.deletions + 1, state.bases};
      pending.push_back(next);
    }
    entry_score_ = best;
    return false;
  }

  const std::string& text_;
  ChainRule rule_;
  std::int64_t seed_;
  std::int64_t entry_score_ = 0;
};

struct ChainTally {
  std::int64_t undecided = 0;
  std::int64_t rejected = 0;
};

CBitSet sifted(const std::string& text, const ChainRule& rule, CBitSet seeds) {
  const CBases bases(text);
  sift_by_chains(CBasePlanes(bases.begin(), text.size()), rule, {0, text.size()}, seeds);
  return seeds;
}

CBitSet all_seeds(const std::string& text, const ChainRule& rule) {
  CBitSet seeds(text.size() - static_cast<std::size_t>(rule.unit_length));
  seeds.set_range(0, seeds.size());
  return seeds;
}

void expect_seeds(const std::string& text, const ChainRule& rule, ChainTally& tally) {
  const auto unit_length = static_cast<std::size_t>(rule.unit_length);
  std::vector<bool> expected;
  for (std::size_t p = 0; p + unit_length < text.size(); ++p) {
    expected.push_back(CPlainChains(text, rule, static_cast<std::int64_t>(p)).may_live());
  }
  const auto check = [&](const char* target) {
    const CBitSet seeds = sifted(text, rule, all_seeds(text, rule));
    for (std::size_t p = 0; p < expected.size(); ++p) {
      if (text.find('N', p) < p + unit_length) continue;
      ASSERT_EQ(seeds.test(p), expected[p])
          << target << " seed " << p << " unit length " << unit_length << " minimum "
          << rule.min_score << " penalties " << rule.scoring.mismatch_penalty << ","
          << rule.scoring.indel_penalty << " neutral " << rule.scoring.is_N_neutral << " in "
          << text;
      ++(expected[p] ? tally.undecided : tally.rejected);
    }
  };
  EXPECT_GT(for_each_vector_target(check), 0);
}

ChainRule draw_rule(RandomEngine& engine) {
  const auto number = [&](std::size_t first, std::size_t last) {
    return static_cast<std::int64_t>(draw_between(engine, first, last));
  };
  while (true) {
    ScoringRules scoring{number(2, 14), number(2, 14), draw_chance(engine, 50)};
    std::int64_t unit_length = number(1, 32);
    if (draw_chance(engine, 50)) {
      scoring.mismatch_penalty = scoring.indel_penalty = 6;
      unit_length = number(1, 22);
    }
    const ChainRule rule = ChainRule::for_unit(unit_length, number(1, 30), scoring);
    if (rule.edits > 0) return rule;
  }
}

/// Copies of a unit with edits, and others beside it.
std::string draw_text(RandomEngine& engine, std::int64_t unit_length, std::size_t longest) {
  const std::size_t length = draw_between(engine, static_cast<std::size_t>(unit_length) + 1,
                                          static_cast<std::size_t>(longest));
  const std::string unit = draw_letters(engine, static_cast<std::size_t>(unit_length),
                                        draw_chance(engine, 20) ? "AC" : "ACGT");
  const std::size_t edited = draw_between(engine, 0, 25);
  std::string text;
  while (text.size() < length) {
    if (draw_chance(engine, 40)) text += draw_letters(engine, draw_between(engine, 0, 60), "ACGT");
    if (draw_chance(engine, 5)) text += std::string(draw_between(engine, 1, 40), 'N');
    for (const char base : unit) {
      if (!draw_chance(engine, edited)) {
        text += base;
      } else if (!draw_chance(engine, 33)) {
        text += draw_letters(engine, draw_between(engine, 1, 2), "ACGTN");
      }
    }
  }
  return text.substr(0, length);
}

TEST(ChainSieve, leaves_seeds_undecided_whose_chains_get_far_enough) {
  RandomEngine engine(31);
  ChainTally tally;
  for (int round = 0; round < 150; ++round) {
    const ChainRule rule = draw_rule(engine);
    ASSERT_NO_FATAL_FAILURE(expect_seeds(draw_text(engine, rule.unit_length, 700), rule, tally));
  }
  EXPECT_GT(tally.undecided, 5000);
  EXPECT_GT(tally.rejected, 10'000);
}

TEST(ChainSieve, decides_texts_that_are_hardly_longer_than_the_unit) {
  RandomEngine engine(32);
  ChainTally tally;
  for (int round = 0; round < 1500; ++round) {
    const ChainRule rule = draw_rule(engine);
    const auto longest = static_cast<std::size_t>(rule.unit_length) + 20;
    ASSERT_NO_FATAL_FAILURE(
        expect_seeds(draw_text(engine, rule.unit_length, longest), rule, tally));
  }
  EXPECT_GT(tally.undecided, 1000);
  EXPECT_GT(tally.rejected, 1000);
}

TEST(ChainSieve, decides_the_same_without_vectors) {
  RandomEngine engine(33);
  for (int round = 0; round < 30; ++round) {
    const ChainRule rule = draw_rule(engine);
    const std::string text = draw_text(engine, rule.unit_length, 2000);
    const CBitSet expected = sifted(text, rule, all_seeds(text, rule));
    with_no_vectors(
        [&] { EXPECT_EQ(sifted(text, rule, all_seeds(text, rule)).words(), expected.words()); });
  }
}

TEST(ChainSieve, rejects_the_same_seeds_however_a_text_is_split) {
  RandomEngine engine(35);
  for (int round = 0; round < 40; ++round) {
    const ChainRule rule = draw_rule(engine);
    const std::string text = draw_text(engine, rule.unit_length, 3000);
    const CBases bases(text);
    const CBasePlanes planes(bases.begin(), text.size());
    const CBitSet whole = sifted(text, rule, all_seeds(text, rule));
    CBitSet parts = all_seeds(text, rule);
    for (std::uint64_t first = 0; first < text.size();) {
      const std::uint64_t end = first + draw_between(engine, 1, draw_chance(engine, 50) ? 700 : 70);
      CBitSet part = all_seeds(text, rule);
      sift_by_chains(planes, rule, {first, end}, part);
      sift_by_chains(planes, rule, {first, end}, parts);
      for (std::uint64_t p = 0; p < part.size(); ++p) {
        ASSERT_EQ(part.test(p), p < first || p >= end || whole.test(p)) << p;
      }
      first = end;
    }
    EXPECT_EQ(parts.words(), whole.words());
  }
}

TEST(ChainSieve, keeps_seeds_rejected_that_were_rejected_before) {
  RandomEngine engine(34);
  const ChainRule rule = ChainRule::for_unit(9, 12, {6, 6, true});
  const std::string text = draw_text(engine, 9, 3000) + "ACGTTGCAA" + "ACGTTGCAA" + "ACGTTGCAA";
  const CBitSet expected = sifted(text, rule, all_seeds(text, rule));
  CBitSet some(expected.size());
  for (std::uint64_t p = 0; p < some.size(); p += 3) some.set(p);
  const CBitSet sifted_some = sifted(text, rule, some);
  int both = 0;
  for (std::uint64_t p = 0; p < some.size(); ++p) {
    EXPECT_EQ(sifted_some.test(p), p % 3 == 0 && expected.test(p)) << p;
    if (sifted_some.test(p)) ++both;
  }
  EXPECT_GT(both, 0);
}

TEST(ChainSieve, follows_chains_no_farther_than_the_longest_state) {
  RandomEngine engine(36);
  for (int round = 0; round < 300; ++round) {
    const ChainRule rule = draw_rule(engine);
    const ChainStates states(rule);
    std::ptrdiff_t max_bases = 0;
    std::size_t followed = 0;
    for (std::size_t s = 0; s < states.count; ++s) {
      max_bases = std::max(max_bases, states.states[s].end_bases);
      followed += states.states[s].is_followed ? 1 : 0;
    }
    EXPECT_EQ(states.max_bases, max_bases);
    EXPECT_EQ(states.followed_count, followed);
    EXPECT_LE(max_bases, kMaxChainBases);
  }
}

TEST(ChainSieve, follows_the_fewer_edits_the_shorter_the_unit) {
  const auto edits = [](std::int64_t unit_length, std::int64_t mismatch, std::int64_t indel) {
    return ChainRule::for_unit(unit_length, 12, {mismatch, indel, true}).edits;
  };
  EXPECT_EQ(edits(1, 6, 6), 2);
  EXPECT_EQ(edits(10, 6, 6), 2);
  EXPECT_EQ(edits(11, 6, 6), 3);
  EXPECT_EQ(edits(16, 6, 6), 3);
  EXPECT_EQ(edits(17, 6, 6), 4);
  EXPECT_EQ(edits(22, 6, 6), 4);
  EXPECT_EQ(edits(23, 6, 6), 0);
  EXPECT_EQ(edits(2, 2, 6), 4);
  EXPECT_EQ(edits(2, 6, 2), 4);
  EXPECT_EQ(edits(3, 2, 2), 0);
  EXPECT_EQ(edits(32, 100, 100), 2);
  EXPECT_EQ(edits(33, 100, 100), 0);
}

TEST(ChainSieve, follows_nothing_where_every_seed_has_the_minimum_score) {
  EXPECT_EQ((ChainRule::for_unit(9, 0, {6, 6, true}).edits), 0);
  EXPECT_EQ((ChainRule::for_unit(9, 1, {6, 6, true}).edits), 2);
}

TEST(ChainSieve, takes_penalties_and_scores_of_any_height) {
  const ChainRule rule = ChainRule::for_unit(4, 2147483647, {2147483648, 2147483648, true});
  const std::string unit = "ACGT";
  std::string text = "GGGG";
  for (int i = 0; i < 9; ++i) text += unit;
  // Whatever is as long as chains are followed is undecided.
  const CBitSet long_array =
      sifted(text + unit + unit + unit, rule, all_seeds(text + unit + unit + unit, rule));
  EXPECT_TRUE(long_array.test(4));
  const CBitSet array = sifted(text + "CCCC", rule, all_seeds(text + "CCCC", rule));
  EXPECT_EQ(array.find_set(0), array.size());
}

}  // namespace
}  // namespace quorix::testing
