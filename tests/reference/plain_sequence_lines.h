#pragma once

/// @file
/// The bases of a repeat in a report: plain, or aligned with perfect copies of its unit.

#include <string>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// By `global_print_sat_seq_mode`: nothing, one line with the bases, or the three lines of the
/// alignment (bases, match marks, unit). `global_flanking` bases of either side come before and
/// after, set off by colons, as far as the record has them.
///
/// REQUIRES: the edits are sorted (`sort_edits`).
std::string sequence_lines(const Repeat& repeat, const std::string& bases);

}  // namespace quorix::reference
