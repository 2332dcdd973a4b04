#include "reference/plain_thresholds.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "settings/settings.h"

namespace quorix::reference {
namespace {

/// The larger of `constant` and offset + unit length * factor, the latter rounded up. The factor
/// keeps the value that it has as a 32-bit float: 0.1 is a little more than a tenth.
int maximum_of_constant_and_line(int constant, int offset, float factor, std::int64_t unit_length) {
  const long double line =
      std::ceil(static_cast<long double>(offset) +
                static_cast<long double>(unit_length) * static_cast<long double>(factor));
  if (line >= static_cast<long double>(std::numeric_limits<int>::max())) {
    return std::numeric_limits<int>::max();
  }
  // Written so that a line that is not a number leaves the constant, too.
  if (!(line > static_cast<long double>(std::numeric_limits<int>::min()))) {
    return constant;
  }
  return std::max(constant, static_cast<int>(line));
}

}  // namespace

int min_score(ThresholdSet thresholds, std::int64_t unit_length) {
  if (thresholds == ThresholdSet::kIntern) {
    return saturated_score(std::max<std::int64_t>(unit_length, 4));
  }
  return maximum_of_constant_and_line(global_min_score, global_min_score_a, global_min_score_bx,
                                      unit_length);
}

int min_length(ThresholdSet thresholds, std::int64_t unit_length) {
  if (thresholds == ThresholdSet::kIntern) {
    return 0;
  }
  return maximum_of_constant_and_line(global_min_length, global_min_length_a, global_min_length_bx,
                                      unit_length);
}

bool passes_thresholds(const Repeat& repeat, ThresholdSet thresholds) {
  const std::int64_t length = unit_length(repeat);
  return repeat.score >= min_score(thresholds, length) &&
         normalized_length(repeat) >= min_length(thresholds, length);
}

}  // namespace quorix::reference
