// Mode "extendExact": exact repeats, found with lax thresholds, are seeds that grow over edits.
//
// Each seed grows on its own, and to the left as far as the sequence goes, so several may grow into
// the same repeat; the overlap removal sorts that out.

#include <iterator>

#include "console/console_texts.h"
#include "search/modes/fetch_ahead.h"
#include "search/modes/sat_sort.h"
#include "search/search_controller.h"

namespace quorix {

void CSearchController::search_exact_and_extend_to_imperfect_repeats() {
  general_PrintMessage(stderr, "  Searching for exact repeats.\n");
  std::fflush(stderr);
  use_intern_thresholds();
  search_exact(SeedUse::kExtendExactlyFirst);
  use_user_thresholds();

  general_PrintMessage(stderr, "  Extend exact to imperfect repeats.\n");
  std::fflush(stderr);
  forget_growth();
  std::list<Csat*>& seeds = exact_sat_list.sat_list;
  std::list<Csat*>& accepted = imperfect_sat_list.sat_list;
  CFetchAhead ahead(seeds);
  while (!seeds.empty()) {
    ahead.step();
    const auto seed = seeds.begin();
    if (may_extend_over_edits(**seed) && grow_and_test(**seed, before_text())) {
      pack_edits(**seed);
      accepted.splice(accepted.end(), seeds, seed);
    } else {
      sat_alloc.take(seeds, seed, std::next(seed));
    }
  }
  sort_by_position(accepted);
}

}  // namespace quorix
