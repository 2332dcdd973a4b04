#pragma once

/// @file
/// Sorts repeat lists by position.

#include <list>

#include "report/csat.h"

namespace quorix {

/// Sorts `repeats` by `lessThan_sat`; what is equal stays in its order. A list that consists of a
/// few sorted stretches, one after the other, takes few passes. The nodes of the list stay where
/// they are. Throws: std::bad_alloc, with the list as it was.
void sort_by_position(std::list<Csat*>& repeats);

}  // namespace quorix
