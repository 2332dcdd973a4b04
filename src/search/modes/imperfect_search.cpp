// Mode "imperfect": a candidate grows over edits from every base that may seed one, for every unit
// length in ascending order.
//
// An accepted repeat closes its bases, except its edit sites, to the seeds of every longer unit.
// Only what unit length 1 closed is opened again: a run of one base hides no longer unit. A seed
// may still grow over a repeat that was found before, to the left as far as the sequence goes.

#include "search/modes/sat_sort.h"
#include "search/scan/anchor_seq.h"
#include "search/scan/seed_scan.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix {

void CSearchController::complete_imperfect_search(std::FILE* /*stream*/) {
  if (last_unit_length() == 0) return;
  forget_growth();
  CAnchorSeq anchors(text_begin(), text_length());
  std::list<Csat*>& accepted = imperfect_sat_list.sat_list;
  std::uint64_t unit_length = first_unit_length();
  if (global_min_unit_length == 1) {
    unit_len_1_complete_imperfect_search(anchors, accepted);
    anchors.open_all();
    unit_length = 2;
  }
  for (; unit_length <= last_unit_length(); ++unit_length) {
    one_unit_len_complete_imperfect_search(unit_length, anchors, accepted);
  }
  sort_by_position(accepted);
}

void CSearchController::unit_len_1_complete_imperfect_search(CAnchorSeq& anchors,
                                                             std::list<Csat*>& accepted) {
  CSpareRecord spare(sat_alloc);
  for_each_base(SeedUse::kExtendOverEdits, [&](std::uint64_t p) {
    const char* const base = text_begin() + p;
    if (!anchors.may_seed(base, 1)) return p + 1;
    Csat& candidate = spare.seed(base, base + 1);
    if (!grow_and_test(candidate, before_text())) return p + 1;
    anchors.close_repeat(candidate);
    pack_edits(candidate);
    spare.keep_in(accepted);
    return p + 1;
  });
}

void CSearchController::one_unit_len_complete_imperfect_search(std::uint64_t unit_length,
                                                               CAnchorSeq& anchors,
                                                               std::list<Csat*>& accepted) {
  CSpareRecord spare(sat_alloc);
  for_each_seed(unit_length, anchors, SeedUse::kExtendOverEdits, [&](const char* p) {
    Csat& candidate = spare.seed(p, p + unit_length);
    if (!grow_and_test(candidate, before_text())) return;
    anchors.close_repeat(candidate);
    pack_edits(candidate);
    spare.keep_in(accepted);
  });
}

void CSearchController::imperfect_search() {}

}  // namespace quorix
