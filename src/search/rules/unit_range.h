#pragma once

/// @file
/// The unit lengths of one search.

#include <algorithm>
#include <cstdint>

#include "settings/settings.h"

namespace quorix {

/// The unit lengths from `first` to `last`, both searched, in bp. Empty if `last` is lower.
struct UnitRange {
  /// As set, so it may be 0: no unit has that length, and the scan of it finds nothing.
  std::uint64_t first;
  std::uint64_t last;
};

/// The unit lengths that the settings ask for and that a text of `text_length` bases has room for:
/// at least one base follows the unit.
[[nodiscard]] inline UnitRange unit_range_of(std::uint64_t text_length) {
  return {global_min_unit_length,
          text_length == 0 ? 0 : std::min<std::uint64_t>(global_max_unit_length, text_length - 1)};
}

}  // namespace quorix
