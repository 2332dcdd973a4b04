#pragma once

/// @file
/// Records of repeats are recycled in any order, so a list of them leads all over the memory. A
/// loop over such a list is faster if each record is fetched some steps before it is used.

#include <cstddef>
#include <iterator>
#include <list>

#include "report/csat.h"

namespace quorix {

/// Fetches the records some steps ahead of a loop over a list of repeats.
class CFetchAhead {
 public:
  /// The loop is at the first of `repeats`.
  explicit CFetchAhead(const std::list<Csat*>& repeats)
      : end_(repeats.end()), next_(repeats.begin()) {
    for (std::size_t i = 0; i < kDistance; ++i) step();
  }

  /// The loop goes on to the next repeat. It may remove the earlier ones from the list.
  void step() {
    if (next_ == end_) return;
    const Csat* const record = *next_++;
    // The two cache lines with the fields that are read first.
    __builtin_prefetch(&record->start);
    __builtin_prefetch(&record->n_count);
  }

 private:
  static constexpr std::size_t kDistance = 8;

  std::list<Csat*>::const_iterator end_;
  std::list<Csat*>::const_iterator next_;
};

}  // namespace quorix
