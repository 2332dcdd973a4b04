// The decisions of the table. Each limit was chosen by the time of whole searches; none of them
// changes which repeats are found.

#include "search/filter/filter_plan.h"

#include <algorithm>

namespace quorix {

ChainRule ChainRule::for_unit(std::int64_t unit_length, std::int64_t min_score,
                              const ScoringRules& scoring) {
  ChainRule rule{unit_length, min_score, scoring, 0};
  if (unit_length > kMaxChainUnit || min_score < 1) return rule;
  for (int edits = kMinChainEdits; edits <= kMaxChainEdits; ++edits) {
    if ((edits + 1) * scoring.min_penalty() - unit_length + 1 >= kMinChainMatches) {
      rule.edits = edits;
      return rule;
    }
  }
  return rule;
}

CFilterPlan::CFilterPlan(SeedUse use, const ScoringRules& scoring, const SeedThresholds& thresholds,
                         std::int64_t last_unit_length, std::int64_t max_Ns_in_a_row)
    : use_(use),
      scoring_(scoring),
      thresholds_(thresholds),
      last_unit_length_(last_unit_length),
      max_Ns_in_a_row_(max_Ns_in_a_row) {}

bool CFilterPlan::operator==(const CFilterPlan& other) const {
  return use_ == other.use_ && scoring_ == other.scoring_ &&
         &thresholds_.min_scores == &other.thresholds_.min_scores &&
         &thresholds_.min_lengths == &other.thresholds_.min_lengths &&
         &thresholds_.user_min_scores == &other.thresholds_.user_min_scores &&
         last_unit_length_ == other.last_unit_length_ && max_Ns_in_a_row_ == other.max_Ns_in_a_row_;
}

std::int64_t CFilterPlan::min_score(std::int64_t unit_length) const {
  return thresholds_.min_scores[unit_length];
}

RunRule CFilterPlan::run_rule(std::int64_t unit_length, std::int64_t min_unit_score) const {
  // A repeat is as long as its unit and the run together.
  const std::int64_t exact_run =
      std::max(min_unit_score, thresholds_.min_lengths[unit_length] - unit_length);
  if (use_ == SeedUse::kExtendExactly) return {unit_length, exact_run, exact_run, exact_run};

  const std::int64_t edited_run = scoring_.min_penalty() - unit_length + 1;
  const std::int64_t min_two_runs = edited_run + scoring_.min_penalty();
  if (use_ == SeedUse::kExtendOverEdits) {
    return {unit_length, std::min(min_unit_score, edited_run), min_unit_score, min_two_runs};
  }
  const std::int64_t user_min_score = thresholds_.user_min_scores[unit_length];
  return {unit_length, std::max(exact_run, std::min(user_min_score, edited_run)), user_min_score,
          min_two_runs};
}

BoundPlan CFilterPlan::bounds(std::int64_t unit_length, std::int64_t min_unit_score) const {
  BoundPlan plan;
  if (use_ != SeedUse::kExtendOverEdits) return plan;
  if (unit_length >= kMinGroupUnit && unit_length + min_unit_score <= kMaxGroupTarget) {
    plan.min_group_seeds = kMinGroupSeeds;
  }
  if (unit_length <= kMaxBatchUnit) {
    const bool is_wide = kMinWideUnit <= unit_length && unit_length <= kMaxSingleUnit;
    plan.min_batch_seeds = is_wide ? kMinWideBatchSeeds : kMinBatchSeeds;
  }
  if (unit_length <= kMaxSingleUnit) plan.min_single_seeds = 1;
  return plan;
}

UnitPlan CFilterPlan::unit(std::int64_t unit_length) const {
  UnitPlan plan;
  plan.unit_length = unit_length;
  plan.min_score = min_score(unit_length);
  plan.run_rule = run_rule(unit_length, plan.min_score);
  if (plan.run_rule.min_run >= 1) {
    plan.sieve = Sieve::kRuns;
  } else if (use_ == SeedUse::kExtendOverEdits && plan.min_score >= 1) {
    plan.chain_rule = ChainRule::for_unit(unit_length, plan.min_score, scoring_);
    if (plan.chain_rule.edits > 0) {
      plan.sieve = Sieve::kChains;
    } else if (unit_length <= kMaxLagUnit && scoring_.min_penalty() >= kMinLagPenalty) {
      plan.sieve = Sieve::kLags;
    } else if (kMinBlockUnit <= unit_length && unit_length <= kMaxBlockUnit &&
               scoring_.min_penalty() >= kMinBlockPenalty) {
      plan.sieve = Sieve::kBlocks;
    }
  }
  // A seed scores 0, so a minimum of 0 or less rejects none.
  if (plan.min_score >= 1) plan.bounds = bounds(unit_length, plan.min_score);
  return plan;
}

std::int64_t CFilterPlan::lag_units_at_once(std::int64_t text_length) {
  // A large text has room for four: half a byte for each base.
  const std::int64_t room = std::max(kLagSeedBytes, text_length / 2) * 8 / text_length;
  return std::min(room, kMaxLagUnitsAtOnce);
}

std::int64_t CFilterPlan::last_lag_unit(std::int64_t unit_length, std::int64_t text_length) const {
  const std::int64_t last_of_sieve =
      unit(unit_length).sieve == Sieve::kLags ? kMaxLagUnit : kMaxBlockUnit;
  const std::int64_t last = std::min({unit_length + lag_units_at_once(text_length) - 1,
                                      last_of_sieve, last_unit_length_, text_length - 1});
  return std::max(unit_length, last);
}

}  // namespace quorix
