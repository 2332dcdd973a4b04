// The right side is extended first, and the left side starts with the score at which the right side
// ended. The order matters: that score decides how far the left side may drop off.
//
// An extension may make thousands of edits, and few extensions become repeats. So all of them
// gather their edits in one block, which is lent to the repeat by a swap and swapped back when the
// repeat is dropped or its edits are packed.
//
// The caches hold for one text, and cached paths for its whole length only: a repeat of another
// text is extended without caches, and one with a limit inside the text without paths.

#include "search/extension/extender.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <functional>

#include "search/extension/exact_extension.h"
#include "search/extension/imperfect_extension.h"
#include "search/filter/single_bound.h"
#include "search/rules/score.h"

namespace quorix {

bool passes(const Csat& sat, const Thresholds& thresholds) {
  return sat.score >= (*thresholds.min_scores)[sat.unit_length()] &&
         sat.normalized_length() >= (*thresholds.min_lengths)[sat.unit_length()];
}

bool CExtender::extend_exactly_and_test(Csat& sat, const Thresholds& thresholds) {
  ++work_.extended_exactly;
  extend_exact_forward(sat, text_.end);
  extend_exact_backward(sat, text_.before());
  sat.remove_Ns_at_ends();
  return passes(sat, thresholds);
}

bool CExtender::extend_over_edits_and_test(Csat& sat, const char* left_limit,
                                           const Thresholds& thresholds) {
  ++work_.extended_over_edits;
  sat.missense.swap(edit_block_);
  sat.missense.truncate(0);
  extend_imperfect_forward(sat, text_.end);
  const auto right_count = static_cast<std::ptrdiff_t>(sat.missense.size());
  extend_imperfect_backward(sat, left_limit);
  sat.remove_Ns_at_ends();
  if (!passes(sat, thresholds)) {
    sat.missense.swap(edit_block_);
    return false;
  }
  // The edits of each side are in order, those on the left from right to left.
  Edit* const left_edits = sat.missense.begin() + right_count;
  std::reverse(left_edits, sat.missense.end());
  std::rotate(sat.missense.begin(), left_edits, sat.missense.end());
  assert(std::is_sorted(sat.missense.begin(), sat.missense.end(), Csat::lessThan_missense()));
  return true;
}

void CExtender::pack_edits(Csat& sat) {
  sat.pack_edits(edit_store_, text_.begin);
  sat.missense.swap(edit_block_);
}

bool CExtender::is_rejected(const Csat& repeat, const Thresholds& thresholds) {
  ++work_.bounded;
  return !may_repeat_reach({text_.begin, text_.end, scoring_rules_of_settings()},
                           {repeat.start, repeat.end, repeat.unit_begin, repeat.unit_end,
                            repeat.unit_pos_right - repeat.unit_begin,
                            repeat.unit_pos_left - repeat.unit_begin, repeat.score},
                           (*thresholds.min_scores)[repeat.unit_length()], work_.repeat_bound);
}

void CExtender::extend_imperfect_forward(Csat& sat, const char* limit) {
  const bool is_own = is_of_own_text(sat);
  quorix::extend_imperfect_forward(
      sat, limit,
      {look_ahead_, is_own ? &extension_cache_.edits() : nullptr,
       is_own && limit == text_.end ? &extension_cache_.paths() : nullptr});
}

void CExtender::extend_imperfect_backward(Csat& sat, const char* limit) {
  const bool is_own = is_of_own_text(sat);
  quorix::extend_imperfect_backward(
      sat, limit,
      {look_ahead_, is_own ? &extension_cache_.edits() : nullptr,
       is_own && limit == text_.before() ? &extension_cache_.paths() : nullptr});
}

void CExtender::clear_caches() {
  extension_cache_.clear();
}

bool CExtender::is_of_own_text(const Csat& sat) const {
  // Unlike `<`, this orders pointers into different texts too.
  const std::less<> is_before;
  return !is_before(sat.start, text_.begin) && !is_before(text_.end, sat.end);
}

}  // namespace quorix
