#pragma once

/// @file
/// The score and the length that a repeat must reach, by unit length.
///
/// There are two sets. The user's decide what is reported; the lax internal ones decide which exact
/// repeats serve as seeds when exact repeats are extended. Every value is computed from the
/// settings when it is asked for, so any unit length may be asked.

#include <cstdint>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// Which thresholds a search applies.
enum class ThresholdSet { kUser, kIntern };

/// Least score of a repeat with a unit of `unit_length` bp; saturates at the 32-bit limits.
int min_score(ThresholdSet thresholds, std::int64_t unit_length);

/// Least normalized length, in bp, of a repeat with a unit of `unit_length` bp; saturates likewise.
int min_length(ThresholdSet thresholds, std::int64_t unit_length);

/// True if score and normalized length both reach their thresholds.
bool passes_thresholds(const Repeat& repeat, ThresholdSet thresholds);

}  // namespace quorix::reference
