#pragma once

/// @file
/// Which sieve and which bounds serve a unit length: the table, and the limits that decide it.
///
/// A search rejects seeds in two stages. One sieve goes over the whole text; then the seeds that it
/// leaves are bounded, groups and batches of neighbours before single ones. The plan decides from
/// the use of the seeds, the scoring rules and the thresholds of the unit length which of them
/// serve. It is a matter of speed alone: each sieve and each bound is sound wherever it may be
/// called. docs/algorithm.md, section 11, has the table for the default settings.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "search/rules/scoring_rules.h"
#include "search/rules/thresholds.h"

namespace quorix {

// Sieve of runs: where short runs are followed over one edit, words without a longer run nearby are
// passed over.
inline constexpr std::int64_t kMinNearRun = 3;   ///< shorter runs are nearly everywhere
inline constexpr std::int64_t kMaxTwoRuns = 31;  ///< of both runs together: three words are read

// Sieve of chains.
inline constexpr std::int64_t kMaxChainUnit = 32;
inline constexpr int kMinChainEdits = 2;
inline constexpr int kMaxChainEdits = 4;  ///< chains of more edits have too many states
/// Fewer matches than these happen to most seeds of random DNA, over two to four edits.
inline constexpr std::int64_t kMinChainMatches = 9;

// Sieve of lags.
inline constexpr std::int64_t kMinLagPenalty = 5;  ///< below, paths persist through anything
inline constexpr std::int64_t kMaxLagUnit = 750;   ///< longer ones need more than a byte a cell
/// More unit lengths at once make no scan faster.
inline constexpr std::int64_t kMaxLagUnitsAtOnce = 512;
/// What the seeds of several unit lengths may take, unless the text is large.
inline constexpr std::int64_t kLagSeedBytes = 40'000'000;

// Sieve of blocks: after that of lags, or alone.
inline constexpr std::int64_t kMinBlockUnit = 96;  ///< shorter ones are left to other sieves
inline constexpr std::int64_t kMaxBlockUnit = 4096;
/// Milder ones let the nets of neighbouring blocks add up to anything.
inline constexpr std::int64_t kMinBlockPenalty = 4;
/// After the sieve of lags it serves only if that takes as many unit lengths at once.
inline constexpr std::size_t kMinBlockUnitsAtOnce = 16;

// Bound of groups.
inline constexpr int kGroupSeeds = 64;
inline constexpr int kMinGroupSeeds = 2;
inline constexpr std::int64_t kMinGroupUnit = 24;  ///< shorter ones are as fast in batches
/// States of a row, whatever the width of a vector.
inline constexpr std::ptrdiff_t kMaxGroupLanes = 512;
/// Unit length and minimum score: values have 16 bits, and the target is looked for in every 16th
/// row alone.
inline constexpr std::int64_t kMaxGroupTarget = 60'000;
/// Copies of a unit that are followed, to either side; what lives longer is for the other bounds.
inline constexpr std::int64_t kMaxGroupCopies = 10;

/// Returns how many neighbouring bases have their seeds bounded as one: the wraps of the unit blur
/// no more than half of its characters then.
[[nodiscard]] constexpr std::int64_t group_bases(std::int64_t unit_length) {
  return std::min<std::int64_t>(kGroupSeeds, unit_length / 2);
}

// Bound of batches.
inline constexpr int kBatchSeeds = 32;
inline constexpr int kMinBatchSeeds = 3;  ///< fewer are as fast one by one
/// The same for units of `kMinWideUnit` and more: a row of their tables is a vector for each of
/// many diagonals in a batch, but a few vectors for a single seed.
inline constexpr int kMinWideBatchSeeds = 20;
inline constexpr std::int64_t kMinWideUnit = 64;
/// Rows after which a batch is given up: what lives that long is worth an extension.
inline constexpr std::ptrdiff_t kMaxBatchRows = 8192;
/// The same for units up to `kMaxCachedUnit`, whose extension paths are cached: an extension
/// follows them along an array faster than a bound finds where it ends.
inline constexpr std::ptrdiff_t kMaxCachedUnitRows = 1024;
/// The largest absolute diagonal that is followed.
inline constexpr std::ptrdiff_t kMaxBatchDiagonal = 400;
inline constexpr std::int64_t kMaxBatchUnit = 30'000;  ///< values have 16 bits

// Bound of single seeds.
/// Rows after which a table is given up: what lives that long is worth an extension.
inline constexpr std::ptrdiff_t kMaxSingleRows = 8192;
/// States of a row. Paths that need more stay undecided.
inline constexpr std::ptrdiff_t kMaxSingleLanes = 256;
inline constexpr std::int64_t kMaxSingleUnit = 4096;
/// Score above the floor on entry: values have 16 bits.
inline constexpr std::int64_t kMaxSingleStartValue = 60'000;

/// What a search does with a seed.
enum class SeedUse {
  kExtendExactly,      ///< exact extension, then the active thresholds
  kExtendOverEdits,    ///< extension over edits, then the active thresholds
  kExtendExactlyFirst  ///< exact extension, active thresholds; then over edits and the user's
};

/// The thresholds of a search. The tables must outlive it.
struct SeedThresholds {
  const CThresholdTable& min_scores;
  const CThresholdTable& min_lengths;
  const CThresholdTable& user_min_scores;
};

/// Which runs leave the seeds at them undecided. Lengths are in matching bases.
struct RunRule {
  std::int64_t unit_length;
  std::int64_t min_run;   ///< seeds at a shorter run are rejected; below 1 runs do not serve
  std::int64_t sure_run;  ///< seeds at a run of this length are undecided, if it reaches `min_run`
  /// In between, a seed is undecided if its run and a second one, one edit away, have at least this
  /// many matches together.
  std::int64_t min_two_runs;

  /// A run of this length is near each seed that a run in between leaves undecided; 0 if that is
  /// not worth looking for.
  [[nodiscard]] std::int64_t near_run() const {
    if (min_run >= kMinNearRun || min_run >= sure_run || min_two_runs > kMaxTwoRuns) return 0;
    const std::int64_t run = std::min({(min_two_runs + 1) / 2, unit_length - 1, sure_run});
    return run >= kMinNearRun ? run : 0;
  }
};

/// How many edits chains are followed over, and what they have to reach.
struct ChainRule {
  std::int64_t unit_length;  ///< 1 to `kMaxChainUnit`
  std::int64_t min_score;    ///< 1 or more
  ScoringRules scoring;
  int edits;  ///< 1 to `kMaxChainEdits`; 0 if chains do not serve

  /// The rule with as many edits as leave few seeds of random DNA undecided.
  [[nodiscard]] static ChainRule for_unit(std::int64_t unit_length, std::int64_t min_score,
                                          const ScoringRules& scoring);
};

enum class Sieve {
  kNone,
  kRuns,
  kChains,
  kLags,   ///< and that of blocks, for units that are long enough
  kBlocks  ///< alone
};

/// The min number of neighbouring seeds for which each bound is asked; 0: never.
struct BoundPlan {
  int min_group_seeds = 0;
  int min_batch_seeds = 0;
  int min_single_seeds = 0;

  /// True if no bound is to be asked.
  [[nodiscard]] bool is_empty() const { return *this == BoundPlan{}; }
  [[nodiscard]] bool operator==(const BoundPlan&) const = default;
};

/// One line of the table.
struct UnitPlan {
  std::int64_t unit_length = 0;
  std::int64_t min_score = 0;
  Sieve sieve = Sieve::kNone;
  RunRule run_rule{};      ///< if the sieve is of runs
  ChainRule chain_rule{};  ///< if it is of chains
  BoundPlan bounds;
};

/// The table of one search. A pure function of what it is made of.
class CFilterPlan {
 public:
  /// `last_unit_length` is the last one that is searched. Where N's are neutral, an extension ends
  /// before a run of more than `max_Ns_in_a_row`.
  CFilterPlan(SeedUse use, const ScoringRules& scoring, const SeedThresholds& thresholds,
              std::int64_t last_unit_length, std::int64_t max_Ns_in_a_row);

  [[nodiscard]] SeedUse use() const { return use_; }
  [[nodiscard]] const ScoringRules& scoring() const { return scoring_; }
  [[nodiscard]] std::int64_t max_Ns_in_a_row() const { return max_Ns_in_a_row_; }

  /// The line of one unit length, 1 or more.
  [[nodiscard]] UnitPlan unit(std::int64_t unit_length) const;

  /// The minimum score of a unit length.
  [[nodiscard]] std::int64_t min_score(std::int64_t unit_length) const;

  /// The sieves of lags and of blocks go over a text of `text_length` bases once for the unit
  /// lengths from this one to the one returned. REQUIRES: 1 <= unit_length < text_length, one of
  /// them serves this unit length.
  [[nodiscard]] std::int64_t last_lag_unit(std::int64_t unit_length,
                                           std::int64_t text_length) const;

  /// Unit lengths that the sieve of lags serves at once, in a text of `text_length` bases.
  [[nodiscard]] static std::int64_t lag_units_at_once(std::int64_t text_length);

  /// True if both have the same lines, that is, the same tables of thresholds and the same rules.
  [[nodiscard]] bool operator==(const CFilterPlan& other) const;

 private:
  [[nodiscard]] RunRule run_rule(std::int64_t unit_length, std::int64_t min_unit_score) const;
  [[nodiscard]] BoundPlan bounds(std::int64_t unit_length, std::int64_t min_unit_score) const;

  SeedUse use_;
  ScoringRules scoring_;
  SeedThresholds thresholds_;
  std::int64_t last_unit_length_;
  std::int64_t max_Ns_in_a_row_;
};

}  // namespace quorix
