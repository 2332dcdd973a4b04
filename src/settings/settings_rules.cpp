// The checks stop at the first setting that is refused, in a fixed order: scripts know the
// messages.

#include "settings/settings_rules.h"

#include <algorithm>

#include "settings/settings.h"

namespace quorix {

namespace {

constexpr int kMaxEditScore = -2;

/// The threshold of unit length 1, where both the score and the length are smallest.
long double smallest_threshold(int constant, int offset, float factor) {
  return std::max<long double>(constant, static_cast<long double>(offset) + factor);
}

/// A repeat must need at least two matches or two bases, or every base would be one.
bool has_selective_threshold() {
  constexpr long double kMinThreshold = 2.0L;
  return smallest_threshold(global_min_score, global_min_score_a, global_min_score_bx) >=
             kMinThreshold ||
         smallest_threshold(global_min_length, global_min_length_a, global_min_length_bx) >=
             kMinThreshold;
}

}  // namespace

std::string_view correct_settings() {
  if (global_perfection_minimum != 0.0F) {
    return "Sorry, using a perfection minimum is not implemented in this version.\n";
  }
  if (!has_selective_threshold()) {
    return "Sorry, either the minimum score or the minimum length must be larger.\n";
  }
  if (global_mismatch_score > kMaxEditScore) {
    return "Sorry, the mismatch score must be smaller or equal to -2.\n";
  }
  if (global_indel_score > kMaxEditScore) {
    return "Sorry, the indel score must be smaller or equal to -2.\n";
  }
  global_Ns_allowed_in_a_row = std::max(global_Ns_allowed_in_a_row, 0);
  global_flanking = std::max(global_flanking, 0);
  if (global_maximum_recursion_depth <= 0) {
    return "Sorry, the recursion depth must be greater than 0.\n"
           "A value of 0 would corresponds to a perfect search.\n";
  }
  if (global_max_unit_length < global_min_unit_length) {
    return "I think you have made a mistake here: The maximum unit length must be greater\n"
           "or equal to the minimum unit length.\n";
  }
  return {};
}

}  // namespace quorix
