#pragma once

/// @file
/// Extends a repeat through mismatches, inserted and missing bases.
///
/// Exact extension and single edits take turns. Each edit is the one whose look-ahead promises most
/// (mismatch before insertion before deletion when they promise the same). The best state met on
/// the way is remembered and, unless the last one is as good, restored at the end.
///
/// Callers extend forward first, then backward, then give back N's at the ends; edits come in the
/// order in which they were applied, not in that of the sequence.

#include <cstdint>
#include <string>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// Extends the repeat to the right; `limit` is one past the last base that may be read.
void extend_imperfect_forward(Repeat& repeat, const std::string& bases, std::int64_t limit);

/// Extends the repeat to the left; `limit` is the position before the first base that may be taken.
void extend_imperfect_backward(Repeat& repeat, const std::string& bases, std::int64_t limit);

}  // namespace quorix::reference
