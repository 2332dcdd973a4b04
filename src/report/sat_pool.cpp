// Records move between lists together with their list nodes. So a container that returns its
// records allocates nothing and cannot fail, not even in its destructor; only `release` needs a new
// node.

#include "report/sat_pool.h"

namespace quorix {

Csat_garbagecollector sat_alloc;

Csat_garbagecollector::~Csat_garbagecollector() {
  for (Csat* const record : spare_records_) delete record;
}

Csat* Csat_garbagecollector::acquire(const char* unit_first, const char* unit_last) {
  Csat* record = nullptr;
  if (spare_records_.empty()) {
    record = new Csat;
  } else {
    record = spare_records_.back();
    spare_records_.pop_back();
    // The next one is needed soon, and has probably left the caches of the processor.
    if (!spare_records_.empty()) __builtin_prefetch(spare_records_.back(), 1);
  }
  record->init_from_unit(unit_first, unit_last);
  return record;
}

void Csat_garbagecollector::release(Csat* record) {
  spare_records_.push_back(record);
}

}  // namespace quorix
