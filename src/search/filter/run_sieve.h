#pragma once

/// @file
/// Which seeds can become a repeat, judged by the runs of matching bases around them.
///
/// The seed of unit length L at base p is the unit [p, p + L); its boundary p + L lies between the
/// unit and the base after it. The bases that equal the one L before form runs. A seed extends
/// exactly over the run that touches its boundary, by R bases in all.
///
/// Which seeds are rejected, and why that is sound; P is the smaller penalty:
///
/// - An exact extension scores at most R.
/// - An edit has to leave a score above -L. So with R <= P - L an extension makes none, and scores
///   at most R.
/// - Otherwise it makes one edit beside that run and extends over r more matches. A second edit
///   needs R + r > 2P - L, and so does a score above R. These r bases match the unit. Up to the
///   edit the text itself repeats the unit, so they are a run in the text: at lag L after a
///   mismatch, at lag L + 1 after an insertion, at lag L - 1 after a deletion. That holds until the
///   base a lag before is at the edit: for L - 1, L and L - 1 bases.
///
/// The edit may be on either side. The extension to the left begins with the best score of the
/// right side. That is the number of matches there, unless the right side gained by edits, and then
/// it has met the condition by itself.
///
/// A penalty above P only raises what is needed. A lag shows no more than L - 1 or L bases of the
/// second run, and no more than 64 are counted. Where r has to be longer, that many leave the seed
/// undecided.
///
/// The sieve compares the text with itself, an extension compares it with the unit. Inside a run
/// both are the same, since each base equals the one L before, back to the unit. A neutral N would
/// break that: the base L after it is compared with the N here, and with the unit by the extension.
/// So where a neutral N lies in a run or in the unit before it, its seeds stay undecided. Beyond
/// the run, a neutral N matches at every lag, which only lengthens runs. An N that matches nothing
/// ends a run, so none lies in it.

#include <cstdint>

#include "search/bits/base_planes.h"
#include "search/bits/bit_set.h"
#include "search/filter/filter_plan.h"
#include "search/filter/sieve.h"

namespace quorix {

/// Where bases match at lags L - 1, L and L + 1, for ascending unit lengths L: each set is made
/// once.
class CNeighbourLags {
 public:
  /// `planes` must outlive this. N's match everything if `is_N_wild`. Throws: std::bad_alloc.
  CNeighbourLags(const CBasePlanes& planes, bool is_N_wild);

  /// Makes `at()` the matches at `lag`, and `shorter()` and `longer()` those at the lags beside it,
  /// which are left out if `needs_neighbours` is false. REQUIRES: lag >= 1. Throws: std::bad_alloc.
  void move_to(std::uint64_t lag, bool needs_neighbours);

  [[nodiscard]] const CBitSet& shorter() const { return matches_[(lag_ + 2) % 3]; }
  [[nodiscard]] const CBitSet& at() const { return matches_[lag_ % 3]; }
  [[nodiscard]] const CBitSet& longer() const { return matches_[(lag_ + 1) % 3]; }

  [[nodiscard]] const CBasePlanes& planes() const { return planes_; }
  [[nodiscard]] bool is_N_wild() const { return is_N_wild_; }

  /// How often the matches at a lag were found.
  [[nodiscard]] std::uint64_t made_count() const { return made_count_; }

 private:
  void make(std::uint64_t lag);

  const CBasePlanes& planes_;
  bool is_N_wild_;
  std::uint64_t lag_ = 0;
  CBitSet matches_[3];          ///< by lag modulo 3
  std::uint64_t made_[3] = {};  ///< the lags that they are of, 0 for none
  std::uint64_t made_count_ = 0;
};

/// What it took to find the seeds of one unit length or of several.
struct RunWork {
  std::uint64_t words = 0;  ///< of 64 bases, in which runs were looked for
  std::uint64_t runs = 0;   ///< that were looked at, those that are too short included
};

/// Clears in `seeds` the bits of the segment's seeds that `rule` rejects, see
/// search/filter/sieve.h. `lags` is at the unit length, with its neighbours if some runs are
/// neither sure nor too short. REQUIRES: rule.min_run >= 1, seeds.size() is the length of the text
/// less the unit length. Returns the work done.
RunWork sift_by_runs(const CNeighbourLags& lags, const RunRule& rule, const Segment& segment,
                     CBitSet& seeds);

}  // namespace quorix
