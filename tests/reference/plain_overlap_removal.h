#pragma once

/// @file
/// Dropping repeats that a better one mostly hides.

#include <vector>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// Of two repeats of which one has no whole unit outside their overlap, the lower-scoring one is
/// dropped, the later one when they score the same. Survivors keep their order. Nothing is dropped
/// unless `global_remove_mostly_hidden` is set.
///
/// REQUIRES: `repeats` is sorted by start and end.
std::vector<Repeat> remove_hidden(std::vector<Repeat> repeats);

}  // namespace quorix::reference
