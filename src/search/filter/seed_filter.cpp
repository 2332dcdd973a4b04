// Runs the plan: the sieves of each unit length, then the bounds of the seeds that are asked for,
// largest first: what a group rejects, no batch has to look at. A bound serves where at least as
// many seeds are asked for as the plan says. Verdicts are cached for the neighbours that a scan
// asks for next.

#include "search/filter/seed_filter.h"

#include <bit>
#include <cassert>
#include <optional>

#include "search/filter/batch_bound.h"
#include "search/filter/block_sieve.h"
#include "search/filter/chain_sieve.h"
#include "search/filter/group_bound.h"
#include "search/filter/lag_sieve.h"
#include "search/filter/single_bound.h"

namespace quorix {

namespace {

// Neighbours are the bits of a word.
static_assert(kGroupSeeds == kWordBits && kBatchSeeds == 32);

/// Returns how many neutral N's in a row an extension over edits takes at most; none if N's are not
/// neutral, or if no seed is extended over edits: then nothing reads the text but its planes.
std::optional<std::int64_t> max_neutral_Ns(const CFilterPlan& plan) {
  if (!plan.scoring().is_N_neutral || plan.use() != SeedUse::kExtendOverEdits) return std::nullopt;
  return plan.max_Ns_in_a_row();
}

}  // namespace

CSeedFilter::CSeedFilter(const char* text, std::uint64_t length, const CFilterPlan& plan)
    : plan_(plan),
      planes_(text, length),
      text_(text, planes_.bits_of_Ns(), max_neutral_Ns(plan)),
      scored_text_{text_.begin(), text_.begin() + length, plan.scoring()},
      lags_(planes_, plan.scoring().is_N_neutral) {
  // Without N's the bounds need not look for them.
  scored_text_.scoring.is_N_neutral = plan.scoring().is_N_neutral && text_.has_Ns();
}

void CSeedFilter::sift_unit_by_runs() {
  const RunRule& rule = unit_.run_rule;
  lags_.move_to(static_cast<std::uint64_t>(rule.unit_length), rule.min_run < rule.sure_run);
  const RunWork done = sift_by_runs(lags_, rule, {0, planes_.length()}, seeds_);
  work_.runs.words += done.words;
  work_.runs.runs += done.runs;
}

const CBitSet& CSeedFilter::lag_seeds() {
  const std::int64_t unit_length = unit_.unit_length;
  const auto index = [&] { return static_cast<std::size_t>(unit_length - first_lag_unit_); };
  if (first_lag_unit_ == 0 || unit_length < first_lag_unit_ || index() >= lag_seeds_.size()) {
    LagRule rule{unit_length, {}, plan_.scoring()};
    lag_seeds_.clear();
    for (std::int64_t u = unit_length; u <= plan_.last_lag_unit(unit_length, text_length()); ++u) {
      rule.min_scores.push_back(plan_.min_score(u));
      lag_seeds_.emplace_back().reset_to_set(static_cast<std::uint64_t>(text_length() - u));
    }
    first_lag_unit_ = unit_length;
    if (unit_.sieve == Sieve::kLags) {
      const BoundWork by_lags =
          sift_text_by_lags(text_.begin(), planes_.length(), rule, lag_seeds_);
      work_.lags.tables += by_lags.tables;
      work_.lags.rows += by_lags.rows;
      work_.lags.cells += by_lags.cells;
    }
    // Where few unit lengths are sieved at once, the nets of blocks would be found too often.
    if (unit_.sieve == Sieve::kBlocks || lag_seeds_.size() >= kMinBlockUnitsAtOnce) {
      const BlockWork by_blocks =
          sift_text_by_blocks(text_.begin(), planes_.length(), rule, lag_seeds_);
      work_.blocks.pieces += by_blocks.pieces;
      work_.blocks.sides += by_blocks.sides;
    }
  }
  return lag_seeds_[index()];
}

const CBitSet& CSeedFilter::seeds(std::uint64_t unit_length) {
  assert(unit_length >= 1 && unit_length < planes_.length());
  if (unit_.unit_length != static_cast<std::int64_t>(unit_length)) {
    unit_ = plan_.unit(static_cast<std::int64_t>(unit_length));
    verdicts_ = undecided_group_ = {};
  }
  if (unit_.sieve == Sieve::kLags || unit_.sieve == Sieve::kBlocks) {
    last_seeds_ = &lag_seeds();
    return *last_seeds_;
  }
  last_seeds_ = &seeds_;
  seeds_.reset_to_set(planes_.length() - unit_length);
  if (unit_.sieve == Sieve::kRuns) sift_unit_by_runs();
  if (unit_.sieve == Sieve::kChains) {
    sift_by_chains(planes_, unit_.chain_rule, {0, planes_.length()}, seeds_);
  }
  return seeds_;
}

bool CSeedFilter::is_group_rejected(std::uint64_t p, std::uint64_t asked) {
  if (undecided_group_.cover(p)) return false;
  ++work_.groups;
  if (group_bound(scored_text_, question(p, asked), for_groups_) == 0) return true;
  undecided_group_ = {p, asked, asked};
  return false;
}

CSeedFilter::Verdicts CSeedFilter::bound_neighbours(std::uint64_t p, std::uint64_t asked) {
  const auto serves = [](std::uint64_t seeds, int min_seeds) {
    return min_seeds != 0 && std::popcount(seeds) >= min_seeds;
  };
  if (serves(asked, unit_.bounds.min_group_seeds) && is_group_rejected(p, asked)) {
    return {p, asked, 0};
  }
  const auto batch = static_cast<std::uint32_t>(asked);
  if (serves(batch, unit_.bounds.min_batch_seeds)) {
    ++work_.batches;
    return {p, batch, batch_bound(scored_text_, question(p, batch), for_batches_)};
  }
  if (serves(1, unit_.bounds.min_single_seeds)) {
    ++work_.singles;
    return {p, 1, single_bound(scored_text_, question(p, 1), for_singles_)};
  }
  return {p, asked, asked};
}

void CSeedFilter::decide(std::uint64_t p, std::uint64_t open) {
  assert(last_seeds_ != nullptr && last_seeds_->test(p));
  verdicts_ = bound_neighbours(p, last_seeds_->bits_from(p) & (open | 1));
}

}  // namespace quorix
