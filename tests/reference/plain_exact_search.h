#pragma once

/// @file
/// Finding every perfect repeat of a record.
///
/// A candidate is tried at every position for every unit length, shorter units first, and extended
/// in both directions. Bases of a kept repeat are closed to the seeds of further candidates.
/// Mononucleotide repeats are found by a pass of their own that closes nothing.

#include <string>
#include <vector>

#include "reference/plain_repeat.h"
#include "reference/plain_thresholds.h"

namespace quorix::reference {

/// The exact repeats that pass the user's thresholds, sorted by start and end.
std::vector<Repeat> exact_search_2(const std::string& bases);

/// The same search with the thresholds that the caller names. With the internal ones a stretch that
/// the user's thresholds refuse is found again, one base further, with its unit in another phase.
std::vector<Repeat> exact_search_2(const std::string& bases, ThresholdSet thresholds);

/// The older variant: one pass over the record with all unit lengths at each position and one
/// next allowed start for each unit length. The user's thresholds; not sorted.
std::vector<Repeat> exact_search(const std::string& bases);

}  // namespace quorix::reference
