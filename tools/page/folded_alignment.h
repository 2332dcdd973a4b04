#pragma once

/// @file
/// The alignment of a repeat as a page holds it: in one line where a report has three.

#include <string>

#include "tools/report/repeat.h"

namespace quorix::tools {

/// Makes `bases` the bases of a repeat with what the lines below them add: '-' for a deletion,
/// small letters for insertions, and x for an N that is a mismatch. Bases without an alignment stay
/// as they are.
void fold_bases(const Repeat& repeat, std::string& bases);

/// Makes `copies` the letters of the unit's line, without its gaps, where the motif does not tell
/// them: where there is less than one copy. Elsewhere it becomes empty.
void fold_unit(const Repeat& repeat, std::string& copies);

}  // namespace quorix::tools
