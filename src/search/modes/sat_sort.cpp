// A merge sort of what is partly in order: each scan leaves a sorted stretch, which extensions to
// the left break into shorter ones. It works on copies of the positions, side by side, since the
// records lie all over the memory.

#include "search/modes/sat_sort.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "search/modes/fetch_ahead.h"

namespace quorix {

namespace {

/// A repeat with a copy of its position.
struct PlacedRepeat {
  const char* start;
  const char* end;
  Csat* repeat;
};

/// The order of `lessThan_sat`.
bool is_before(const PlacedRepeat& left, const PlacedRepeat& right) {
  return left.start != right.start ? left.start < right.start : left.end < right.end;
}

using PlacedRepeats = std::vector<PlacedRepeat>;
using Stretches = std::vector<std::ptrdiff_t>;

/// Where the sorted stretches begin, and the end of the last one.
Stretches sorted_stretches(const PlacedRepeats& repeats) {
  Stretches begins;
  for (auto begin = repeats.begin(); begin != repeats.end();
       begin = std::is_sorted_until(begin, repeats.end(), is_before)) {
    begins.push_back(begin - repeats.begin());
  }
  begins.push_back(std::ssize(repeats));
  return begins;
}

/// Merges every second stretch with the one after it.
void merge_pairs(PlacedRepeats& repeats, PlacedRepeats& merged, Stretches& begins) {
  const auto from = repeats.begin();
  auto to = merged.begin();
  const std::size_t count = begins.size() - 1;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count; i += 2) {
    const std::ptrdiff_t begin = begins[i];
    const std::ptrdiff_t middle = begins[i + 1];
    const std::ptrdiff_t end = begins[std::min(i + 2, count)];
    to = std::merge(from + begin, from + middle, from + middle, from + end, to, is_before);
    begins[kept++] = begin;
  }
  begins[kept] = begins[count];
  begins.resize(kept + 1);
  std::swap(repeats, merged);
}

}  // namespace

void sort_by_position(std::list<Csat*>& repeats) {
  PlacedRepeats placed;
  placed.reserve(repeats.size());
  CFetchAhead ahead(repeats);
  for (Csat* const repeat : repeats) {
    ahead.step();
    placed.push_back({repeat->start, repeat->end, repeat});
  }
  Stretches begins = sorted_stretches(placed);
  if (begins.size() <= 2) return;  // one stretch, or none
  PlacedRepeats merged(placed.size());
  while (begins.size() > 2) merge_pairs(placed, merged, begins);
  std::transform(placed.begin(), placed.end(), repeats.begin(),
                 [](const PlacedRepeat& one) { return one.repeat; });
}

}  // namespace quorix
