#pragma once

/// @file
/// Which seeds of a sequence are worth growing.
///
/// Nearly every seed is hopeless, and nearly every hopeless one can be told by a few word
/// operations for many seeds at once. A filter never accepts a seed: what it lets through is grown
/// and tested as ever. It only leaves out seeds that cannot be accepted, whatever their growth.

#include <cstdint>
#include <vector>

#include "search/kernel/base_planes.h"
#include "search/kernel/batch_bound.h"
#include "search/kernel/bit_set.h"
#include "search/kernel/chain_bound.h"
#include "search/kernel/run_seeds.h"
#include "search/kernel/score_bound.h"
#include "search/thresholds.h"

namespace quorix {

/// What a search does with a seed.
enum class SeedUse {
  kGrowExactly,      ///< exact growth, then the active thresholds
  kGrowOverEdits,    ///< growth over edits, then the active thresholds
  kGrowExactlyFirst  ///< exact growth and the active thresholds; then over edits and the user's
};

/// The thresholds of a search.
struct SeedThresholds {
  const CThresholdTable& min_scores;
  const CThresholdTable& min_lengths;
  const CThresholdTable& user_min_scores;
};

class CSeedFilter {
 public:
  /// Reads the text [text, text + length) and the settings. Throws: std::bad_alloc.
  CSeedFilter(const char* text, std::uint64_t length, SeedUse use,
              const SeedThresholds& thresholds);

  /// True if it was made for this use and these tables.
  [[nodiscard]] bool is_for(SeedUse use, const SeedThresholds& thresholds) const {
    return use == use_ && &thresholds.min_scores == &thresholds_.min_scores &&
           &thresholds.min_lengths == &thresholds_.min_lengths;
  }

  /// The bases p, 0-based, at which a unit of `unit_length` may seed a repeat that is accepted; at
  /// least one base follows each unit. Valid until the next call; quickest for unit
  /// lengths in ascending order. REQUIRES: 1 <= unit_length < length. Throws: std::bad_alloc.
  const CBitSet& seeds(std::uint64_t unit_length);

  /// False only if the seed of `unit_length` at base p cannot grow over edits into a repeat of the
  /// minimum score. REQUIRES: p is one of the `seeds` last asked for, its unit holds no N.
  [[nodiscard]] bool may_grow(std::uint64_t p, std::uint64_t unit_length);

  /// Where the N's are.
  [[nodiscard]] const CBitSet& bits_of_Ns() const { return planes_.bits_of_Ns(); }

 private:
  [[nodiscard]] RunRule run_rule(std::uint64_t unit_length) const;
  [[nodiscard]] ChainRule chain_rule(std::uint64_t unit_length) const;
  /// True if the bound by lags serves for a unit length that runs do not tell of.
  [[nodiscard]] bool has_lag_bound(std::uint64_t unit_length) const;
  /// The seeds of `unit_length`, with those of the unit lengths behind it that find room.
  const CBitSet& lag_seeds(std::uint64_t unit_length);

  const char* text_;
  SeedUse use_;
  SeedThresholds thresholds_;
  std::int64_t mismatch_penalty_;
  std::int64_t indel_penalty_;
  CBasePlanes planes_;
  GrowthRules growth_rules_;
  CNeighbourLags lags_;
  CBitSet seeds_;
  const CBitSet* last_seeds_ = nullptr;  ///< those last asked for
  std::uint64_t first_lag_unit_ = 0;     ///< unit length of the first of `lag_seeds_`
  std::vector<CBitSet> lag_seeds_;

  CScoreBound score_bound_;
  CBatchBound batch_bound_;
  std::uint64_t batch_unit_length_ = 0;  ///< of the seeds in `batch_`, 0 for none
  std::uint64_t batch_begin_ = 0;
  std::uint32_t batch_ = 0;  ///< which of the seeds from `batch_begin_` on may grow
};

}  // namespace quorix
