#pragma once

/// @file
/// The first stage of the filter: the sieves of each unit length, as the plan says, over the whole
/// text or over one segment of it after the other.
///
/// A unit length begins with `begin`. Then the text is sifted, once. The sieves of lags and of
/// blocks (search/filter/lag_sieve.h, block_sieve.h) serve several unit lengths at once, so they
/// are called by whoever uses this:
///
/// ```
///   sieve.begin(unit_length);
///   if (sieve.needs_lags()) sift_text_by_lags(text, length, sieve.lag_rule(), sieve.lag_seeds());
///   if (sieve.needs_blocks()) sift_text_by_blocks(... the same ...);
///   sieve.sift({0, length});
///   use(sieve.seeds());
/// ```
///
/// What several threads may do: once `begin` has returned, each may sift segments of its own, if
/// their borders are multiples of 64, and change the bits of their seeds. All else is for one.

#include <cstdint>
#include <vector>

#include "search/bits/base_planes.h"
#include "search/bits/bit_set.h"
#include "search/filter/bound.h"
#include "search/filter/filter_plan.h"
#include "search/filter/lag_sieve.h"
#include "search/filter/run_sieve.h"
#include "search/filter/sieve.h"
#include "search/filter/walled_text.h"

namespace quorix {

/// The sieves of one text by one plan. It keeps what the sieve of lags leaves of the next unit
/// lengths.
class CSeedSieve {
 public:
  /// Reads the text [text, text + length), which must outlive it. Throws: std::bad_alloc.
  CSeedSieve(const char* text, std::uint64_t length, const CFilterPlan& plan);

  [[nodiscard]] const CFilterPlan& plan() const { return plan_; }
  /// The text as extensions can read it.
  [[nodiscard]] const ScoredText& scored_text() const { return scored_text_; }
  [[nodiscard]] std::uint64_t length() const { return planes_.length(); }
  /// Where the N's are.
  [[nodiscard]] const CBitSet& bits_of_Ns() const { return planes_.bits_of_Ns(); }

  /// Begins a unit length; fastest in ascending order. All seeds are undecided, but those that
  /// were sifted together with shorter ones. REQUIRES: 1 <= unit_length < length().
  /// Throws: std::bad_alloc.
  void begin(std::uint64_t unit_length);

  /// The line of the plan for the unit length that was begun.
  [[nodiscard]] const UnitPlan& unit() const { return unit_; }

  /// True if the sieve of lags is to go over the text now: for `lag_rule`, with `lag_seeds`.
  [[nodiscard]] bool needs_lags() const { return is_new_rule_ && unit_.sieve == Sieve::kLags; }
  /// The same for the sieve of blocks, after that of lags. Where few unit lengths are sieved at
  /// once, the nets of blocks would be found too often.
  [[nodiscard]] bool needs_blocks() const {
    return is_new_rule_ &&
           (unit_.sieve == Sieve::kBlocks || lag_seeds_.size() >= kMinBlockUnitsAtOnce);
  }
  [[nodiscard]] const LagRule& lag_rule() const { return lag_rule_; }
  [[nodiscard]] std::vector<CBitSet>& lag_seeds() { return lag_seeds_; }

  /// Sifts the segment's seeds by the other sieves; those of lags and blocks stay as they are.
  /// Returns the work done.
  RunWork sift(const Segment& segment);

  /// The bases p, 0-based, whose units are undecided; at least one base follows each unit. Valid
  /// until the next `begin`.
  [[nodiscard]] CBitSet& seeds() { return *last_seeds_; }
  [[nodiscard]] const CBitSet& seeds() const { return *last_seeds_; }

  /// How often the text was compared with itself at a lag.
  [[nodiscard]] std::uint64_t lags_made() const { return lags_.made_count(); }

 private:
  [[nodiscard]] std::int64_t text_length() const {
    return static_cast<std::int64_t>(planes_.length());
  }
  /// The seeds of the unit length. If they are not there yet, those of the unit lengths that are to
  /// be sifted at once begin.
  [[nodiscard]] CBitSet& begin_lags();

  CFilterPlan plan_;
  UnitPlan unit_;
  CBasePlanes planes_;
  CWalledText text_;
  ScoredText scored_text_;
  CNeighbourLags lags_;
  CBitSet seeds_;
  CBitSet* last_seeds_ = &seeds_;  ///< `seeds_`, or one of `lag_seeds_`
  bool is_new_rule_ = false;       ///< nobody has gone over `lag_seeds_` yet
  LagRule lag_rule_{0, {}, {}};
  std::vector<CBitSet> lag_seeds_;  ///< by the unit lengths of `lag_rule_`
};

}  // namespace quorix
