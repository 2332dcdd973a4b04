#pragma once

/// @file
/// The letters that a group of seeds compares in one direction, laid out for its table.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "search/filter/bound.h"
#include "search/rules/scoring_rules.h"

namespace quorix {

/// Letters on both sides of those that states may use, for lanes without one.
inline constexpr std::ptrdiff_t kSpareLetters = 128;

/// The extensions of a group in one direction.
struct GroupTable {
  const std::uint8_t* bases;  ///< in the order in which they are read
  /// The characters with which bases are compared, the last one first, for seeds whose units have
  /// wrapped the more and the less often.
  const std::uint8_t* characters;
  const std::uint8_t* other_characters;
  std::ptrdiff_t letter_count;  ///< bases, and characters
  std::uint64_t entering;       ///< bit k: a seed enters after k bases and characters; bit 0 is set
  ScoringRules scoring;
  std::int64_t start_value;   ///< the score above the floor
  std::int64_t target_value;  ///< what answers the question when it is met
};

/// Lays out bases and characters of the seeds that the question asks about in `letters`. Returns
/// them as a table, with start and target still to be set. It is valid as long as `letters` is not
/// changed. REQUIRES: bit 0 is asked; the bits that are asked span fewer bases than the unit has;
/// all units are in the text. Throws: std::bad_alloc.
[[nodiscard]] GroupTable read_group_letters(const ScoredText& text, const SeedQuestion& question,
                                            bool is_rightward, std::vector<std::uint8_t>& letters);

}  // namespace quorix
