#pragma once

/// @file
/// Which seeds of long units can become a repeat, told for all unit lengths at once.
///
/// While growth to the right reads base x against unit character c, its lag is x - c. A seed of
/// unit length L begins at lag L; a match or mismatch keeps the lag, an insertion makes it one
/// longer and a deletion one shorter. So up to the end of the first unit copy the growth of all
/// seeds goes through one grid of bases and lags, whatever their unit lengths.
///
/// Two tables are kept over that grid, from right to left, each with the highest value that a path
/// from there can collect, and their mirror images for growth to the left:
///
/// - the gain: matches less penalties. The gains to both sides, if both stay within one copy, bound
///   the score of the seed, since they only ignore that a path may not fall too low;
/// - the persistence: the same with a cost for each edit that is lower than the penalties, N's
///   counting as matches. A path that lives on behind the first copy has used all L characters, and
///   its score S on entry bounds its edits: (m + 1) mismatches + (g + 1) deletions + g insertions
///   <= S + 2 L - 1 for penalties m and g. That leaves it a persistence of a certain height.
///
/// A seed is refuted if its gains add up to less than the minimum score and neither side persists.
///
/// What a path can collect within one copy is bounded, and so is how far a path that matters may
/// have fallen; values are cut off above that, so that a repeat shines no farther than it may.
///
/// The grid is walked along x + c, where base and character change in turns: every cell then needs
/// the two rows before it only, and a row is one sweep of vector operations over all lags of its
/// parity. Segments of rows are walked to the left, kept, and joined while walking to the right.

#include <cstdint>
#include <vector>

#include "search/kernel/bit_set.h"
#include "search/kernel/bound_work.h"

namespace quorix {

/// The unit lengths that are searched together, and the rules of scoring.
struct LagBoundRules {
  std::uint64_t first_unit_length;       ///< 1 or more
  std::vector<std::int64_t> min_scores;  ///< of the first unit length and those behind it
  std::int64_t mismatch_penalty;         ///< 2 or more
  std::int64_t indel_penalty;            ///< 2 or more
  bool is_N_neutral;

  [[nodiscard]] std::uint64_t last_unit_length() const {
    return first_unit_length + min_scores.size() - 1;
  }
};

/// False if penalties are so mild that a path may persist through anything.
[[nodiscard]] bool can_lag_bound_refute(std::int64_t mismatch_penalty, std::int64_t indel_penalty);

/// Sets in `seeds[i]` the bit of each base p of [text, text + length) at which a unit of length
/// `first_unit_length + i` may seed a repeat of the minimum score. `seeds[i]` has to have a bit for
/// each p with a base behind the unit. REQUIRES: `can_lag_bound_refute`, last unit length < length.
/// Returns the work done, with one table for each direction and segment. Throws: std::bad_alloc.
BoundWork find_lag_seeds(const char* text, std::uint64_t length, const LagBoundRules& rules,
                         std::vector<CBitSet>& seeds);

}  // namespace quorix
