#pragma once

/// @file
/// Removal of repeats that others overlap.

#include "search/modes/sat_container.h"

namespace quorix {

/// Where one of two repeats has no whole unit outside their overlap, drops the one with the lower
/// score; on a tie, the later one. Dropped records go back to the pool. REQUIRES: the list is
/// sorted by `lessThan_sat`. Does nothing when `global_remove_mostly_hidden` is false.
void remove_hidden(CsatContainer& container);

}  // namespace quorix
