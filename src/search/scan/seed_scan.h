#pragma once

/// @file
/// The scan that exact and imperfect search share: every base at which a unit may seed a repeat.

#include <algorithm>
#include <cstdint>

#include "search/filter/seed_filter.h"
#include "search/scan/anchor_seq.h"
#include "search/scan/scan_progress.h"
#include "search/search_controller.h"

namespace quorix {

/// Calls `visit` with the first base of each unit of `unit_length` that the filter for `use` and
/// `anchors` let seed a repeat and that `valid_starting_pattern` accepts, from left to right, and
/// writes progress lines on the way. At least one base follows the unit. `visit` may close bases to
/// the seeds to come. Units of no base, or of as many as the text has, seed nothing.
template <class Visit>
void CSearchController::for_each_seed(std::uint64_t unit_length, const CAnchorSeq& anchors,
                                      SeedUse use, const Visit& visit) {
  if (unit_length == 0 || unit_length >= text_length()) return;
  CSeedFilter& filter = seed_filter(use);
  const CBitSet& seeds = filter.seeds(unit_length);
  const CBitSet& all_Ns = filter.bits_of_Ns();
  const auto is_undecided = [&](std::uint64_t p) {
    if (!filter.has_verdict(p)) {
      filter.decide(p, anchors.may_seed_from(text_begin() + p, unit_length));
    }
    return filter.is_undecided(p);
  };
  CScanProgress progress(*this, unit_length);
  std::uint64_t seed_count = 0;
  std::uint64_t next_N = all_Ns.find_set(0);
  for (std::uint64_t p = seeds.find_set(0); p < seeds.size(); p = seeds.find_set(p)) {
    if (next_N < p) next_N = all_Ns.find_set(p);
    if (next_N < p + unit_length) {  // no unit that reaches the N's is valid
      p = std::min(all_Ns.find_clear(next_N), seeds.size());
      continue;
    }
    progress.pass(p);
    ++seed_count;
    const char* const base = text_begin() + p;
    if (anchors.may_seed(base, unit_length) &&
        valid_starting_pattern(base, base + unit_length, text_begin() + next_N) &&
        (use != SeedUse::kExtendOverEdits || is_undecided(p))) {
      visit(base);
    }
    ++p;
  }
  work_.seeds += seed_count;
  progress.pass(seeds.size() - 1);
}

/// Calls `visit` with each base that the filter for `use` lets seed a run of itself, from left to
/// right, as an offset, and goes on at the offset that it gives. Writes progress lines on the way.
template <class Visit>
void CSearchController::for_each_base(SeedUse use, const Visit& visit) {
  if (text_length() < 2) return;
  CSeedFilter& filter = seed_filter(use);
  const CBitSet& seeds = filter.seeds(1);
  const CBitSet& all_Ns = filter.bits_of_Ns();
  CScanProgress progress(*this, 1);
  std::uint64_t next_N = all_Ns.find_set(0);
  std::uint64_t seed = seeds.find_set(0);  // at or behind p; not looked for at every N before it
  for (std::uint64_t p = 0; p < seeds.size();) {
    if (next_N < p) next_N = all_Ns.find_set(p);
    if (seed < p) seed = seeds.find_set(p);
    if (next_N <= seed && next_N < seeds.size()) {  // the clock is not looked at at N's
      if (next_N > p) progress.pass(next_N - 1);
      p = all_Ns.find_clear(next_N);
      progress.skip_to(p);
      continue;
    }
    if (seed == seeds.size()) break;
    progress.pass(seed);
    ++work_.seeds;
    p = visit(seed);
    progress.skip_to(p);
  }
  progress.pass(seeds.size() - 1);
}

}  // namespace quorix
