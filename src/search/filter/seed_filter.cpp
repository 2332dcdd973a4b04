// The sieves of each unit length, over the whole text; then the bounds of the seeds that are asked
// for.

#include "search/filter/seed_filter.h"

#include <cassert>

#include "search/filter/lag_sieve.h"

namespace quorix {

CSeedFilter::CSeedFilter(const char* text, std::uint64_t length, const CFilterPlan& plan)
    : sieve_(text, length, plan), bounds_(sieve_.scored_text()) {}

const CBitSet& CSeedFilter::seeds(std::uint64_t unit_length) {
  sieve_.begin(unit_length);
  bounds_.begin(sieve_.unit());
  const char* const text = sieve_.scored_text().begin;
  if (sieve_.needs_lags()) {
    const BoundWork done =
        sift_text_by_lags(text, sieve_.length(), sieve_.lag_rule(), sieve_.lag_seeds());
    lag_work_.tables += done.tables;
    lag_work_.rows += done.rows;
    lag_work_.cells += done.cells;
  }
  if (sieve_.needs_blocks()) {
    const BlockWork done =
        sift_text_by_blocks(text, sieve_.length(), sieve_.lag_rule(), sieve_.lag_seeds());
    block_work_.pieces += done.pieces;
    block_work_.sides += done.sides;
  }
  const RunWork done = sieve_.sift({0, sieve_.length()});
  run_work_.words += done.words;
  run_work_.runs += done.runs;
  return sieve_.seeds();
}

void CSeedFilter::decide(std::uint64_t p, std::uint64_t open) {
  assert(sieve_.seeds().test(p));
  bounds_.decide(p, sieve_.seeds().bits_from(p) & (open | 1));
}

SeedFilterWork CSeedFilter::work() const {
  const SeedBoundsWork& bounds = bounds_.work();
  return {run_work_,
          sieve_.lags_made(),
          lag_work_,
          block_work_,
          bounds.groups,
          bounds.batches,
          bounds.singles,
          bounds_.group_work(),
          bounds_.batch_work(),
          bounds_.single_work()};
}

}  // namespace quorix
