#include "reference/plain_overlap_removal.h"

#include <algorithm>
#include <cstdint>
#include <list>

#include "settings/settings.h"

namespace quorix::reference {
namespace {

/// True if each of the two has a whole unit's worth of bases outside the overlap.
bool both_show_a_unit(const Repeat& earlier, const Repeat& later) {
  const std::int64_t overlap = std::min(earlier.end, later.end) - later.start;
  const std::int64_t earlier_span = earlier.end - earlier.start;
  const std::int64_t later_span = later.end - later.start;
  return unit_length(earlier) + overlap <= earlier_span &&
         overlap + unit_length(later) <= later_span;
}

}  // namespace

std::vector<Repeat> remove_hidden(std::vector<Repeat> repeats) {
  std::list<Repeat> kept(repeats.begin(), repeats.end());
  auto earlier = kept.begin();
  while (earlier != kept.end()) {
    bool is_earlier_dropped = false;
    auto later = std::next(earlier);
    while (later != kept.end()) {
      if (earlier->end <= later->start) {
        break;
      }
      if (!global_remove_mostly_hidden || both_show_a_unit(*earlier, *later)) {
        ++later;
      } else if (earlier->score < later->score) {
        is_earlier_dropped = true;
        break;
      } else {
        later = kept.erase(later);
      }
    }
    if (is_earlier_dropped) {
      earlier = kept.erase(earlier);
    } else {
      ++earlier;
    }
  }
  return {kept.begin(), kept.end()};
}

}  // namespace quorix::reference
