#pragma once

/// @file
/// What is common to the ways of following the seeds of one block to one side: see
/// search/filter/block_sieve.h.

#include <cstdint>

#include "search/filter/block_nets.h"

namespace quorix {

/// Unit lengths judged at once. A tail, the blocks in which one of their units may end, has no more
/// than three blocks then.
inline constexpr std::int64_t kUnitsAtOnce = 16;
inline constexpr std::int64_t kTailBlocks = 3;
static_assert((2 * (kBlockCharacters - 1) + kUnitsAtOnce - 1) / kBlockCharacters < kTailBlocks);

/// Copies of a unit that are followed, to either side.
inline constexpr std::int64_t kMaxBlockCopies = 16;

/// A path that begins at a later character of a block has the lag of the row less twice as much.
inline constexpr std::int64_t kBeginSpread = 2 * kBlockCharacters;

/// Unit lengths [first, last] of seeds that are judged at once, and the lowest minimum score.
struct UnitLengths {
  std::int64_t first;
  std::int64_t last;
  std::int64_t min_score;
};

/// How far one side may get.
struct SideReach {
  std::int64_t best_score;
  bool is_open;  ///< it was not followed to its end
};

/// Returns the first block of the tail of units of these lengths whose seeds lie in `block`.
[[nodiscard]] inline std::int64_t tail_of(std::int64_t block, const UnitLengths& units) {
  return (block * kBlockCharacters + units.first) / kBlockCharacters;
}

}  // namespace quorix
