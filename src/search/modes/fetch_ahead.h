#pragma once

/// @file
/// Records of repeats are used again in any order, so a list of them leads all over the memory. Who
/// goes through such a list need not wait for each record: it can be asked for some time before.

#include <cstddef>
#include <iterator>
#include <list>

#include "report/csat.h"

namespace quorix {

/// Goes some repeats ahead of a loop over a list, and has their records fetched.
class CFetchAhead {
 public:
  /// The loop is at the first of `repeats`.
  explicit CFetchAhead(const std::list<Csat*>& repeats)
      : end_(repeats.end()), next_(repeats.begin()) {
    for (std::size_t i = 0; i < kDistance; ++i) step();
  }

  /// The loop goes on to the next repeat. It may remove those behind it from the list.
  void step() {
    if (next_ == end_) return;
    const Csat* const record = *next_++;
    // The two lines of the cache that hold what is asked first.
    __builtin_prefetch(&record->start);
    __builtin_prefetch(&record->n_count);
  }

 private:
  static constexpr std::size_t kDistance = 8;

  std::list<Csat*>::const_iterator end_;
  std::list<Csat*>::const_iterator next_;
};

}  // namespace quorix
