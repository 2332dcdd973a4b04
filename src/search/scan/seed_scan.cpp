#include "search/scan/seed_scan.h"

namespace quorix {

CSeedFilter& CSeedScan::filter_by(const CFilterPlan& plan) {
  if (filter_ == nullptr || !(filter_->plan() == plan)) {
    filter_.reset();
    filter_ = std::make_unique<CSeedFilter>(text_.begin, text_.length(), plan);
  }
  return *filter_;
}

}  // namespace quorix
