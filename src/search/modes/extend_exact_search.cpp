// Exact repeats, found with lax thresholds, are extended over edits.
//
// Each is extended on its own, and to the left as far as the sequence goes, so several may extend
// into the same repeat; the overlap removal keeps one of them.

#include "search/modes/extend_exact_search.h"

#include <iterator>

#include "console/console_texts.h"
#include "search/modes/exact_search.h"
#include "search/modes/fetch_ahead.h"
#include "search/modes/sat_container.h"
#include "search/modes/sat_sort.h"

namespace quorix {

void extend_exact_repeats(const SearchContext& context, const Thresholds& exact_thresholds,
                          std::list<Csat*>& exact, std::list<Csat*>& accepted) {
  general_PrintMessage(stderr, kSearchesExactRepeats);
  std::fflush(stderr);
  SearchContext exact_search = context;
  exact_search.thresholds = exact_thresholds;
  search_exact_repeats(exact_search, SeedUse::kExtendExactlyFirst, exact);

  general_PrintMessage(stderr, kExtendsExactRepeats);
  std::fflush(stderr);
  CExtender& extender = context.extender;
  extender.clear_caches();
  CFetchAhead ahead(exact);
  while (!exact.empty()) {
    ahead.step();
    const auto first = exact.begin();
    Csat& repeat = **first;
    if (!extender.is_rejected(repeat, context.thresholds) &&
        extender.extend_over_edits_and_test(repeat, context.text.before(), context.thresholds)) {
      extender.pack_edits(repeat);
      // The list node moves along, so the move allocates nothing.
      accepted.splice(accepted.end(), exact, first);
    } else {
      sat_alloc.take(exact, first, std::next(first));
    }
  }
  sort_by_position(accepted);
}

}  // namespace quorix
