#pragma once

/// @file
/// The minimum score and length that a repeat must reach, by unit length.

#include <cstdint>
#include <vector>

#include "settings/settings.h"

namespace quorix {

/// A minimum of the form max(constant, ceil(offset + factor * unit length)).
///
/// The sum is formed in extended precision from the single-precision factor as it is, so 0.1 at
/// unit length 10 is a little more than 1 and becomes 2. It saturates at the 32-bit limits.
struct ThresholdRule {
  std::int32_t constant;
  std::int32_t offset;
  float factor;

  /// The minimum for one unit length in bp.
  [[nodiscard]] std::int32_t minimum_for(std::uint64_t unit_length) const;
};

/// The minima of all unit lengths from 0 up. The search asks for one at every seed, so those of
/// ordinary unit lengths are stored; the rest, up to 4294967295, are computed when asked for.
class CThresholdTable {
 public:
  /// Stores the entries up to `max_unit_length`, or up to a fixed number of them.
  /// Throws: std::bad_alloc.
  CThresholdTable(const ThresholdRule& rule, std::uint64_t max_unit_length);

  [[nodiscard]] std::int32_t operator[](std::uint64_t unit_length) const {
    return unit_length < stored_.size() ? stored_[unit_length] : rule_.minimum_for(unit_length);
  }

 private:
  ThresholdRule rule_;
  std::vector<std::int32_t> stored_;
};

/// What a repeat must reach to be accepted, by its unit length. Does not own the tables.
struct Thresholds {
  const CThresholdTable* min_scores;
  const CThresholdTable* min_lengths;  ///< of normalized lengths, in bp
};

}  // namespace quorix
