#pragma once

/// @file
/// Mode "imperfect": every seed is extended over edits.

#include <cstdint>
#include <list>

#include "report/csat.h"
#include "search/modes/search_context.h"
#include "search/scan/anchor_seq.h"

namespace quorix {

/// Extends seeds of all unit lengths, in ascending order, over edits. Appends to `accepted` the
/// repeats that pass the thresholds, and sorts it by `lessThan_sat`. Throws: std::bad_alloc.
void search_imperfect_repeats(const SearchContext& context, std::list<Csat*>& accepted);

/// The scan of `search_imperfect_repeats` for unit length 1: appends to `accepted`, unsorted, and
/// closes the bases of each repeat in `anchors`. Throws: std::bad_alloc.
void scan_for_imperfect_mononucleotides(const SearchContext& context, CSeedFilter& filter,
                                        CAnchorSeq& anchors, std::list<Csat*>& accepted);

/// The same for any one unit length, in bp.
void scan_for_imperfect_repeats(const SearchContext& context, CSeedFilter& filter,
                                std::uint64_t unit_length, CAnchorSeq& anchors,
                                std::list<Csat*>& accepted);

}  // namespace quorix
