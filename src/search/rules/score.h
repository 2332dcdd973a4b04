#pragma once

/// @file
/// Arithmetic of scores. A score is a signed 32-bit number; the settings can push a sum past that.

#include <algorithm>
#include <cstdint>
#include <limits>

#include "search/rules/scoring_rules.h"
#include "settings/settings.h"

namespace quorix {

/// `score` cut off at the 32-bit limits.
[[nodiscard]] inline std::int32_t saturated_score(std::int64_t score) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(score, Limits::min(), Limits::max()));
}

/// What a score must stay above after an edit: the unit's own length below zero, or the best score
/// less `global_maximum_scorereduction`, whichever is higher.
[[nodiscard]] inline std::int64_t drop_off_limit(std::int64_t best_score,
                                                 std::int64_t unit_length) {
  return std::max(-unit_length, best_score - std::int64_t{global_maximum_scorereduction});
}

/// True if an extension takes an N with score 0, without comparing it with the unit.
[[nodiscard]] inline bool is_N_neutral() {
  return global_Ns_allowed_in_a_row != 0 && !global_treat_Ns_as_missense;
}

/// Returns the rules of the settings. Settings have scores of edits, which are negative; rules have
/// penalties.
[[nodiscard]] inline ScoringRules scoring_rules_of_settings() {
  return {-std::int64_t{global_mismatch_score}, -std::int64_t{global_indel_score}, is_N_neutral()};
}

}  // namespace quorix
