#pragma once

/// @file
/// Extension of a repeat over perfect copies of its unit, and the units that may start a repeat.
///
/// A `limit` bounds what may be read: to the right it is one past the last base, to the left it is
/// the position before the first one.

#include "report/csat.h"

namespace quorix {

/// Extends a repeat over matching bases, +1 a match, and over N's where they are neutral. Returns
/// true if it ends at a base that does not match; false at `limit` or at a run of more N's than
/// allowed, of which it takes none.
bool extend_exact_forward(Csat& sat, const char* limit);
bool extend_exact_backward(Csat& sat, const char* limit);

/// True if the repeat's unit may start a repeat: it has a base, no N, and, from two bases on, two
/// neighbours that differ. Runs of one base are repeats of unit length 1.
[[nodiscard]] bool valid_starting_pattern(const Csat& sat);

/// The same for the unit [pattern_begin, pattern_end). `next_N` is the first N at or after
/// `pattern_begin`, or any position outside the unit if it holds none; it is trusted.
[[nodiscard]] bool valid_starting_pattern(const char* pattern_begin, const char* pattern_end,
                                          const char* next_N);

}  // namespace quorix
