#pragma once

/// @file
/// What is printed of repeats: the block of a record and the lines of one repeat.
///
/// The printed view is 1-based with both ends inclusive. Formats, units and sequence lines follow
/// `global_print_sat_mode`, `global_report_unit_mode`, `global_print_sat_seq_mode` and
/// `global_flanking`.

#include <string>
#include <vector>

#include "reference/plain_repeat.h"

namespace quorix::reference {

/// All lines of one repeat; empty when its unit is a repetition of a shorter one.
std::string report_repeat(const Repeat& repeat, const std::string& bases);

/// The block of one record: head, repeats in the given order, closing line. The name ends at its
/// first NUL, if it has one.
std::string report_record(const std::string& name, const std::string& bases,
                          const std::vector<Repeat>& repeats);

/// The two head lines of a record's block.
std::string record_head(const std::string& name, const std::string& bases);

}  // namespace quorix::reference
