#pragma once

/// @file
/// Finds imperfect repeats: three ways to choose the seeds that are extended through edits.
///
/// An extended seed is kept when it passes the user's thresholds. Two of the ways serve the search
/// modes of the program, the third one (first hit, then on after it) is called by nobody else.

#include <string>
#include <vector>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// Seeds are the exact repeats that pass the internal thresholds, each extended on its own, from
/// the text's start to its end. Sorted by start and end.
std::vector<Repeat> search_exact_and_extend(const std::string& bases);

/// Seeds are all admissible positions for every unit length, shorter units first; kept repeats
/// close their bases, save the edit sites, to seeds of the same and longer units. What repeats of
/// unit length 1 close is opened again for the longer ones. Sorted by start and end.
std::vector<Repeat> complete_imperfect_search(const std::string& bases);

/// At each position the first unit length whose repeat passes wins, and the search goes on after
/// that repeat: hits do not overlap. In the order of finding.
std::vector<Repeat> simple_imperfect_search(const std::string& bases);

}  // namespace quorix::reference
