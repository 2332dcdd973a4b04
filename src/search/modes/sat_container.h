#pragma once

/// @file
/// Lists of repeats that return their records to the pool when they are destroyed.

#include <list>

#include "report/sat_pool.h"

namespace quorix {

struct CsatContainer {
  explicit CsatContainer(Csat_garbagecollector* pool_of_records) : pool(pool_of_records) {}
  ~CsatContainer() { pool->take(sat_list, sat_list.begin(), sat_list.end()); }
  CsatContainer(const CsatContainer&) = delete;
  CsatContainer& operator=(const CsatContainer&) = delete;

  /// The repeats, owned.
  std::list<Csat*> sat_list;
  /// Where the records go.
  Csat_garbagecollector* pool;
};

/// The one record that a scan works on. If the repeat of a seed is not accepted, the next seed uses
/// its record; a record that is left when the scan ends goes back to the pool.
class CSpareRecord {
 public:
  explicit CSpareRecord(Csat_garbagecollector& pool) : pool_(pool) {}
  ~CSpareRecord() { pool_.take(held_, held_.begin(), held_.end()); }
  CSpareRecord(const CSpareRecord&) = delete;
  CSpareRecord& operator=(const CSpareRecord&) = delete;

  /// A record of one unit copy [unit_first, unit_last). Throws: std::bad_alloc.
  Csat& seed(const char* unit_first, const char* unit_last) {
    if (held_.empty()) {
      // The node comes first, so that no record is lost; and the pool must not get an empty one.
      std::list<Csat*> node(1);
      node.front() = pool_.acquire(unit_first, unit_last);
      held_.splice(held_.end(), node);
    } else {
      held_.front()->init_from_unit(unit_first, unit_last);
    }
    return *held_.front();
  }

  /// The record of the last seed. REQUIRES: it has not been kept.
  [[nodiscard]] Csat& record() { return *held_.front(); }

  /// Moves the record to the end of `accepted`; the next seed takes a new one.
  void keep_in(std::list<Csat*>& accepted) { accepted.splice(accepted.end(), held_); }

 private:
  Csat_garbagecollector& pool_;
  std::list<Csat*> held_;  ///< a list of at most one, so that its node moves with the record
};

}  // namespace quorix
