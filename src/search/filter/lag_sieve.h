#pragma once

/// @file
/// Which seeds of long units can become a repeat, for all unit lengths at once.
///
/// While the extension to the right compares base x with unit character c, its lag is x - c. A seed
/// of unit length L begins at lag L; a match or mismatch keeps the lag, an insertion makes it one
/// longer and a deletion one shorter. So up to the end of the first unit copy the extensions of all
/// seeds go through one grid of bases and lags, whatever their unit lengths. After that copy the
/// grid compares a base with a text position that is no unit character: what it has there only adds
/// paths.
///
/// Two tables are kept over that grid, from right to left, each with the highest value that a path
/// from there can collect, 0 at least, and their mirror images for the extension to the left:
///
/// - the gain: matches less penalties. The gains to both sides, if both stay within one copy, bound
///   the score of the seed, since they only ignore that a path may not fall too low;
/// - the persistence: r a base that is a match or N, less c an edit, where r and c are the reward
///   and the cost of the weights.
///
/// What it promises: a seed is rejected only if its gains add up to less than the minimum score and
/// neither side persists, that is, has the persistence that a path needs to live on after the
/// first copy. Every path of the score bound is looked at, so this holds for the extension, too.
/// Below, L is the unit length, S the score on entry (0 to the right, the best score to the right
/// to the left), m and g are the penalties of mismatches and indels, q the smaller one.
///
/// 1. A path that lives on after the copy has used L characters: L - u of them with a reward, and u
/// with a
///    mismatch or deletion. With v insertions, an edit leaves a score above -L, so (q + 1) u + g v
///    <= S + 2 L - 1: each of the u costs a match as well. The persistence is r L - (r + c) u - c
///    v, so it is lowest if all edits are of one kind, and with S = 0 at least r L - max((r + c) (2
///    L - 1) / (q + 1), c (2 L - 1) / g), see `min_persistence`. S takes away S max((r + c) / (q
///    + 1), c / g) more, which is S at most, or half of S if `is_half_enough`; that much, rounded
///    up, is lent to the left side.
/// 2. The best score to the right bounds S, and a seed with a higher gain than `kHighestGain` is
/// undecided,
///    so S is that at most. Hence g times the indels is S + 2 L - 1 at most, and lags farther than
///    that many indels from L are never used, see `max_indels`. The grid has all lags of its unit
///    lengths but those below 1: within a copy, a base lies after its character. Beside its lanes
///    all values are 0, which is what a path has that ends there. So a lag without a lane cuts
///    paths off, and must not be one of those.
/// 3. Gains are cut off at L, the matches of a copy. Persistences are cut off at what the path
///    needs plus the deepest fall: with a matches up to some cell, its edits there are below (L + S
///    + a) / q, so its persistence up to there is above -c (L + S) / q, as r >= c / q. What is left
///    of S is lent, as above. So a path that persists still does if a cell on its way is cut off.
///    The cell's unit length may differ; the longest that can come to its lag is taken, and what is
///    needed and the fall increase with the unit length.
/// 4. Where a byte ends below that sum, a path needs only 255 less the fall, or nothing. Where it
///    ends below L, a gain of 255 from a cell means a persistence of 255 from there, since r is 1
///    or more and c no more than a penalty, so by 3 the seed persists. For the same reason a
///    penalty above 255 may count as 255. A minimum score above 255 counts as 255, too, which
///    rejects less.
/// 5. Beyond the seeds of a segment, rows are filled on either side as far as their copies and
///    insertions reach: 2 L + `max_indels` rows. So no segment needs another one, but how many
///    paths a seed sees beyond that depends on where its segment lies: borders are fixed.
///
/// N's that are neutral are rewarded as matches in the persistence, which only raises it.
///
/// The grid is walked along x + c, where base and character change in turns: every cell then needs
/// the two rows before it only, and a row is one sweep of vector operations over all lags of its
/// parity. Segments of rows are walked to the left, kept, and joined while walking to the right.

#include <cstdint>
#include <vector>

#include "search/bits/bit_set.h"
#include "search/filter/bound_work.h"
#include "search/filter/filter_plan.h"
#include "search/filter/sieve.h"

namespace quorix {

/// The unit lengths that are searched together.
struct LagRule {
  std::int64_t first_unit_length;        ///< 1 or more
  std::vector<std::int64_t> min_scores;  ///< of the first unit length and those after it
  ScoringRules scoring;                  ///< penalties of `kMinLagPenalty` or more

  [[nodiscard]] std::int64_t last_unit_length() const {
    return first_unit_length + static_cast<std::int64_t>(min_scores.size()) - 1;
  }
};

class CLagGrid;

/// Clears in `seeds[i]` the bits of the segment's seeds of length `first_unit_length` + i that
/// cannot extend into a repeat of their minimum score, see search/filter/sieve.h. The workspace has
/// text and rule. REQUIRES: the segment is no longer than its `segment(0)`, last unit length <
/// length. Returns the work done, with one table for each direction.
BoundWork sift_by_lags(CLagGrid& workspace, const Segment& segment, std::vector<CBitSet>& seeds);

/// The same for all segments of [text, text + length). Throws: std::bad_alloc.
BoundWork sift_text_by_lags(const char* text, std::uint64_t length, const LagRule& rule,
                            std::vector<CBitSet>& seeds);

}  // namespace quorix
