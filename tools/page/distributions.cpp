#include "tools/page/distributions.h"

#include <algorithm>
#include <cmath>

#include "tools/report/repeat_figures.h"

namespace quorix::tools {

CDistributions::CDistributions() {
  // 1, 2, 3, 4, 5, 6, 7, 8, 9 and what rounds from 10^(k/10) above: 10, 13, 16, 20, 25, 32, 40...
  // Rounded from constants, since powers differ from one mathematical library to the next.
  constexpr std::array<std::int64_t, 10> kSteps{1000, 1259, 1585, 1995, 2512,
                                                3162, 3981, 5012, 6310, 7943};
  for (std::int64_t length = 1; length < 10; ++length) bounds_.push_back(length);
  for (std::int64_t power = 10; power <= 1'000'000'000'000; power *= 10) {
    for (const std::int64_t step : kSteps) bounds_.push_back((step * power + 500) / 1000);
  }
}

void CDistributions::add(const Repeat& repeat) {
  const auto above = std::upper_bound(bounds_.begin(), bounds_.end(), repeat.length());
  const auto number = static_cast<std::size_t>(above - bounds_.begin()) - 1;
  if (length_counts_.size() <= number) length_counts_.resize(number + 1);
  ++length_counts_[number];

  const double perfection = perfection_of(repeat);
  if (std::isfinite(perfection) && perfection >= 0) {
    ++perfection_counts_[std::min(static_cast<std::size_t>(perfection), kPercents - 1)];
  } else {
    ++without_perfection_;
  }
}

}  // namespace quorix::tools
