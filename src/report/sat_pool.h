#pragma once

/// @file
/// The pool of spare repeat records. The overlap removal drops many repeats of a sequence, and
/// the end of the sequence drops the rest. Records are never freed during a run: they return to the
/// pool with their edit blocks, and the last one released is the first one reused.

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

  /// Returns a record of one copy [unit_first, unit_last): the last spare record, or a new one. The
  /// caller owns it until it puts it into a container or releases it. Throws: std::bad_alloc.
  [[nodiscard]] Csat* acquire(const char* unit_first, const char* unit_last);

  /// Takes a record back, after all other spare ones. Throws: std::bad_alloc.
  void release(Csat* record);

  /// Takes over the elements [first, last) of `records`, in their order, after all other spare
  /// ones.
  void take(std::list<Csat*>& records, std::list<Csat*>::iterator first,
            std::list<Csat*>::iterator last) {
    spare_records_.splice(spare_records_.end(), records, first, last);
  }

  /// Returns the spare records, in the order in which they were released.
  [[nodiscard]] const std::list<Csat*>& spare_records() const { return spare_records_; }

 private:
  std::list<Csat*> spare_records_;
};

/// The one pool of the process.
extern Csat_garbagecollector sat_alloc;

}  // namespace quorix
