#include "search/scan/seed_scan.h"

namespace quorix {

CSeedFilter& CSeedScan::filter_for(const SeedDemand& demand) {
  if (filter_ == nullptr || !filter_->is_for(demand.use, demand.thresholds)) {
    filter_.reset();
    filter_ =
        std::make_unique<CSeedFilter>(text_.begin, text_.length(), demand.use, demand.thresholds);
  }
  return *filter_;
}

}  // namespace quorix
