#pragma once

/// @file
/// A clock that a test sets. A test program that lists fake_clock.cpp among its sources gets this
/// one instead of the product's.

#include <ctime>

namespace quorix::testing {

/// Makes `current_time` give `seconds` from now on. Before the first call it gives 1000.
void set_current_time(std::time_t seconds);

}  // namespace quorix::testing
