#pragma once

/// @file
/// The bound of search/filter/single_bound.h for up to 64 seeds as one.
///
/// Where a long unit lies beside an array of a shorter one, whole stretches of seeds stay alive for
/// many hundred bases, for hundreds of unit lengths, and come to nothing. Neighbouring seeds of one
/// unit length take nearly the same path then: after as many bases and characters, counted from the
/// first seed, all of them compare the same two bases. So one table follows them together: each
/// seed enters it at its own base, and a state has the highest score that a path of any of them can
/// have there. If that is too low, all are rejected at once; otherwise all are undecided.
///
/// What it promises: the table has every path of every seed that is asked about, so if no state
/// reaches the minimum score, none of the seeds can. It relies on three things:
///
/// - Counted from the first seed of the group to enter, character i of the seed that enters k later
///   is character (i - k) modulo the unit length of its unit. The units of both overlap: where i
///   modulo the unit length is k or more, that is the base that the first seed has there as well;
///   otherwise it lies one unit length farther on, since the later seed has not wrapped yet. So as
///   many characters of each copy after the first one as the last seed enters later are compared
///   with both bases, which only raises scores. In units no longer than that a seed could wrap
///   twice between two wraps of another; such groups are undecided.
/// - Only states that follow the entry of a seed are alive. So letters that no seed may read,
///   before its entry or outside the text, raise no score; those outside the text match none.
/// - The extension to the left begins with the best score to the right of all seeds, which is no
///   less than that of each.

#include <cstddef>
#include <cstdint>

#include "search/filter/bound.h"
#include "search/filter/filter_plan.h"

namespace quorix {

/// Asks about all seeds as one, see search/filter/bound.h: returns all of them or none.
/// Throws: std::bad_alloc.
[[nodiscard]] SeedBound group_bound;

}  // namespace quorix
