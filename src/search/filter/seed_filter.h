#pragma once

/// @file
/// Which seeds of a sequence are worth growing.
///
/// Few seeds extend into a repeat; most failures can be proved in a few word operations, for many
/// seeds at once. A filter never accepts a seed: what it lets through is extended and tested as
/// ever. It only rejects seeds that cannot be accepted, whatever their extension.
///
/// Sieves go first, over the whole text: runs where a seed cannot make an edit without some
/// matches, chains for short units, lags for the others. What is left is bounded when it is asked
/// for, alone or with its neighbours. Who is asked for what:
///
/// - All of them bound the score alone, with the minimum of the seed's own unit length. Minimum
///   lengths count for exact extension only. Where a minimum score is 0 or less, all is let
///   through.
/// - The verdict on a seed depends on text, unit length and settings, and on nothing that a search
///   does meanwhile, so it may be remembered for good. Which bases are open only decides which
///   neighbours are worth a verdict. The settings must not change while a filter lives.
/// - Bits of `seeds` stand for bases with a base after the unit, so neighbours that are set have
///   their units in the text. Units with an N among them get a verdict that means nothing; nobody
///   may ask for it.
/// - The sieve by lags serves several unit lengths at a time, up to `kLongestLagUnit` and the
///   longest that is searched; a longer one that is asked for is served alone. How many is a matter
///   of memory. Group and batch are chosen for speed: the bounds do not depend on each other.

#include <bit>
#include <cstdint>
#include <vector>

#include "search/bits/base_planes.h"
#include "search/bits/bit_set.h"
#include "search/filter/batch_bound.h"
#include "search/filter/chain_sieve.h"
#include "search/filter/group_bound.h"
#include "search/filter/run_sieve.h"
#include "search/filter/single_bound.h"
#include "search/rules/thresholds.h"

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

/// How much work a filter has done. The seeds that it leaves tell nothing of that.
struct SeedFilterWork {
  RunWork runs;
  std::uint64_t lags_made = 0;  ///< lags at which the text was compared with itself
  BoundWork lags;
  std::uint64_t groups = 0;   ///< groups of seeds that were looked at as one
  std::uint64_t batches = 0;  ///< seeds that were looked at side by side, so many times
  std::uint64_t singles = 0;  ///< seeds that were looked at one by one
  BoundWork group_bound;
  BoundWork batch_bound;
  BoundWork score_bound;
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
  /// minimum score. `is_open(q)` is true of the bases q that are likely to be asked for next.
  /// REQUIRES: p is one of the `seeds` last asked for, its unit holds no N. Throws: std::bad_alloc.
  template <class IsOpen>
  [[nodiscard]] bool may_grow(std::uint64_t p, std::uint64_t unit_length, const IsOpen& is_open) {
    if (!told_.covers(p, unit_length)) {
      std::uint64_t neighbours = last_seeds_->bits_from(p);
      for (std::uint64_t rest = neighbours & ~std::uint64_t{1}; rest != 0; rest &= rest - 1) {
        if (!is_open(p + static_cast<std::uint64_t>(std::countr_zero(rest)))) {
          neighbours &= ~(rest & (~rest + 1));
        }
      }
      tell_neighbours(p, unit_length, neighbours);
    }
    return told_.may_grow(p);
  }

  /// Unit lengths whose seeds are found at a time by their lags, in a text of `length` bases.
  [[nodiscard]] static std::uint64_t lag_units_at_once(std::uint64_t length);

  /// The work done since it was made.
  [[nodiscard]] SeedFilterWork work() const {
    SeedFilterWork all = work_;
    all.lags_made = lags_.made_count();
    all.group_bound = group_bound_.work();
    all.batch_bound = batch_bound_.work();
    all.score_bound = score_bound_.work();
    return all;
  }

  /// Where the N's are.
  [[nodiscard]] const CBitSet& bits_of_Ns() const { return planes_.bits_of_Ns(); }

 private:
  [[nodiscard]] RunRule run_rule(std::uint64_t unit_length) const;
  [[nodiscard]] ChainRule chain_rule(std::uint64_t unit_length) const;
  /// True if the bound by lags serves for a unit length that runs do not tell of.
  [[nodiscard]] bool has_lag_bound(std::uint64_t unit_length) const;
  /// The seeds of `unit_length`, with those of the unit lengths behind it that find room.
  const CBitSet& lag_seeds(std::uint64_t unit_length);

  /// What is known of seeds of one unit length at up to 64 neighbouring bases.
  struct ToldSeeds {
    std::uint64_t unit_length = 0;  ///< 0 for none
    std::uint64_t begin = 0;
    std::uint64_t told = 0;     ///< bit k: something is known of the seed at `begin` + k
    std::uint64_t growing = 0;  ///< bit k: it may grow

    [[nodiscard]] bool covers(std::uint64_t p, std::uint64_t length) const {
      return length == unit_length && p - begin < 64 && (told >> (p - begin) & 1) != 0;
    }
    [[nodiscard]] bool may_grow(std::uint64_t p) const { return (growing >> (p - begin) & 1) != 0; }
  };

  /// Makes `told_` tell of the seed at p and of others that are `neighbours`, bit k for base p + k.
  void tell_neighbours(std::uint64_t p, std::uint64_t unit_length, std::uint64_t neighbours);
  /// False only if none of those seeds may grow. True, without another look, where the last
  /// undecided group has the seed at p.
  [[nodiscard]] bool may_group_grow(std::uint64_t p, std::uint64_t unit_length,
                                    std::uint64_t neighbours);

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
  CGroupBound group_bound_;
  ToldSeeds told_;
  ToldSeeds growing_group_;  ///< the last one that had to be looked at more closely
  SeedFilterWork work_;      ///< without that of the bounds
};

}  // namespace quorix
