#pragma once

/// @file
/// The bound of search/filter/single_bound.h for 32 seeds side by side.
///
/// Seeds of one unit length at neighbouring bases read neighbouring bases and use neighbouring unit
/// characters. So where many of them are to be bounded, as in and around diverged repeats, the same
/// cell of all their tables is one vector, and no cell is computed that is dead for all of them.
/// Each lane is the table of one seed and stays apart from the others, so the verdicts are sound
/// for the reasons given there.

#include <cstddef>
#include <cstdint>

#include "search/filter/bound.h"
#include "search/filter/filter_plan.h"

namespace quorix {

/// Asks about the seeds of the first `kBatchSeeds` bits, see search/filter/bound.h; the others stay
/// undecided. Does not throw.
[[nodiscard]] SeedBound batch_bound;

}  // namespace quorix
