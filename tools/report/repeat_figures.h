#pragma once

/// @file
/// Figures that follow from those of a repeat.

#include <cstdint>
#include <optional>

#include "tools/report/repeat.h"

namespace quorix::tools {

/// Returns the normalized length in units.
[[nodiscard]] double copies_of(const Repeat& repeat);

/// Returns the perfection in percent; it is not finite for some repeats of unknown bases.
[[nodiscard]] double perfection_of(const Repeat& repeat);

/// Returns the perfection in thousandths of a percent, or nothing if it is no number.
[[nodiscard]] std::optional<std::int64_t> perfection_thousandths(const Repeat& repeat);

}  // namespace quorix::tools
