// The kernels of vectors, with the instructions of every kind of processor.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/guarded_bases.h"
#include "fuzz/harness.h"
#include "fuzz/kernel_checks.h"
#include "search/bits/base_planes.h"
#include "search/filter/batch_bound.h"
#include "search/filter/chain_sieve.h"
#include "search/filter/group_bound.h"
#include "search/filter/lag_sieve.h"
#include "search/filter/single_bound.h"
#include "support/filter/plain_batch_reach.h"
#include "support/filter/plain_lag_sieve.h"
#include "support/filter/plain_score_paths.h"

namespace quorix::fuzz {

namespace {

using testing::Batch;
using testing::BatchReach;
using testing::PlainRepeat;

constexpr std::size_t kMaxBases = 120;
// The twin follows all paths of 32 seeds.
constexpr std::size_t kMaxBatchTextBases = 70;

std::int64_t take_penalty(CFuzzInput& input, std::int64_t min_penalty) {
  const std::int64_t penalty = input.take_between(min_penalty, min_penalty + 15);
  return penalty < min_penalty + 12 ? penalty
                                    : input.take_one_of<std::int64_t>({30, 300, 2147483648});
}

/// Bases between which a text has no repeats to speak of: far from its ends, the bounds are exact.
std::string noise(std::size_t length) {
  std::string bases;
  std::uint32_t state = 1;
  for (std::size_t i = 0; i < length; ++i) {
    state = state * 1664525 + 1013904223;
    bases += "ACGT"[state >> 30U];
  }
  return bases;
}

/// The bases of the input, with noise around them at times. Returns where they begin.
std::size_t take_surrounded_bases(CFuzzInput& input, std::size_t max_bases, std::size_t margin,
                                  std::string& text) {
  const bool is_surrounded = input.take_flag();
  const std::string bases = input.take_bases(max_bases);
  if (!is_surrounded) {
    text = bases;
    return 0;
  }
  static const std::string around = noise(1024);
  text = around.substr(0, margin) + bases + around.substr(around.size() - margin);
  return margin;
}

std::string described(const std::string& text, std::int64_t first, std::int64_t unit_length,
                      const ScoringRules& rules) {
  return " at base " + std::to_string(first) + " of " + text + " unit length " +
         std::to_string(unit_length) + " penalties " + std::to_string(rules.mismatch_penalty) +
         "," + std::to_string(rules.indel_penalty) + (rules.is_N_neutral ? " neutral N's" : "");
}

void check_reach(const PlainRepeat& repeat, std::int64_t min_score) {
  const testing::Outcome outcome = testing::follow_all_paths(repeat);
  if (!outcome.is_complete) return;
  const bool must_be_rejected =
      outcome.best < min_score && testing::is_in_reach_of_bound(repeat, outcome);
  on_every_processor(repeat.text, [&](const char* bases, const char* target) {
    BoundWork work;
    const bool answer = may_repeat_reach(
        {bases, bases + repeat.text.size(), repeat.scoring},
        {bases + repeat.start, bases + repeat.end, bases + repeat.unit_begin,
         bases + repeat.unit_end, repeat.right_phase, repeat.left_phase, repeat.score},
        min_score, work);
    const bool is_right = answer ? !must_be_rejected : outcome.best < min_score;
    expect(is_right, [&] {
      return std::string(target) + ": the single bound answers " + (answer ? "yes" : "no") +
             " to " + std::to_string(min_score) + ", best is " + std::to_string(outcome.best) +
             described(repeat.text, repeat.unit_begin, repeat.unit_length(), repeat.scoring);
    });
  });
}

void check_reaches(const Batch& batch, std::uint32_t asked, std::int64_t min_score) {
  const BatchReach reaches = testing::reach_of(batch, asked);
  const bool is_exact = min_score > 0 && testing::is_in_reach_of_bound(batch, asked, reaches);
  on_every_processor(batch.text, [&](const char* bases, const char* target) {
    BoundWorkspace workspace;
    const std::uint64_t answer =
        batch_bound({bases, bases + batch.text.size(), batch.scoring},
                    {bases + batch.first, batch.unit_length, asked, min_score}, workspace);
    bool is_right = (answer & ~std::uint64_t{asked}) == 0;
    for (std::int64_t k = 0; k < testing::kSeeds; ++k) {
      const auto& reach = reaches[static_cast<std::size_t>(k)];
      if ((asked & testing::seed_bit(k)) == 0 || !reach) continue;
      const bool is_undecided = (answer & testing::seed_bit(k)) != 0;
      is_right = is_right &&
                 (is_undecided ? !(is_exact && reach->best < min_score) : reach->best < min_score);
    }
    expect(is_right, [&] {
      return std::string(target) + ": the batch bound answers " + std::to_string(answer) +
             " of asked " + std::to_string(asked) + " to " + std::to_string(min_score) +
             described(batch.text, batch.first, batch.unit_length, batch.scoring);
    });
  });
}

/// Returns the highest score that an extension of the seed at `p` can reach; nothing for units with
/// N's and for paths that are too long to follow.
std::optional<std::int64_t> best_of_seed(const std::string& text, std::int64_t p,
                                         std::int64_t unit_length, const ScoringRules& rules) {
  const std::int64_t end = p + unit_length;
  if (text.find('N', static_cast<std::size_t>(p)) < static_cast<std::size_t>(end)) return {};
  const PlainRepeat repeat{text, p, end, p, end, 0, unit_length - 1, 0, rules};
  const testing::Outcome outcome = testing::follow_all_paths(repeat);
  if (!outcome.is_complete) return {};
  return outcome.best;
}

void expect_rejectable(const char* kernel, const std::string& text, std::int64_t p,
                       std::int64_t unit_length, const ScoringRules& rules,
                       std::int64_t min_score) {
  const std::optional<std::int64_t> best = best_of_seed(text, p, unit_length, rules);
  expect(!best || *best < min_score, [&] {
    return std::string(kernel) + " rejects a seed that reaches " + std::to_string(*best) + " of " +
           std::to_string(min_score) + described(text, p, unit_length, rules);
  });
}

}  // namespace

void check_lag_sieve(CFuzzInput& input) {
  constexpr std::int64_t kMaxScores = 400;
  LagRule rules{input.take_between(1, 40),
                {},
                {take_penalty(input, 5), take_penalty(input, 5), input.take_flag()}};
  for (std::int64_t count = input.take_between(1, 8); count > 0; --count) {
    const std::int64_t score = input.take_byte();
    rules.min_scores.push_back(score == 255 ? kMaxScores : score);
  }
  const std::string text = input.take_bases(kMaxBases);
  if (static_cast<std::int64_t>(text.size()) <= rules.last_unit_length()) return;
  const std::vector<std::vector<bool>> expected = testing::CPlainLagSieve(text, rules).seeds();
  on_every_processor(text, [&](const char* bases, const char* target) {
    std::vector<CBitSet> seeds;
    for (const std::vector<bool>& bits : expected) seeds.emplace_back().reset_to_set(bits.size());
    sift_text_by_lags(bases, text.size(), rules, seeds);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
      for (std::size_t p = 0; p < expected[i].size(); ++p) {
        expect(seeds[i].test(p) == expected[i][p], [&] {
          return std::string(target) + ": another seed than the twin's" +
                 described(text, static_cast<std::int64_t>(p),
                           rules.first_unit_length + static_cast<std::int64_t>(i), rules.scoring);
        });
      }
    }
  });
}

void check_single_bound(CFuzzInput& input) {
  PlainRepeat repeat{};
  repeat.scoring.mismatch_penalty = take_penalty(input, 2);
  repeat.scoring.indel_penalty = take_penalty(input, 2);
  repeat.scoring.is_N_neutral = input.take_flag();
  const std::int64_t unit_length = input.take_between(1, 60);
  const std::int64_t place = input.take_byte();
  const std::int64_t score = input.take_between(0, 30);
  const std::int64_t left = input.take_between(0, 20);
  const std::int64_t right = input.take_between(0, 20);
  const std::int64_t right_phase = input.take_byte();
  const std::int64_t left_phase = input.take_byte();
  const std::int64_t min_score = input.take_byte() == 255 ? 100'000 : input.take_byte();
  const auto margin =
      static_cast<std::int64_t>(take_surrounded_bases(input, kMaxBases, 500, repeat.text));

  const auto room = static_cast<std::int64_t>(repeat.text.size()) - 2 * margin - unit_length;
  if (room < 0) return;
  repeat.unit_begin = margin + place % (room + 1);
  repeat.unit_end = repeat.unit_begin + unit_length;
  const std::size_t N_at = repeat.text.find('N', static_cast<std::size_t>(repeat.unit_begin));
  if (N_at < static_cast<std::size_t>(repeat.unit_end)) return;
  // A repeat that was not extended yet has no score, and all of its phases are those of the unit.
  const bool is_fresh = score == 0;
  repeat.score = score;
  repeat.start = std::max<std::int64_t>(repeat.unit_begin - (is_fresh ? 0 : left), 0);
  repeat.end = std::min<std::int64_t>(repeat.unit_end + (is_fresh ? 0 : right),
                                      static_cast<std::int64_t>(repeat.text.size()));
  repeat.right_phase = is_fresh ? 0 : right_phase % unit_length;
  repeat.left_phase = is_fresh ? unit_length - 1 : left_phase % unit_length;
  check_reach(repeat, min_score);
}

void check_batch_bound(CFuzzInput& input) {
  Batch batch{};
  batch.scoring.mismatch_penalty = take_penalty(input, 2);
  batch.scoring.indel_penalty = take_penalty(input, 2);
  batch.scoring.is_N_neutral = input.take_flag();
  batch.unit_length = input.take_between(1, 60);
  const std::int64_t place = input.take_byte();
  const std::uint32_t mask = input.take_word();
  const std::int64_t min_score = input.take_byte() == 255 ? 300 : input.take_byte();
  const auto margin =
      static_cast<std::int64_t>(take_surrounded_bases(input, kMaxBatchTextBases, 300, batch.text));

  const std::int64_t room = batch.text_length() - 2 * margin - batch.unit_length;
  if (room < 0) return;
  batch.first = margin + place % (room + 1);
  const std::uint32_t asked = batch.units_without_Ns() & (mask == 0 ? ~mask : mask);
  check_reaches(batch, asked, min_score);
}

void check_chain_sieve(CFuzzInput& input) {
  constexpr std::size_t kMaxChainTextBases = 80;
  const ScoringRules rules{take_penalty(input, 2), take_penalty(input, 2), input.take_flag()};
  const std::int64_t unit_length = input.take_between(1, 32);
  const std::int64_t min_score = input.take_between(1, 60);
  const ChainRule rule = ChainRule::for_unit(unit_length, min_score, rules);
  const std::size_t first = input.take_byte() % 4;
  const std::string text = input.take_bases(kMaxChainTextBases);
  if (text.size() <= static_cast<std::size_t>(unit_length) || rule.edits == 0) return;
  const std::size_t seed_count = text.size() - static_cast<std::size_t>(unit_length);
  std::vector<bool> is_rejected(seed_count);
  on_every_processor(text, [&](const char* bases, const char* target) {
    CBitSet seeds(seed_count);
    seeds.set_range(0, seed_count);
    sift_by_chains(CBasePlanes(bases, text.size()), rule, {0, text.size()}, seeds);
    for (std::size_t p = 0; p < seed_count; ++p) is_rejected[p] = is_rejected[p] || !seeds.test(p);
    for (std::size_t p = seed_count; p < seeds.words().size() * kWordBits; ++p) {
      expect(!seeds.test(p), [&] { return std::string(target) + ": chains set a bit: " + text; });
    }
  });
  // Some of them: the twin follows every path of each.
  for (std::size_t p = first; p < seed_count; p += 4) {
    if (!is_rejected[p]) continue;
    expect_rejectable("the chain sieve", text, static_cast<std::int64_t>(p), unit_length, rules,
                      min_score);
  }
}

void check_group_bound(CFuzzInput& input) {
  constexpr std::size_t kMaxGroupBases = 400;
  constexpr std::size_t kGroupMargin = 700;
  const ScoringRules rules{take_penalty(input, 2), take_penalty(input, 2), input.take_flag()};
  const std::int64_t unit_length = kMinGroupUnit + input.take_between(0, 100);
  const std::int64_t min_score = input.take_between(1, 250);
  const std::int64_t place = input.take_byte();
  const std::uint64_t mask = (std::uint64_t{input.take_word()} << 32U | input.take_word()) >>
                             (kGroupSeeds - group_bases(unit_length));
  static const std::string around = noise(2 * kGroupMargin);
  const std::string text = around.substr(0, kGroupMargin) + input.take_bases(kMaxGroupBases) +
                           around.substr(kGroupMargin);
  const std::int64_t first = static_cast<std::int64_t>(kGroupMargin) - 100 + place;
  bool is_rejected = false;
  on_every_processor(text, [&](const char* bases, const char* /*target*/) {
    BoundWorkspace workspace;
    const std::uint64_t undecided =
        group_bound({bases, bases + text.size(), rules},
                    {bases + first, unit_length, mask, min_score}, workspace);
    expect(undecided == 0 || undecided == mask, [&] { return "a group is split: " + text; });
    is_rejected = is_rejected || undecided == 0;
  });
  if (!is_rejected) return;
  // Some of them, as above.
  for (std::int64_t k = place % 8; k < kGroupSeeds; k += 8) {
    if ((mask >> k & 1) == 0) continue;
    expect_rejectable("the group bound", text, first + k, unit_length, rules, min_score);
  }
}

}  // namespace quorix::fuzz
