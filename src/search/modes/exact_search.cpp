// Runs of perfect copies.
//
// Unit lengths are searched in ascending order. At every base the unit that begins there is
// extended to both sides; a run that reaches the user's thresholds closes its bases, so that
// neither the same run from its next base nor a multiple of its unit is found again. A base that is
// closed may still begin a unit when the unit reaches out of what is closed
// (`CAnchorSeq::may_seed`). Runs of one base close nothing: longer units across them are repeats in
// their own right.

#include "search/modes/exact_search.h"

#include <cstdint>

#include "search/modes/sat_container.h"
#include "search/modes/sat_sort.h"
#include "search/scan/anchor_seq.h"

namespace quorix {

namespace {

void search_mononucleotides(const SearchContext& context, CSeedFilter& filter,
                            std::list<Csat*>& found) {
  const char* const text = context.text.begin;
  CSpareRecord spare(sat_alloc);
  context.scan.for_each_base(filter, [&](std::uint64_t p) {
    Csat& repeat = spare.seed(text + p, text + p + 1);
    if (!context.extender.extend_exactly_and_test(repeat, context.thresholds)) return p + 1;
    spare.keep_in(found);
    // All other bases of the run would find it again.
    return static_cast<std::uint64_t>(repeat.end - text);
  });
}

void search_unit_length(const SearchContext& context, std::uint64_t unit_length,
                        CAnchorSeq& anchors, CSeedFilter& filter, std::list<Csat*>& found) {
  CSpareRecord spare(sat_alloc);
  context.scan.for_each_seed(unit_length, anchors, filter, [&](const char* p) {
    Csat& repeat = spare.seed(p, p + unit_length);
    if (!context.extender.extend_exactly_and_test(repeat, context.thresholds)) return;
    if (unit_length != 1 && passes(repeat, context.user_thresholds)) {
      anchors.close_repeat(repeat);
    }
    spare.keep_in(found);
  });
}

}  // namespace

void search_exact_repeats(const SearchContext& context, SeedUse use, std::list<Csat*>& found) {
  if (context.units.last == 0) return;
  CSeedFilter& filter = context.filter_for(use);
  CAnchorSeq anchors(context.text.begin, context.text.length());
  std::uint64_t unit_length = context.units.first;
  if (unit_length == 1) {
    search_mononucleotides(context, filter, found);
    unit_length = 2;
  }
  for (; unit_length <= context.units.last; ++unit_length) {
    search_unit_length(context, unit_length, anchors, filter, found);
  }
  sort_by_position(found);
}

}  // namespace quorix
