#pragma once

/// @file
/// Mode "exact": runs of perfect copies.

#include <list>

#include "report/csat.h"
#include "search/modes/search_context.h"

namespace quorix {

/// Finds exact repeats: all unit lengths in ascending order, each region once. Appends to `found`
/// those that pass the thresholds, and sorts it by `lessThan_sat`. `use` says what the repeats are
/// for: `kGrowExactly`, or `kGrowExactlyFirst`. Throws: std::bad_alloc.
void search_exact_repeats(const SearchContext& context, SeedUse use, std::list<Csat*>& found);

}  // namespace quorix
