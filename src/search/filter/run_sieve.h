#pragma once

/// @file
/// Which seeds can become a repeat, judged by the runs of matching bases around them.
///
/// The seed of unit length L at base p is the unit [p, p + L); its boundary q = p + L lies between
/// the unit and the base after it. The bases that equal the one L before form runs, and a seed
/// extends exactly over the run that touches its boundary, by R bases in all.
///
/// Which seeds are rejected, and why that is sound:
///
/// - An exact extension scores R at most.
/// - An extension over edits may make an edit only from a score above P - L, where P is the smaller
///   penalty: with R <= P - L it makes none, and scores R at most again.
/// - Otherwise it makes one edit beside that run, and walks on over r matches. The next edit, and
///   also any gain, needs R + r > 2P - L. Those r bases match the unit, which up to there the text
///   itself repeats; so they are a run at lag L after a mismatch, at lag L + 1 after an insertion
///   and at lag L - 1 after a deletion, at least until the lag meets the edit: L - 1, L and L - 1
///   bases farther on.
///
/// The two runs may lie on either side: the extension to the left begins with the best score of the
/// right side, which is the matches there unless that side gained, and then it met the condition by
/// itself. A penalty above P only raises what is needed. Where r would have
/// to be longer than a lag can show, its L - 1 or L bases, or 64, are enough to leave the seed
/// undecided.
///
/// The run at the boundary is read off the text, not off the unit: inside it both are the same,
/// since each base equals the one L before, up to the unit itself. N's that may stand for any base
/// would break that, as the base L after an N is held against the N there and against the unit by
/// the extension. So where one lies in the run or the unit before it, every seed stays undecided.
/// An N that an extension reads beyond the run equals every base at each lag, which only lengthens
/// runs. N's that stand for none end a run, so none lies in it.

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

  /// Lags whose matches were found, so many times.
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
