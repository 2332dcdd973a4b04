// Runs of perfect copies.
//
// Unit lengths are searched in ascending order. At every base the unit that begins there is grown
// to both sides; a run that reaches the user's thresholds closes its bases, so that neither the
// same run from its next base nor a multiple of its unit is told again. A base that is closed may
// still begin a unit when the unit reaches out of what is closed (`CAnchorSeq::may_seed`). Runs of
// one base close nothing: longer units across them are repeats in their own right.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "search/modes/sat_sort.h"
#include "search/scan/anchor_seq.h"
#include "search/scan/seed_scan.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

void CSearchController::exact_search_2() {
  search_exact(SeedUse::kExtendExactly);
}

void CSearchController::search_exact(SeedUse use) {
  if (last_unit_length() == 0) return;
  CAnchorSeq coverage(text_begin(), text_length());
  std::uint64_t unit_length = first_unit_length();
  if (global_min_unit_length == 1) {
    search_exact_mononucleotides(use);
    unit_length = 2;
  }
  for (; unit_length <= last_unit_length(); ++unit_length) {
    search_exact_unit_length(unit_length, coverage, use);
  }
  sort_by_position(exact_sat_list.sat_list);
}

void CSearchController::search_exact_mononucleotides(SeedUse use) {
  CSpareRecord spare(sat_alloc);
  for_each_base(use, [&](std::uint64_t p) {
    const char* const base = text_begin() + p;
    Csat& candidate = spare.seed(base, base + 1);
    if (!grow_exact_and_test(candidate)) return p + 1;
    spare.keep_in(exact_sat_list.sat_list);
    return static_cast<std::uint64_t>(candidate.end - text_begin());
  });
}

void CSearchController::search_exact_unit_length(std::uint64_t unit_length, CAnchorSeq& coverage,
                                                 SeedUse use) {
  CSpareRecord spare(sat_alloc);
  for_each_seed(unit_length, coverage, use, [&](const char* p) {
    Csat& candidate = spare.seed(p, p + unit_length);
    if (!grow_exact_and_test(candidate)) return;
    if (unit_length != 1 && passes_user_thresholds(candidate)) coverage.close_repeat(candidate);
    spare.keep_in(exact_sat_list.sat_list);
  });
}

void CSearchController::exact_search() {
  const std::uint64_t longest_unit = last_unit_length();
  std::vector<const char*> next_starts(longest_unit + 1, text_begin());
  CSpareRecord spare(sat_alloc);
  for (const char* p = text_begin(); p < text_end(); ++p) {
    for (std::uint64_t unit_length = first_unit_length();
         unit_length <= longest_unit && p + unit_length < text_end(); ++unit_length) {
      if (p + unit_length < next_starts[unit_length]) continue;
      Csat& candidate = spare.seed(p, p + unit_length);
      if (!valid_starting_pattern(candidate) || !grow_exact_and_test(candidate)) continue;
      for (std::uint64_t multiple = unit_length; multiple <= longest_unit;
           multiple += unit_length) {
        next_starts[multiple] = std::max(next_starts[multiple], candidate.end + 1);
      }
      spare.keep_in(exact_sat_list.sat_list);
    }
  }
}

}  // namespace quorix
