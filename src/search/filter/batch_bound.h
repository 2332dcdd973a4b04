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

namespace quorix {

/// Seeds in one batch.
inline constexpr int kBatchSeeds = 32;
/// Rows after which a batch is given up: what lives that long is worth an extension.
inline constexpr std::ptrdiff_t kMaxBatchRows = 8192;
/// The same for short units, which an extension follows along an array faster than a bound finds
/// where it ends: those whose extension paths are cached, see `CEditMemo::kLongestUnit`.
inline constexpr std::ptrdiff_t kMaxShortUnitRows = 1024;
inline constexpr std::ptrdiff_t kMaxShortUnit = 28;
/// Bases less characters, or the other way round, of the states that are followed.
inline constexpr std::ptrdiff_t kMaxBatchDifference = 400;
/// Values have 16 bits.
inline constexpr std::int64_t kMaxBatchUnit = 30'000;

/// Asks about the seeds of the first `kBatchSeeds` bits, see search/filter/bound.h; the others stay
/// undecided. Does not throw.
[[nodiscard]] SeedBound batch_bound;

}  // namespace quorix
