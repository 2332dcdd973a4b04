#pragma once

/// @file
/// Checks the report and the masked copy of a load run while they are being written.

#include <cstdint>
#include <string>

#include "load/input_plan.h"

namespace quorix::load {

struct CheckedOutput {
  std::uint64_t bases = 0;
  std::uint64_t masked_bases = 0;
  std::uint64_t repeats = 0;
  std::uint64_t most_repeats = 0;  ///< in one record
  std::uint64_t planted = 0;       ///< repeats that had to be there
};

/// Reads both outputs, record by record, the report first. All of the planted repeats have to be
/// reported, to the letter; of the others, which the random bases hold, positions, order and
/// lengths have to agree. Of the masked copy every byte is known then: what the report lists is X,
/// and all else the base of the input. Throws: CWrongText where something is wrong,
/// std::runtime_error if a file cannot be read.
[[nodiscard]] CheckedOutput check_output(const InputPlan& plan, bool is_exact_search,
                                         const std::string& report_name,
                                         const std::string& masked_name);

}  // namespace quorix::load
