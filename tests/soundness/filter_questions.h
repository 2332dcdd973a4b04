#pragma once

/// @file
/// The attack: each filter is asked whether a seed may reach the very score that it reaches.
///
/// A filter that answers "rejected" loses a repeat. The same question is put to each filter by
/// itself, whatever unit lengths the search uses it for, and to the filter of the search as a
/// whole.

#include <array>
#include <cstdint>
#include <string>

#include "soundness/attack_case.h"
#include "support/random_dna.h"

namespace quorix::testing {

/// The filters that are attacked. The first three are the filter of a search, by its use.
enum class AttackedFilter {
  kSearchOverEdits,
  kSearchOfExactRepeats,
  kSearchOfExactRepeatsToExtend,
  kChains,
  kLags,
  kBlocks,
  kGroups,
  kBatches,
  kSingleSeeds,
  kExactRepeats  ///< the bound of single seeds, asked for a repeat that was extended exactly
};
inline constexpr std::size_t kAttackedFilters = 10;

const char* name_of(AttackedFilter filter);

/// What a filter was asked.
struct QuestionTally {
  std::uint64_t tight = 0;     ///< questions with a threshold equal to the score reached
  std::uint64_t rejected = 0;  ///< seeds that miss a threshold, and were rejected
};
using QuestionTallies = std::array<QuestionTally, kAttackedFilters>;

/// Asks all filters for all seeds of `unit_length` in the case's stretch, and adds to the tallies.
/// Returns nothing, or what is wrong, with the record and options that show it.
std::string ask_all_filters(const AttackCase& attack, std::uint64_t unit_length,
                            RandomEngine& engine, QuestionTallies& tallies);

}  // namespace quorix::testing
