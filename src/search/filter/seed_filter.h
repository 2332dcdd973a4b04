#pragma once

/// @file
/// Which seeds of a text are worth extending.
///
/// Few seeds extend into a repeat; most failures can be proved in a few word operations, for many
/// seeds at once. A filter never accepts a seed: its verdict is "rejected", if no extension could
/// make an accepted repeat of it, or "undecided", and what is undecided is extended and tested.
///
/// The plan (search/filter/filter_plan.h) says what serves a unit length: the sieves over the whole
/// text (search/filter/seed_sieve.h), then bounds of the seeds that it leaves, which are asked only
/// for seeds that the search comes to (search/filter/seed_bounds.h).
///
/// - Sieves and bounds judge the score alone, with the minimum of the seed's own unit length.
///   Minimum lengths count for exact extension only. Where a minimum score is 0 or less, no seed is
///   rejected.
/// - A verdict depends on text, unit length and plan, and on nothing that a search does meanwhile,
///   so it stays valid. Open bases only decide which neighbours are bounded along with a seed.
/// - Bits of `seeds` stand for bases with a base after the unit, so neighbours that are set have
///   their units in the text. The verdict on a unit with an N is meaningless and must not be asked
///   for.

#include <cstdint>

#include "search/bits/bit_set.h"
#include "search/filter/block_sieve.h"
#include "search/filter/bound_work.h"
#include "search/filter/filter_plan.h"
#include "search/filter/run_sieve.h"
#include "search/filter/seed_bounds.h"
#include "search/filter/seed_sieve.h"

namespace quorix {

/// How much work a filter has done. The seeds that it leaves do not show that.
struct SeedFilterWork {
  RunWork runs;
  std::uint64_t lags_made = 0;  ///< lags at which the text was compared with itself
  BoundWork lags;
  BlockWork blocks;
  std::uint64_t groups = 0;   ///< groups of seeds that were bounded as one
  std::uint64_t batches = 0;  ///< batches of seeds that were bounded side by side
  std::uint64_t singles = 0;  ///< seeds that were bounded one by one
  BoundWork group_bound;
  BoundWork batch_bound;
  BoundWork single_bound;
};

/// The filter of one text by one plan. It caches the verdicts on the neighbours of the last seed,
/// and what the sieve of lags leaves of the next unit lengths.
class CSeedFilter {
 public:
  /// Reads the text [text, text + length), which must outlive it. Throws: std::bad_alloc.
  CSeedFilter(const char* text, std::uint64_t length, const CFilterPlan& plan);

  [[nodiscard]] const CFilterPlan& plan() const { return sieve_.plan(); }

  /// The bases p, 0-based, whose units of `unit_length` the sieve leaves undecided; at least one
  /// base follows each unit. Valid until the next call; fastest for unit lengths in ascending
  /// order. REQUIRES: 1 <= unit_length < length. Throws: std::bad_alloc.
  const CBitSet& seeds(std::uint64_t unit_length);

  /// False if no bound serves the unit length of the last `seeds`: all of them stay undecided.
  [[nodiscard]] bool has_bounds() const { return bounds_.has_bounds(); }

  /// True if the seed at base p, of the unit length of the last `seeds`, has a verdict.
  [[nodiscard]] bool has_verdict(std::uint64_t p) const { return bounds_.has_verdict(p); }

  /// Finds the verdict on the seed at base p, of the unit length of the last `seeds`, and on
  /// neighbours: of those at p + k, the ones whose bit k is set in `open` are likely to be asked
  /// for next. REQUIRES: p is one of the last `seeds`, its unit holds no N. Throws: std::bad_alloc.
  void decide(std::uint64_t p, std::uint64_t open);

  /// False if the seed at base p is rejected: it cannot extend over edits into a repeat of the
  /// minimum score. REQUIRES: has_verdict(p).
  [[nodiscard]] bool is_undecided(std::uint64_t p) const { return bounds_.is_undecided(p); }

  /// The work done since it was made.
  [[nodiscard]] SeedFilterWork work() const;

  /// Where the N's are.
  [[nodiscard]] const CBitSet& bits_of_Ns() const { return sieve_.bits_of_Ns(); }

 private:
  CSeedSieve sieve_;
  CSeedBounds bounds_;
  RunWork run_work_;
  BoundWork lag_work_;
  BlockWork block_work_;
};

}  // namespace quorix
