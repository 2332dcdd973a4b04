#include "search/filter/seed_filter.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "search/filter/lag_sieve.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// What the seeds of several unit lengths may take, unless the text is large.
constexpr std::uint64_t kLagSeedBytes = 40'000'000;
/// More unit lengths at a time make no scan quicker.
constexpr std::uint64_t kMostLagUnits = 512;

/// For longer units the tables, of bytes, have no room for what they would have to tell.
constexpr std::uint64_t kLongestLagUnit = 750;

/// From so many seeds within one batch on, a batch is quicker than one seed after the other.
constexpr int kLeastBatch = 3;
/// And from so many on, long units are first looked at as one.
constexpr int kLeastGroup = 8;

// Neighbours are the bits of a word.
static_assert(CGroupBound::kSeeds == CBitSet::kWordBits && CBatchBound::kSeeds == 32);

}  // namespace

CSeedFilter::CSeedFilter(const char* text, std::uint64_t length, SeedUse use,
                         const SeedThresholds& thresholds)
    : text_(text),
      use_(use),
      thresholds_(thresholds),
      mismatch_penalty_(-std::int64_t{global_mismatch_score}),
      indel_penalty_(-std::int64_t{global_indel_score}),
      planes_(text, length),
      growth_rules_{text,
                    text + length,
                    {mismatch_penalty_, indel_penalty_, is_N_neutral() && planes_.has_Ns()}},
      lags_(planes_, is_N_neutral()) {}

RunRule CSeedFilter::run_rule(std::uint64_t unit_length) const {
  const auto signed_length = static_cast<std::int64_t>(unit_length);
  const std::int64_t min_score = thresholds_.min_scores[unit_length];
  // A repeat is as long as its unit and the run together.
  const std::int64_t exact_run =
      std::max(min_score, thresholds_.min_lengths[unit_length] - signed_length);
  if (use_ == SeedUse::kGrowExactly) return {signed_length, exact_run, exact_run, exact_run};

  const std::int64_t least_penalty = std::min(mismatch_penalty_, indel_penalty_);
  const std::int64_t edited_run = least_penalty - signed_length + 1;
  const std::int64_t chained_runs = edited_run + least_penalty;
  if (use_ == SeedUse::kGrowOverEdits) {
    return {signed_length, std::min(min_score, edited_run), min_score, chained_runs};
  }
  const std::int64_t user_min_score = thresholds_.user_min_scores[unit_length];
  return {signed_length, std::max(exact_run, std::min(user_min_score, edited_run)), user_min_score,
          chained_runs};
}

ChainRule CSeedFilter::chain_rule(std::uint64_t unit_length) const {
  return {static_cast<std::int64_t>(unit_length), thresholds_.min_scores[unit_length],
          mismatch_penalty_, indel_penalty_, is_N_neutral()};
}

bool CSeedFilter::has_lag_bound(std::uint64_t unit_length) const {
  return unit_length <= kLongestLagUnit && use_ == SeedUse::kGrowOverEdits &&
         can_lag_bound_refute(mismatch_penalty_, indel_penalty_);
}

std::uint64_t CSeedFilter::lag_units_at_once(std::uint64_t length) {
  // A large text has room for four: half a byte for each base.
  const std::uint64_t room = std::max(kLagSeedBytes, length / 2) * 8 / length;
  return std::min(room, kMostLagUnits);
}

const CBitSet& CSeedFilter::lag_seeds(std::uint64_t unit_length) {
  if (first_lag_unit_ == 0 || unit_length < first_lag_unit_ ||
      unit_length >= first_lag_unit_ + lag_seeds_.size()) {
    const std::uint64_t length = planes_.length();
    const std::uint64_t last_unit_length =
        std::min<std::uint64_t>({unit_length + lag_units_at_once(length) - 1, kLongestLagUnit,
                                 global_max_unit_length, length - 1});
    LagBoundRules rules{unit_length, {}, mismatch_penalty_, indel_penalty_, is_N_neutral()};
    lag_seeds_.clear();
    for (std::uint64_t u = unit_length; u <= std::max(unit_length, last_unit_length); ++u) {
      rules.min_scores.push_back(thresholds_.min_scores[u]);
      lag_seeds_.emplace_back(length - u);
    }
    first_lag_unit_ = unit_length;
    const BoundWork done = find_lag_seeds(text_, length, rules, lag_seeds_);
    work_.lags.tables += done.tables;
    work_.lags.rows += done.rows;
    work_.lags.cells += done.cells;
  }
  return lag_seeds_[unit_length - first_lag_unit_];
}

const CBitSet& CSeedFilter::seeds(std::uint64_t unit_length) {
  assert(unit_length >= 1 && unit_length < planes_.length());
  const RunRule rule = run_rule(unit_length);
  const bool has_runs = rule.least_run >= 1;
  const ChainRule chains = chain_rule(unit_length);
  // Behind runs, the bound of seeds side by side is as quick.
  const bool has_chains =
      !has_runs && use_ == SeedUse::kGrowOverEdits && chains.edits_to_follow() > 0;
  if (!has_runs && !has_chains && has_lag_bound(unit_length)) {
    last_seeds_ = &lag_seeds(unit_length);
    return *last_seeds_;
  }

  last_seeds_ = &seeds_;
  seeds_.reset(planes_.length() - unit_length);
  if (has_runs) {
    lags_.move_to(unit_length, rule.least_run < rule.sure_run);
    const RunWork done = find_run_seeds(lags_, rule, seeds_);
    work_.runs.words += done.words;
    work_.runs.runs += done.runs;
  } else {
    seeds_.set_range(0, seeds_.size());
  }
  if (has_chains) sift_by_chains(planes_, chains, seeds_);
  return seeds_;
}

bool CSeedFilter::may_group_grow(std::uint64_t p, std::uint64_t unit_length,
                                 std::uint64_t neighbours) {
  if (static_cast<std::int64_t>(unit_length) < CGroupBound::kShortestUnit ||
      std::popcount(neighbours) < kLeastGroup || growing_group_.covers(p, unit_length)) {
    return true;
  }
  ++work_.groups;
  if (!group_bound_.may_reach(text_ + p, static_cast<std::int64_t>(unit_length), neighbours,
                              growth_rules_, thresholds_.min_scores[unit_length])) {
    return false;
  }
  growing_group_ = {unit_length, p, neighbours, neighbours};
  return true;
}

void CSeedFilter::tell_neighbours(std::uint64_t p, std::uint64_t unit_length,
                                  std::uint64_t neighbours) {
  assert((neighbours & 1) != 0);
  if (!may_group_grow(p, unit_length, neighbours)) {
    told_ = {unit_length, p, neighbours, 0};
    return;
  }
  const char* const base = text_ + p;
  const std::int64_t min_score = thresholds_.min_scores[unit_length];
  const auto signed_length = static_cast<std::int64_t>(unit_length);
  const auto batch = static_cast<std::uint32_t>(neighbours);
  if (std::popcount(batch) < kLeastBatch) {
    ++work_.singles;
    const bool may_reach = score_bound_.may_reach(
        {base, base + unit_length, base, base + unit_length, 0, signed_length - 1, 0},
        growth_rules_, min_score);
    told_ = {unit_length, p, 1, may_reach ? std::uint64_t{1} : 0};
    return;
  }
  ++work_.batches;
  told_ = {unit_length, p, batch,
           batch_bound_.may_reach(base, signed_length, batch, growth_rules_, min_score)};
}

}  // namespace quorix
