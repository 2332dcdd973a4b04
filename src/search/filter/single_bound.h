#pragma once

/// @file
/// Upper bound of the score that a seed or repeat can reach, by dynamic programming.
///
/// What it promises. An extension makes one edit after the other, each chosen by a costly
/// look-ahead. Here all its paths are followed at once: the table holds, for every count of bases
/// read and of unit characters used, the highest score with which any path of matches and edits
/// arrives there. An edit must leave the score above minus the unit length, so a state at or below
/// that is dead. A seed is rejected if no state reaches the minimum score.
///
/// Why it is sound. An extension takes one of these paths, under rules that are no laxer: it may
/// only edit where a base differs, only within the score reduction limit, and it stops at a long
/// run of N's, which here costs a mismatch a base where the text has walls, and else scores 0. The
/// extension to the left begins with the best score of the one to the right, and a path with a
/// higher score on entry has every choice of one with less; so the table to the left begins with
/// the best value of the table to the right.
///
/// The bound of batches would serve for a lone seed, too. This one is kept for exact repeats, which
/// have a score and phases already, and for one or two seeds, where its rows in registers are
/// faster: with batches of one, whole searches take 2 to 3 % more instructions, with groups of one
/// 10 % more time.

#include <cstddef>
#include <cstdint>

#include "search/filter/bound.h"
#include "search/filter/filter_plan.h"

namespace quorix {

/// A seed or an exact repeat that is to be extended: what of it matters here.
struct ExtendableRepeat {
  const char* start;       ///< first base
  const char* end;         ///< one past the last base
  const char* unit_begin;  ///< the unit is [unit_begin, unit_end), without N's
  const char* unit_end;
  std::int64_t right_phase;  ///< unit character that the base at `end` has to match, from 0
  std::int64_t left_phase;   ///< unit character that the base before `start` has to match
  std::int64_t score;
};

/// Asks about each seed by itself, see search/filter/bound.h. Does not throw.
[[nodiscard]] SeedBound single_bound;

/// Returns false only if no extension of `repeat` to the right and then to the left reaches
/// `min_score`. Near the ends of the text, and where the table would get too large, returns true.
/// REQUIRES: the repeat lies in the text, its phases in its unit; its score is above minus the
/// unit length.
[[nodiscard]] bool may_repeat_reach(const ScoredText& text, const ExtendableRepeat& repeat,
                                    std::int64_t min_score, BoundWork& work);

}  // namespace quorix
