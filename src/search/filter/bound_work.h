#pragma once

/// @file
/// How much work a bound has done. A bound that does more than it has to returns the same verdicts,
/// so only these counts show it.

#include <cstdint>

namespace quorix {

/// Counts since the object was made.
struct BoundWork {
  std::uint64_t tables = 0;  ///< DP tables begun; one has one direction
  std::uint64_t rows = 0;    ///< rows filled
  std::uint64_t cells = 0;   ///< cells filled; those of all lanes of a vector of seeds are one
};

}  // namespace quorix
