#pragma once

/// @file
/// The only place that reads the wall clock. It is a library of its own, so that a test can link a
/// clock that it sets.

#include <ctime>

namespace quorix {

/// The current wall-clock time in whole seconds.
std::time_t current_time();

}  // namespace quorix
