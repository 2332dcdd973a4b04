#pragma once

/// @file
/// Bases along which an extension comes down to its floor, the drop-off limit, again and again.
///
/// A filter rejects a seed too early where the best path of the seed is just good enough: where
/// each edit is made with the lowest score that allows it, all edits are of one kind, so that the
/// path leaves its diagonal as far as it can, and the gain comes last.

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/random_dna.h"

namespace quorix::testing {

/// Which edits a path makes.
enum class PathEdits { kMismatches, kInsertions, kDeletions, kMixed };

/// What a path pays and how long it may get.
struct PathRules {
  std::int64_t mismatch_penalty;
  std::int64_t indel_penalty;
  PathEdits edits;
  std::size_t max_edits;
  std::size_t max_bases;  ///< no edit is made after so many
};

/// The bases after a copy of a unit, and the best score among them.
struct FloorPath {
  std::string bases;
  std::int64_t best_score;
};

/// Draws the bases that follow one copy of `unit` to the right, for an extension that arrives with
/// `score`. To the left the same serves with the unit and the bases reversed.
/// REQUIRES: `unit` is not empty, score > -unit length.
FloorPath draw_floor_path(RandomEngine& engine, const std::string& unit, std::int64_t score,
                          const PathRules& rules);

/// A unit of `length` bases: random, of two letters, or nearly an array of a shorter unit.
std::string draw_unit(RandomEngine& engine, std::size_t length);

}  // namespace quorix::testing
