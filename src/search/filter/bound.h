#pragma once

/// @file
/// The interface of the DP bounds: a question about seeds, and the verdict.
///
/// The three bounds answer the same question by the same table and differ in how they lay it out:
///
/// ```
///   single_bound   one seed           a lane is a diagonal: bases read less characters used
///   batch_bound    32 seeds           a lane is a seed
///   group_bound    64 seeds as one    a lane is a diagonal, a state serves any of the seeds
/// ```
///
/// They do not depend on each other, so which of them is asked is a matter of speed.

#include <cstdint>
#include <vector>

#include "search/filter/bound_work.h"
#include "search/rules/scoring_rules.h"

namespace quorix {

/// The text that may be read, with walls if a filter asks (search/filter/walled_text.h), and the
/// rules by which repeats in it are scored.
struct ScoredText {
  const char* begin;
  const char* end;
  ScoringRules scoring;
};

/// Seeds of one unit length at neighbouring bases. Those asked about have their units in the text.
struct SeedQuestion {
  const char* first;  ///< base of the seed that is bit 0
  std::int64_t unit_length;
  std::uint64_t asked;  ///< bit k: the seed at `first` + k
  std::int64_t min_score;
};

/// What a bound uses meanwhile. Nothing in it has any influence on a verdict, so one workspace may
/// serve any number of questions, one after the other.
struct BoundWorkspace {
  BoundWork work;                     ///< added to by each question
  std::vector<std::uint8_t> letters;  ///< scratch
};

/// Returns the seeds that are undecided: `asked` without the bits of seeds that are rejected. A
/// seed is rejected only if none of its extensions, to the right and then to the left, reaches
/// `min_score`. A bound that cannot decide, near the ends of the text or where its tables would get
/// too large, leaves the bit set. The verdict on a unit with an N means nothing.
/// Throws: std::bad_alloc.
using SeedBound = std::uint64_t(const ScoredText& text, const SeedQuestion& question,
                                BoundWorkspace& workspace);

}  // namespace quorix
