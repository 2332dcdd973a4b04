// From every base that may seed a repeat, a unit is extended over edits, for every unit length in
// ascending order.
//
// An accepted repeat closes its bases, except its edit sites, to the seeds of every longer unit.
// Only what unit length 1 closed is opened again (if the search begins at length 1): a run of one
// base hides no longer unit. A seed may still extend over a repeat that was found before, to the
// left as far as the sequence goes.

#include "search/modes/imperfect_search.h"

#include "search/modes/sat_container.h"
#include "search/modes/sat_sort.h"

namespace quorix {

namespace {

/// Extends the seed in `spare`. An accepted repeat closes its bases and moves to `accepted`.
void extend_and_keep(const SearchContext& context, CSpareRecord& spare, CAnchorSeq& anchors,
                     std::list<Csat*>& accepted) {
  Csat& repeat = spare.record();
  if (!context.extender.extend_over_edits_and_test(repeat, context.text.before(),
                                                   context.thresholds)) {
    return;
  }
  anchors.close_repeat(repeat);
  context.extender.pack_edits(repeat);
  spare.keep_in(accepted);
}

}  // namespace

void search_imperfect_repeats(const SearchContext& context, std::list<Csat*>& accepted) {
  if (context.units.last == 0) return;
  context.extender.clear_caches();
  CSeedFilter& filter = context.filter_for(SeedUse::kExtendOverEdits);
  CAnchorSeq anchors(context.text.begin, context.text.length());
  std::uint64_t unit_length = context.units.first;
  if (unit_length == 1) {
    scan_for_imperfect_mononucleotides(context, filter, anchors, accepted);
    anchors.open_all();
    unit_length = 2;
  }
  for (; unit_length <= context.units.last; ++unit_length) {
    scan_for_imperfect_repeats(context, filter, unit_length, anchors, accepted);
  }
  sort_by_position(accepted);
}

void scan_for_imperfect_mononucleotides(const SearchContext& context, CSeedFilter& filter,
                                        CAnchorSeq& anchors, std::list<Csat*>& accepted) {
  CSpareRecord spare(sat_alloc);
  context.scan.for_each_base(filter, [&](std::uint64_t p) {
    const char* const base = context.text.begin + p;
    if (anchors.may_seed(base, 1)) {
      spare.seed(base, base + 1);
      extend_and_keep(context, spare, anchors, accepted);
    }
    return p + 1;
  });
}

void scan_for_imperfect_repeats(const SearchContext& context, CSeedFilter& filter,
                                std::uint64_t unit_length, CAnchorSeq& anchors,
                                std::list<Csat*>& accepted) {
  CSpareRecord spare(sat_alloc);
  context.scan.for_each_seed(unit_length, anchors, filter, [&](const char* p) {
    spare.seed(p, p + unit_length);
    extend_and_keep(context, spare, anchors, accepted);
  });
}

}  // namespace quorix
