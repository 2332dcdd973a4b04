// Of two repeats that overlap so much that one of them has no whole unit outside the overlap, the
// lower-scoring one is dropped. The list is in order of starts, so for each repeat only those that
// start inside it are looked at.

#include "search/modes/overlap_removal.h"

#include <algorithm>
#include <iterator>
#include <list>

#include "report/csat.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// Returns true if a whole unit of the repeat lies outside the overlap.
bool has_unit_beside(const Csat& sat, std::int64_t overlap_length) {
  return sat.unit_length() + overlap_length <= sat.end - sat.start;
}

}  // namespace

void remove_hidden(CsatContainer& container) {
  if (!global_remove_mostly_hidden) return;
  std::list<Csat*>& repeats = container.sat_list;
  const auto drop = [&](std::list<Csat*>::iterator dropped) {
    const auto next = std::next(dropped);
    container.pool->take(repeats, dropped, next);
    return next;
  };

  auto earlier = repeats.begin();
  while (earlier != repeats.end()) {
    bool is_earlier_dropped = false;
    auto later = std::next(earlier);
    while (later != repeats.end() && (*later)->start < (*earlier)->end) {
      const std::int64_t overlap_length =
          std::min((*earlier)->end, (*later)->end) - (*later)->start;
      if (has_unit_beside(**earlier, overlap_length) && has_unit_beside(**later, overlap_length)) {
        ++later;
      } else if ((*earlier)->score < (*later)->score) {
        // The repeats after the later one are compared with that one in the next round.
        is_earlier_dropped = true;
        break;
      } else {
        later = drop(later);
      }
    }
    earlier = is_earlier_dropped ? drop(earlier) : std::next(earlier);
  }
}

}  // namespace quorix
