#pragma once

/// @file
/// Figures that follow from those of a repeat.

#include "tools/report/repeat.h"

namespace quorix::tools {

/// Returns the normalized length in units.
[[nodiscard]] double copies_of(const Repeat& repeat);

/// Returns the perfection in percent; it is not finite for some repeats of unknown bases.
[[nodiscard]] double perfection_of(const Repeat& repeat);

}  // namespace quorix::tools
