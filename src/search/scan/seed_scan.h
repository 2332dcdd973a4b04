#pragma once

/// @file
/// The scan of one unit length that exact and imperfect search share: every base at which a unit
/// may seed a repeat, from left to right. A scan owns the filter of seeds, writes the progress
/// lines and counts the seeds. It does not know what becomes of them.

#include <algorithm>
#include <cstdint>
#include <memory>

#include "search/extension/exact_extension.h"
#include "search/extension/searched_text.h"
#include "search/filter/filter_plan.h"
#include "search/filter/seed_filter.h"
#include "search/scan/anchor_seq.h"
#include "search/scan/scan_progress.h"

namespace quorix {

/// The scans of one text. It owns the last filter, which serves again as long as the plan stays the
/// same.
class CSeedScan {
 public:
  /// Scans `text`; `sequence` is for the progress lines. Both must stay where they are.
  CSeedScan(const SearchedText& text, const SequenceLabel& sequence)
      : text_(text), sequence_(sequence) {}

  /// Calls `visit` with the first base of each unit of `unit_length` bp that `filter` leaves
  /// undecided, that `anchors` let seed a repeat and that `valid_starting_pattern` accepts.
  /// At least one base follows the unit. `visit` may close bases to the seeds to come. Units of no
  /// base, or of the text's length or more, seed nothing. Throws: std::bad_alloc.
  template <class Visit>
  void for_each_seed(std::uint64_t unit_length, const CAnchorSeq& anchors, CSeedFilter& filter,
                     const Visit& visit);

  /// Calls `visit` with the 0-based offset of each base that may seed a run of itself, as far as
  /// the sieve of `filter` can say, and goes on at the offset that `visit` returns. Throws:
  /// std::bad_alloc.
  template <class Visit>
  void for_each_base(CSeedFilter& filter, const Visit& visit);

  /// The filter of the text by `plan`: the last one if it serves, which else is destroyed. Throws:
  /// std::bad_alloc.
  [[nodiscard]] CSeedFilter& filter_by(const CFilterPlan& plan);

  /// Seeds that the sieves left and whose unit holds no N, since the scan was made.
  [[nodiscard]] std::uint64_t seed_count() const { return seed_count_; }
  /// The last filter. Null before the first one.
  [[nodiscard]] const CSeedFilter* last_filter() const { return filter_.get(); }

 private:
  SearchedText text_;
  SequenceLabel sequence_;
  std::unique_ptr<CSeedFilter> filter_;  ///< null until one is asked for
  std::uint64_t seed_count_ = 0;
};

template <class Visit>
void CSeedScan::for_each_seed(std::uint64_t unit_length, const CAnchorSeq& anchors,
                              CSeedFilter& filter, const Visit& visit) {
  if (unit_length == 0 || unit_length >= text_.length()) return;
  const CBitSet& seeds = filter.seeds(unit_length);
  const CBitSet& all_Ns = filter.bits_of_Ns();
  const auto is_undecided = [&](std::uint64_t p) {
    if (!filter.has_verdict(p)) {
      filter.decide(p, anchors.may_seed_from(text_.begin + p, unit_length));
    }
    return filter.is_undecided(p);
  };
  CScanProgress progress(sequence_, unit_length);
  std::uint64_t count = 0;
  std::uint64_t next_N = all_Ns.find_set(0);
  for (std::uint64_t p = seeds.find_set(0); p < seeds.size(); p = seeds.find_set(p)) {
    if (next_N < p) next_N = all_Ns.find_set(p);
    if (next_N < p + unit_length) {  // no unit that reaches the N's is valid
      p = std::min(all_Ns.find_clear(next_N), seeds.size());
      continue;
    }
    progress.pass(p);
    ++count;
    const char* const base = text_.begin + p;
    if (anchors.may_seed(base, unit_length) &&
        valid_starting_pattern(base, base + unit_length, text_.begin + next_N) &&
        (!filter.has_bounds() || is_undecided(p))) {
      visit(base);
    }
    ++p;
  }
  seed_count_ += count;
  progress.pass(seeds.size() - 1);
}

template <class Visit>
void CSeedScan::for_each_base(CSeedFilter& filter, const Visit& visit) {
  if (text_.length() < 2) return;
  const CBitSet& seeds = filter.seeds(1);
  const CBitSet& all_Ns = filter.bits_of_Ns();
  CScanProgress progress(sequence_, 1);
  std::uint64_t next_N = all_Ns.find_set(0);
  // At or after p; looked for again only once p has passed it.
  std::uint64_t seed = seeds.find_set(0);
  for (std::uint64_t p = 0; p < seeds.size();) {
    if (next_N < p) next_N = all_Ns.find_set(p);
    if (seed < p) seed = seeds.find_set(p);
    if (next_N <= seed && next_N < seeds.size()) {  // the clock is not read at N's
      if (next_N > p) progress.pass(next_N - 1);
      p = all_Ns.find_clear(next_N);
      progress.skip_to(p);
      continue;
    }
    if (seed == seeds.size()) break;
    progress.pass(seed);
    ++seed_count_;
    p = visit(seed);
    progress.skip_to(p);
  }
  progress.pass(seeds.size() - 1);
}

}  // namespace quorix
