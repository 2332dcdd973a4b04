#include "soundness/filter_questions.h"

#include <hwy/targets.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include "search/bits/base_planes.h"
#include "search/filter/batch_bound.h"
#include "search/filter/block_sieve.h"
#include "search/filter/chain_sieve.h"
#include "search/filter/group_bound.h"
#include "search/filter/lag_sieve.h"
#include "search/filter/seed_filter.h"
#include "search/filter/single_bound.h"
#include "search/rules/score.h"
#include "search/rules/thresholds.h"
#include "search/search_controller.h"
#include "settings/settings.h"
#include "soundness/extended_seeds.h"

namespace quorix::testing {

namespace {

constexpr ThresholdRule kNoMinimum{0, 0, 0.0F};
/// What an exact repeat has to reach before it is extended.
constexpr ThresholdRule kSeedMinimum{4, 0, 1.0F};

/// A rule that asks for `minimum` at `unit_length`: a constant, or a function of the unit length.
ThresholdRule draw_rule(RandomEngine& engine, std::int64_t minimum, std::uint64_t unit_length) {
  const auto constant = static_cast<std::int32_t>(minimum);
  constexpr float kFactors[] = {0.0F, 0.1F, 0.5F, 0.7F, 1.0F, 1.5F};
  const float factor = kFactors[draw_between(engine, 0, 5)];
  const std::int32_t linear = ThresholdRule{-1, 0, factor}.minimum_for(unit_length);
  const ThresholdRule rule{-1, constant - linear, factor};
  if (draw_chance(engine, 50) || rule.minimum_for(unit_length) != constant) {
    return {constant, 0, 0.0F};
  }
  return rule;
}

/// All questions of one case and unit length.
class CQuestions {
 public:
  CQuestions(const AttackCase& attack, std::uint64_t unit_length, RandomEngine& engine,
             QuestionTallies& tallies)
      : attack_(attack),
        unit_length_(unit_length),
        signed_length_(static_cast<std::int64_t>(unit_length)),
        engine_(engine),
        tallies_(tallies),
        seeds_(extend_all_seeds(attack, unit_length)),
        text_{attack.text.data(), attack.text.data() + attack.text.size(),
              scoring_rules_of_settings()} {}

  std::string ask() {
    ask_search_over_edits();
    ask_searches_of_exact_repeats();
    ask_chains();
    ask_lags();
    ask_blocks();
    for (const ExtendedSeed& seed : seeds_) {
      ask_group(seed);
      ask_batch(seed);
      ask_single(seed);
      ask_exact_repeat(seed);
    }
    return fault_;
  }

 private:
  /// The answer for one seed that reaches `score`, asked with `threshold`. What stands beside the
  /// seed that a question is about is judged as well, but not counted.
  void judge(AttackedFilter filter, const ExtendedSeed& seed, std::int64_t score,
             std::int64_t threshold, bool is_rejected, bool is_counted = true) {
    QuestionTally& tally = tallies_[static_cast<std::size_t>(filter)];
    if (score == threshold && is_counted) ++tally.tight;
    if (!is_rejected) return;
    if (score < threshold) {
      ++tally.rejected;
    } else if (fault_.empty()) {
      describe(filter, seed, score, threshold);
    }
  }

  void describe(AttackedFilter filter, const ExtendedSeed& seed, std::int64_t score,
                std::int64_t threshold) {
    const std::string length = std::to_string(unit_length_);
    fault_ = std::string(name_of(filter)) + " (" + hwy::TargetName(attack_.target) +
             ") rejects the unit of " + length + " at base " + std::to_string(seed.start + 1) +
             ", which reaches " + std::to_string(score) + ", for a minimum of " +
             std::to_string(threshold) + "\nOptions of the case: " + attack_.option_text() +
             " -s " + std::to_string(threshold) + " --minScore_b 0, units of " + length +
             "\n>case\n" + attack_.text;
  }

  /// Calls `visit` with each score above 0 that `reach` of some seed has.
  template <class Visit>
  void for_each_score(const Reach ExtendedSeed::*reach, const Visit& visit) const {
    std::set<std::int64_t> scores;
    for (const ExtendedSeed& seed : seeds_) scores.insert((seed.*reach).score);
    for (const std::int64_t score : scores) {
      if (score > 0) visit(score);
    }
  }

  [[nodiscard]] std::uint64_t text_length() const { return attack_.text.size(); }

  [[nodiscard]] const ExtendedSeed* seed_at(std::uint64_t p) const {
    const auto found = std::lower_bound(
        seeds_.begin(), seeds_.end(), p,
        [](const ExtendedSeed& seed, std::uint64_t at) { return seed.start < at; });
    return found != seeds_.end() && found->start == p ? &*found : nullptr;
  }

  /// As a scan over all seeds asks: in ascending order, those that the sieves leave.
  void ask_search_over_edits() {
    for_each_score(&ExtendedSeed::edited, [&](std::int64_t score) {
      const CThresholdTable scores(draw_rule(engine_, score, unit_length_), unit_length_);
      const CThresholdTable lengths(kNoMinimum, unit_length_);
      CSeedFilter filter(attack_.text.data(), text_length(),
                         {SeedUse::kExtendOverEdits,
                          text_.scoring,
                          {scores, lengths, scores},
                          draw_last_unit(),
                          global_Ns_allowed_in_a_row});
      const CBitSet& left = filter.seeds(unit_length_);
      const std::uint64_t open_share = draw_chance(engine_, 50) ? 0 : draw_between(engine_, 1, 3);
      const auto open_from = [&](std::uint64_t p) {
        std::uint64_t open = 0;
        for (std::uint64_t k = 0; k < 64; ++k) {
          open |= std::uint64_t{open_share == 0 || (p + k) % (open_share + 1) != 0} << k;
        }
        return open;
      };
      for (const ExtendedSeed& seed : seeds_) {
        const std::uint64_t p = seed.start;
        if (left.test(p) && !filter.has_verdict(p)) filter.decide(p, open_from(p));
        const bool is_rejected = !left.test(p) || !filter.is_undecided(p);
        judge(AttackedFilter::kSearchOverEdits, seed, seed.edited.score, score, is_rejected);
      }
    });
  }

  /// The last unit length of a search, up to which the sieve of lags goes at once.
  std::int64_t draw_last_unit() {
    const std::size_t more = draw_chance(engine_, 60)   ? 0
                             : draw_chance(engine_, 75) ? draw_between(engine_, 1, 4)
                                                        : draw_between(engine_, 5, 70);
    return signed_length_ + static_cast<std::int64_t>(more);
  }

  void ask_searches_of_exact_repeats() {
    for_each_score(&ExtendedSeed::exact, [&](std::int64_t score) {
      const CThresholdTable scores(draw_rule(engine_, score, unit_length_), unit_length_);
      const CThresholdTable lengths(draw_chance(engine_, 50)
                                        ? kNoMinimum
                                        : draw_rule(engine_, score + signed_length_, unit_length_),
                                    unit_length_);
      CSeedFilter filter(attack_.text.data(), text_length(),
                         {SeedUse::kExtendExactly,
                          text_.scoring,
                          {scores, lengths, scores},
                          signed_length_,
                          global_Ns_allowed_in_a_row});
      const CBitSet& left = filter.seeds(unit_length_);
      for (const ExtendedSeed& seed : seeds_) {
        // N's that count for the length are given by exact extension alone.
        const bool is_long = seed.exact.normalized_length >= lengths[signed_length_];
        judge(AttackedFilter::kSearchOfExactRepeats, seed,
              is_long ? seed.exact.score : std::int64_t{-1}, score, !left.test(seed.start));
      }
    });
    for_each_score(&ExtendedSeed::edited_from_run, [&](std::int64_t score) {
      const CThresholdTable user_scores(draw_rule(engine_, score, unit_length_), unit_length_);
      const CThresholdTable scores(kSeedMinimum, unit_length_);
      const CThresholdTable lengths(kNoMinimum, unit_length_);
      CSeedFilter filter(attack_.text.data(), text_length(),
                         {SeedUse::kExtendExactlyFirst,
                          text_.scoring,
                          {scores, lengths, user_scores},
                          signed_length_,
                          global_Ns_allowed_in_a_row});
      const CBitSet& left = filter.seeds(unit_length_);
      for (const ExtendedSeed& seed : seeds_) {
        if (seed.exact.score < scores[signed_length_]) continue;
        judge(AttackedFilter::kSearchOfExactRepeatsToExtend, seed, seed.edited_from_run.score,
              score, !left.test(seed.start));
      }
    });
  }

  void ask_chains() {
    for_each_score(&ExtendedSeed::edited, [&](std::int64_t score) {
      const ChainRule rule = ChainRule::for_unit(signed_length_, score, text_.scoring);
      if (rule.edits == 0) return;
      const CBasePlanes planes(attack_.text.data(), text_length());
      CBitSet left(text_length() - unit_length_);
      left.set_range(0, left.size());
      sift_by_chains(planes, rule, {0, text_length()}, left);
      for (const ExtendedSeed& seed : seeds_) {
        judge(AttackedFilter::kChains, seed, seed.edited.score, score, !left.test(seed.start));
      }
    });
  }

  void ask_lags() {
    if (signed_length_ > kMaxLagUnit || text_.scoring.min_penalty() < kMinLagPenalty) return;
    ask_sieve_of_units(AttackedFilter::kLags, kMaxLagUnit, sift_text_by_lags);
  }

  void ask_blocks() {
    if (signed_length_ < kMinBlockUnit) return;
    ask_sieve_of_units(AttackedFilter::kBlocks, kMaxBlockUnit, sift_text_by_blocks);
  }

  /// Asks a sieve that takes several unit lengths at once.
  template <class Sift>
  void ask_sieve_of_units(AttackedFilter filter, std::int64_t max_unit, const Sift& sift) {
    for_each_score(&ExtendedSeed::edited, [&](std::int64_t score) {
      constexpr std::size_t kSpreads[] = {0, 0, 0, 0, 3, 3, 3, 15, 15, 40};
      const std::size_t spread = kSpreads[draw_between(engine_, 0, 9)];
      const std::uint64_t shorter = std::min(unit_length_ - 1, draw_between(engine_, 0, spread));
      const std::uint64_t longer = std::min({static_cast<std::uint64_t>(max_unit) - unit_length_,
                                             text_length() - 1 - unit_length_,
                                             std::uint64_t{draw_between(engine_, 0, spread)}});
      LagRule rule{signed_length_ - static_cast<std::int64_t>(shorter),
                   std::vector<std::int64_t>(shorter + 1 + longer, 1), text_.scoring};
      // Seeds that are judged together are rejected only if all of them are. So at times no other
      // unit length asks for less.
      const std::int64_t lowest = draw_chance(engine_, 50) ? score : 1;
      for (std::int64_t& minimum : rule.min_scores) {
        minimum = lowest + static_cast<std::int64_t>(draw_between(engine_, 0, 300));
      }
      rule.min_scores[shorter] = score;
      std::vector<CBitSet> left;
      for (std::int64_t u = rule.first_unit_length; u <= rule.last_unit_length(); ++u) {
        left.emplace_back().reset_to_set(text_length() - static_cast<std::uint64_t>(u));
      }
      sift(attack_.text.data(), text_length(), rule, left);
      for (const ExtendedSeed& seed : seeds_) {
        judge(filter, seed, seed.edited.score, score, !left[shorter].test(seed.start));
      }
    });
  }

  /// `seed` and others beside it, so that it is number `k` of a group of up to 64: a bit for each.
  std::uint64_t draw_neighbours(const ExtendedSeed& seed, std::uint64_t k, std::uint64_t count) {
    std::uint64_t asked = std::uint64_t{1} << k;
    const std::size_t share = draw_between(engine_, 0, 2) * 50;
    for (std::uint64_t i = 0; i < count; ++i) {
      if (seed_at(seed.start - k + i) != nullptr && draw_chance(engine_, share)) {
        asked |= std::uint64_t{1} << i;
      }
    }
    return asked;
  }

  void ask_group(const ExtendedSeed& seed) {
    if (signed_length_ < kMinGroupUnit || seed.edited.score <= 0) return;
    const auto bases = static_cast<std::uint64_t>(group_bases(signed_length_));
    const std::uint64_t k =
        std::min<std::uint64_t>(seed.start, draw_between(engine_, 0, bases - 1));
    const std::uint64_t asked = draw_neighbours(seed, k, bases);
    const char* const first = attack_.text.data() + seed.start - k;
    const bool may_reach =
        group_bound(text_, {first, signed_length_, asked, seed.edited.score}, workspace_) != 0;
    judge(AttackedFilter::kGroups, seed, seed.edited.score, seed.edited.score, !may_reach);
    // The same seeds, asked for a point more than any of them reaches.
    std::int64_t best = 0;
    for (std::uint64_t i = 0; i < 64; ++i) {
      if ((asked >> i & 1) == 0) continue;
      best = std::max(best, seed_at(seed.start - k + i)->edited.score);
    }
    const bool may_beat =
        group_bound(text_, {first, signed_length_, asked, best + 1}, workspace_) != 0;
    judge(AttackedFilter::kGroups, seed, seed.edited.score, best + 1, !may_beat);
  }

  void ask_batch(const ExtendedSeed& seed) {
    if (seed.edited.score <= 0) return;
    const std::uint64_t k = std::min<std::uint64_t>(seed.start, draw_between(engine_, 0, 31));
    const auto asked = static_cast<std::uint32_t>(draw_neighbours(seed, k, kBatchSeeds));
    const SeedQuestion question{attack_.text.data() + seed.start - k, signed_length_, asked,
                                seed.edited.score};
    const std::uint64_t left = batch_bound(text_, question, workspace_);
    for (std::uint64_t i = 0; i < 32; ++i) {
      if ((asked >> i & 1) == 0) continue;
      const ExtendedSeed& one = *seed_at(seed.start - k + i);
      judge(AttackedFilter::kBatches, one, one.edited.score, seed.edited.score,
            (left >> i & 1) == 0, i == k);
    }
  }

  void ask_single(const ExtendedSeed& seed) {
    const char* const base = attack_.text.data() + seed.start;
    for (const std::int64_t more : {0, 1}) {
      const std::int64_t threshold = seed.edited.score + more;
      if (threshold <= 0) continue;
      judge(AttackedFilter::kSingleSeeds, seed, seed.edited.score, threshold,
            single_bound(text_, {base, signed_length_, 1, threshold}, workspace_) == 0);
    }
  }

  void ask_exact_repeat(const ExtendedSeed& seed) {
    const char* const text = attack_.text.data();
    Csat run;
    run.init_from_unit(text + seed.start, text + seed.start + unit_length_);
    CSearchController::extend_exact_forward(run, text + text_length());
    CSearchController::extend_exact_backward(run, text - 1);
    run.remove_Ns_at_ends();
    const ExtendableRepeat repeat{run.start,
                                  run.end,
                                  run.unit_begin,
                                  run.unit_end,
                                  run.unit_pos_right - run.unit_begin,
                                  run.unit_pos_left - run.unit_begin,
                                  run.score};
    for (const std::int64_t more : {0, 1}) {
      const std::int64_t threshold = seed.edited_from_run.score + more;
      if (threshold <= 0) continue;
      judge(AttackedFilter::kExactRepeats, seed, seed.edited_from_run.score, threshold,
            !may_repeat_reach(text_, repeat, threshold, workspace_.work));
    }
  }

  const AttackCase& attack_;
  std::uint64_t unit_length_;
  std::int64_t signed_length_;
  RandomEngine& engine_;
  QuestionTallies& tallies_;
  std::vector<ExtendedSeed> seeds_;
  ScoredText text_;
  BoundWorkspace workspace_;
  std::string fault_;
};

}  // namespace

const char* name_of(AttackedFilter filter) {
  constexpr const char* kNames[kAttackedFilters] = {"filter of a search over edits",
                                                    "filter of a search of exact repeats",
                                                    "filter of a search of exact repeats to extend",
                                                    "sieve by chains",
                                                    "sieve by lags",
                                                    "sieve by blocks",
                                                    "bound of groups",
                                                    "bound of batches",
                                                    "bound of single seeds",
                                                    "bound of exact repeats"};
  return kNames[static_cast<std::size_t>(filter)];
}

std::string ask_all_filters(const AttackCase& attack, std::uint64_t unit_length,
                            RandomEngine& engine, QuestionTallies& tallies) {
  if (unit_length == 0 || unit_length >= attack.text.size()) return "";
  return CQuestions(attack, unit_length, engine, tallies).ask();
}

}  // namespace quorix::testing
