// What is accepted: a candidate grows to both sides, gives back the N's at its ends and is held
// against the thresholds of its unit length.

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "search/filter/single_bound.h"
#include "search/score.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

namespace {

bool passes(const Csat& sat, const CThresholdTable& min_scores,
            const CThresholdTable& min_lengths) {
  const auto unit_length = static_cast<std::uint64_t>(sat.unit_length());
  return sat.score >= min_scores[unit_length] &&
         sat.normalized_length() >= min_lengths[unit_length];
}

}  // namespace

bool CSearchController::passes_active_thresholds(const Csat& sat) {
  return passes(sat, *minScores, *minLengths);
}

bool CSearchController::passes_user_thresholds(const Csat& sat) {
  return passes(sat, *minScores_user, *minLengths_user);
}

bool CSearchController::grow_exact_and_test(Csat& sat) {
  ++work_.grown_exactly;
  extend_exact_forward(sat, text_end());
  extend_exact_backward(sat, before_text());
  sat.remove_Ns_at_ends();
  return passes_active_thresholds(sat);
}

bool CSearchController::grow_and_test(Csat& sat, const char* left_limit) {
  ++work_.grown;
  sat.missense.swap(edit_block_);
  sat.missense.truncate(0);
  extend_imperfect_forward(sat, text_end());
  const auto right_count = static_cast<std::ptrdiff_t>(sat.missense.size());
  extend_imperfect_backward(sat, left_limit);
  sat.remove_Ns_at_ends();
  if (!passes_active_thresholds(sat)) {
    sat.missense.swap(edit_block_);
    return false;
  }
  // The edits of each side are in order, those on the left the other way round.
  Edit* const left_edits = sat.missense.begin() + right_count;
  std::reverse(left_edits, sat.missense.end());
  std::rotate(sat.missense.begin(), left_edits, sat.missense.end());
  assert(std::is_sorted(sat.missense.begin(), sat.missense.end(), Csat::lessThan_missense()));
  return true;
}

void CSearchController::pack_edits(Csat& sat) {
  sat.pack_edits(edit_store_, text_begin());
  sat.missense.swap(edit_block_);
}

bool CSearchController::may_extend_over_edits(const Csat& sat) {
  ++work_.bounded;
  return may_repeat_reach(
      {text_begin(), text_end(), scoring_rules_of_settings()},
      {sat.start, sat.end, sat.unit_begin, sat.unit_end, sat.unit_pos_right - sat.unit_begin,
       sat.unit_pos_left - sat.unit_begin, sat.score},
      (*minScores)[static_cast<std::uint64_t>(sat.unit_length())], work_.repeat_bound);
}

}  // namespace quorix
