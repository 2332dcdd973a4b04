// On x86-64 a `long double` has 64 bits of precision, so the product of a single-precision factor
// (24 bits) and a unit length (32 bits) is exact. In double precision it might be rounded to a
// whole number, and the threshold would be one lower.

#include "search/rules/thresholds.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorix {

namespace {

constexpr std::uint64_t kMaxStoredEntries = 1'000'000;

std::int32_t saturated(long double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (value >= static_cast<long double>(Limits::max())) return Limits::max();
  if (value <= static_cast<long double>(Limits::min())) return Limits::min();
  return static_cast<std::int32_t>(value);
}

}  // namespace

std::int32_t ThresholdRule::minimum_for(std::uint64_t unit_length) const {
  const long double linear =
      static_cast<long double>(offset) +
      static_cast<long double>(unit_length) * static_cast<long double>(factor);
  return std::max(constant, saturated(std::ceil(linear)));
}

CThresholdTable::CThresholdTable(const ThresholdRule& rule, std::uint64_t max_unit_length)
    : rule_(rule), stored_(std::min(max_unit_length + 1, kMaxStoredEntries)) {
  for (std::size_t i = 0; i < stored_.size(); ++i) stored_[i] = rule_.minimum_for(i);
}

}  // namespace quorix
