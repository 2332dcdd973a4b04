#pragma once

/// @file
/// Settings from the bytes of a fuzz input.

#include <cstddef>

#include "fuzz/fuzz_input.h"

namespace quorix::fuzz {

/// Sets every setting that a search obeys from the input and the others to their defaults, and
/// forgets the thresholds of the settings before. Returns the bases that the plain engine, which
/// tries all paths, can search with them in little time; 0 if no search may start with them.
[[nodiscard]] std::size_t take_search_settings(CFuzzInput& input);

/// Sets every setting that the report of a repeat obeys from the input.
void take_report_settings(CFuzzInput& input);

}  // namespace quorix::fuzz
