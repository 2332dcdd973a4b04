#pragma once

/// @file
/// The pool of spare repeat records. A search makes and drops a record at nearly every base, so
/// records are never freed during a run: they go back to the pool with their edit blocks, and the
/// last one given back is the first one used again.

#include <cstddef>
#include <list>

#include "report/csat.h"

namespace quorix {

class Csat_garbagecollector {
 public:
  Csat_garbagecollector() = default;
  ~Csat_garbagecollector();
  Csat_garbagecollector(const Csat_garbagecollector&) = delete;
  Csat_garbagecollector& operator=(const Csat_garbagecollector&) = delete;

  /// A record of one unit copy [unit_first, unit_last), the last spare one or else a new one. The
  /// caller holds it until it puts it in a container or releases it. Throws: std::bad_alloc.
  [[nodiscard]] Csat* acquire(const char* unit_first, const char* unit_last);

  /// Takes a record back, after all other spare ones. Throws: std::bad_alloc.
  void release(Csat* record);

  /// Takes over the elements of `records` from `first` to `last`, in their order, after all other
  /// spare ones.
  void take(std::list<Csat*>& records, std::list<Csat*>::iterator first,
            std::list<Csat*>::iterator last) {
    spare_records_.splice(spare_records_.end(), records, first, last);
  }

  /// The spare records, in the order in which they came.
  [[nodiscard]] const std::list<Csat*>& spare_records() const { return spare_records_; }

 private:
  std::list<Csat*> spare_records_;
};

/// The one pool of the process.
extern Csat_garbagecollector sat_alloc;

}  // namespace quorix
