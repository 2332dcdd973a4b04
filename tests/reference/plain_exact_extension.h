#pragma once

/// @file
/// Extends a repeat along bases that follow its unit perfectly.
///
/// A base that equals the expected unit character scores 1. A run of N's that is not too long is
/// walked over with score 0, unless N's are mismatches.

#include <cstdint>
#include <string>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// Extends the repeat to the right, no further than `limit` (one past the last base that may be
/// taken). True if it stopped at a base that differs, false if at `limit` or at too many N's.
bool extend_exact_forward(Repeat& repeat, const std::string& bases, std::int64_t limit);

/// Extends the repeat to the left; `limit` is the position before the first base that may be taken,
/// -1 for all. True and false as above.
bool extend_exact_backward(Repeat& repeat, const std::string& bases, std::int64_t limit);

}  // namespace quorix::reference
