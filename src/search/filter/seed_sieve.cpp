// What is common to all segments is made when a unit length begins: the lags at which the text is
// compared with itself, and the bits of all seeds.

#include "search/filter/seed_sieve.h"

#include <cassert>
#include <optional>

#include "search/filter/chain_sieve.h"

namespace quorix {

namespace {

/// Returns how many neutral N's in a row an extension over edits takes at most; none if N's are not
/// neutral, or if no seed is extended over edits: then nothing reads the text but its planes.
std::optional<std::int64_t> max_neutral_Ns(const CFilterPlan& plan) {
  if (!plan.scoring().is_N_neutral || plan.use() != SeedUse::kExtendOverEdits) return std::nullopt;
  return plan.max_Ns_in_a_row();
}

}  // namespace

CSeedSieve::CSeedSieve(const char* text, std::uint64_t length, const CFilterPlan& plan)
    : plan_(plan),
      planes_(text, length),
      text_(text, planes_.bits_of_Ns(), max_neutral_Ns(plan)),
      scored_text_{text_.begin(), text_.begin() + length, plan.scoring()},
      lags_(planes_, plan.scoring().is_N_neutral) {
  // Without N's the bounds need not look for them.
  scored_text_.scoring.is_N_neutral = plan.scoring().is_N_neutral && text_.has_Ns();
}

CBitSet& CSeedSieve::begin_lags() {
  const std::int64_t unit_length = unit_.unit_length;
  is_new_rule_ = lag_seeds_.empty() || unit_length < lag_rule_.first_unit_length ||
                 unit_length > lag_rule_.last_unit_length();
  if (is_new_rule_) {
    lag_rule_ = {unit_length, {}, plan_.scoring()};
    lag_seeds_.clear();
    for (std::int64_t u = unit_length; u <= plan_.last_lag_unit(unit_length, text_length()); ++u) {
      lag_rule_.min_scores.push_back(plan_.min_score(u));
      lag_seeds_.emplace_back().reset_to_set(static_cast<std::uint64_t>(text_length() - u));
    }
  }
  return lag_seeds_[static_cast<std::size_t>(unit_length - lag_rule_.first_unit_length)];
}

void CSeedSieve::begin(std::uint64_t unit_length) {
  assert(unit_length >= 1 && unit_length < planes_.length());
  if (unit_.unit_length != static_cast<std::int64_t>(unit_length)) {
    unit_ = plan_.unit(static_cast<std::int64_t>(unit_length));
  }
  is_new_rule_ = false;
  if (unit_.sieve == Sieve::kLags || unit_.sieve == Sieve::kBlocks) {
    last_seeds_ = &begin_lags();
    return;
  }
  last_seeds_ = &seeds_;
  seeds_.reset_to_set(planes_.length() - unit_length);
  if (unit_.sieve == Sieve::kRuns) {
    lags_.move_to(unit_length, unit_.run_rule.min_run < unit_.run_rule.sure_run);
  }
}

RunWork CSeedSieve::sift(const Segment& segment) {
  if (unit_.sieve == Sieve::kRuns) return sift_by_runs(lags_, unit_.run_rule, segment, seeds_);
  if (unit_.sieve == Sieve::kChains) sift_by_chains(planes_, unit_.chain_rule, segment, seeds_);
  return {};
}

}  // namespace quorix
