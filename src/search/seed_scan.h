#pragma once

/// @file
/// The scan that exact and imperfect search share: every base at which a unit may seed a repeat.

#include "search/anchor_seq.h"
#include "search/search_controller.h"

namespace quorix {

/// Calls `visit` with the first base of each unit of `unit_length` that `anchors` lets seed a
/// repeat and that `valid_starting_pattern` accepts, from left to right, and writes progress lines
/// on the way. At least one base follows the unit. `visit` may close bases to the seeds to come.
template <class Visit>
void CSearchController::for_each_seed(std::uint64_t unit_length, const CAnchorSeq& anchors,
                                      const Visit& visit) const {
  if (unit_length >= text_length()) return;
  const char* const last_start = text_end() - unit_length;
  const char* next_N = find_N(text_begin());
  for (const char* p = text_begin(); p < last_start; ++p) {
    report_progress(p, unit_length);
    if (next_N < p) next_N = find_N(p);
    if (next_N < p + unit_length) {  // no unit that reaches the N's is valid
      p = skip_Ns(next_N) - 1;
      continue;
    }
    if (anchors.may_seed(p, unit_length) && valid_starting_pattern(p, p + unit_length, next_N)) {
      visit(p);
    }
  }
}

}  // namespace quorix
