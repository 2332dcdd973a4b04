#pragma once

/// @file
/// Sieve of the seeds of long units, for all unit lengths at once.
///
/// While the extension to the right compares the base at x with the unit character at y, its lag is
/// x - y. A seed of unit length L begins at lag L. A match or mismatch keeps the lag, an insertion
/// makes it one longer, a deletion one shorter. So up to the end of their first copy, the
/// extensions of all seeds go through one grid of bases and lags, whatever their unit lengths.
/// Beyond that copy, y is no unit character any more; what the grid has there only adds paths.
///
/// Two tables lie over that grid. A cell has the highest value that a path from there can collect,
/// at least 0. They are filled from right to left; for the extension to the left there are their
/// mirror images.
///
/// - The gain: matches less penalties. If both sides stay within one copy, the sum of their gains
///   bounds the score of the seed, since a gain only ignores that a path may not fall too low.
/// - The persistence: rewards of matches and N's, less costs of edits. A path that begins with
///   score 0 and lives on after the first copy has collected at least `min_persistence` in it.
///
/// What it promises: a seed is rejected only if its gains add up to less than the minimum score and
/// neither side persists, that is, has the persistence of a path that lives on. The tables have
/// every path of the bound of single seeds (search/filter/single_bound.h), so the promise holds for
/// the extension, too.
///
/// Symbols, here and in search/filter/lag_grid.h:
///
/// ```
///   x, y      position of a base, and of the unit character that it is compared with
///   L         unit length
///   g, q      penalty of an indel, and the smaller of both penalties
///   r, c      reward and cost in the persistence: of a match or N, of an edit (`LagWeights`)
///   S         score on entry: 0 to the right; to the left the best score of the right side
/// ```
///
/// Why the promise holds:
///
/// 1. What a path that lives on has collected. It has used L characters: L - u of them with a
///    reward, u with a mismatch or deletion. It has made v insertions, too. Its persistence is
///    r L - (r + c) u - c v. An edit must leave a score above -L, and each of the u costs a match
///    as well, so (q + 1) u + g v <= S + 2 L - 1. The persistence is lowest if all edits are of one
///    kind. With S = 0 that is r L - max((r + c) (2 L - 1) / (q + 1), c (2 L - 1) / g), which is
///    `min_persistence`. S allows for more edits, which take away S max((r + c) / (q + 1), c / g)
///    more: S at most, or half of S if `is_half_enough`. So the left side gets that much, rounded
///    up, as a credit.
/// 2. Lags without a lane. A seed whose gain to the right is above `kMaxGain` is undecided, so S is
///    `kMaxGain` at most. Hence g times the indels is S + 2 L - 1 at most, and a path stays within
///    `max_indels` lags of L. The grid has all these lags for its unit lengths, except those below
///    1: within a copy, a base lies after its character. Beside the lanes all values are 0, as for
///    a path that ends there. So a missing lane would cut off paths, and none may be missing.
/// 3. Caps. Gains are capped at L, the matches of a copy. Persistences are capped at what the path
///    needs plus the deepest fall before: with n matches up to some cell, a path has made fewer
///    than (L + S + n) / q edits, so it has collected more than -c (L + S) / q, as r >= c / q. The
///    part of S is in the credit. So a path that persists still does if a cell on it is capped.
///    Paths of several unit lengths share a cell; its cap is that of the longest one that comes
///    to its lag, since need and fall increase with the unit length.
/// 4. Bytes. Where 255 is less than that cap, a path needs only 255 less the fall, or nothing.
///    Where 255 is less than L, a gain of 255 from a cell means a persistence of 255 from there,
///    since r is 1 or more and c no more than a penalty; by 3 the seed persists. For the same
///    reason a penalty above 255 may count as 255. A minimum score above 255 counts as 255, too,
///    which rejects less.
/// 5. Segments. Beyond the seeds of a segment, rows are filled on either side as far as their
///    copies and insertions reach: 2 L + `max_indels` rows. So no segment needs another one. How
///    many paths a seed sees beyond its copy depends on where its segment lies, so borders are
///    fixed.
///
/// Neutral N's are rewarded as matches in the persistence, which only raises it.
///
/// A row is the cells with the same x + y, at every other lag. A cell needs only the two rows
/// filled before its own, so a row is one sweep of vector operations over its lags. The rows of a
/// segment are first filled from right to left, and what extensions to the right gain there is
/// stored. Then they are filled from left to right, and each is joined with the stored one.

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
/// cannot extend into a repeat of their minimum score, see search/filter/sieve.h. `workspace` has
/// the text and the rule. REQUIRES: the segment is no longer than its `segment(0)`, last unit
/// length < length. Returns the work done, with one table for each direction.
BoundWork sift_by_lags(CLagGrid& workspace, const Segment& segment, std::vector<CBitSet>& seeds);

/// The same for all segments of [text, text + length). Throws: std::bad_alloc.
BoundWork sift_text_by_lags(const char* text, std::uint64_t length, const LagRule& rule,
                            std::vector<CBitSet>& seeds);

}  // namespace quorix
