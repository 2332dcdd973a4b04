#pragma once

/// @file
/// Mode "extendExact": exact repeats are extended over edits.

#include <list>

#include "report/csat.h"
#include "search/modes/search_context.h"

namespace quorix {

/// What the mode writes to standard error before its two parts.
inline constexpr const char* kSearchesExactRepeats = "  Searching for exact repeats.\n";
inline constexpr const char* kExtendsExactRepeats = "  Extend exact to imperfect repeats.\n";

/// Finds exact repeats that pass `exact_thresholds`, extends each over edits and appends to
/// `accepted` those that pass the thresholds of `context`; sorts it by `lessThan_sat`. The exact
/// repeats wait in `exact`, which is empty afterwards. Writes two lines to standard error.
/// Throws: std::bad_alloc.
void extend_exact_repeats(const SearchContext& context, const Thresholds& exact_thresholds,
                          std::list<Csat*>& exact, std::list<Csat*>& accepted);

}  // namespace quorix
