#pragma once

/// @file
/// What edits and N's cost. A match scores 1.

#include <algorithm>
#include <cstdint>

namespace quorix {

struct ScoringRules {
  std::int64_t mismatch_penalty;  ///< 2 or more points
  std::int64_t indel_penalty;     ///< 2 or more points, of an inserted or deleted base
  bool is_N_neutral;              ///< an N scores 0; otherwise it is a mismatch like any other

  /// Returns the cost of the cheapest edit, in points.
  [[nodiscard]] std::int64_t min_penalty() const {
    return std::min(mismatch_penalty, indel_penalty);
  }
};

}  // namespace quorix
