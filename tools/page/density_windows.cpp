#include "tools/page/density_windows.h"

#include <algorithm>

namespace quorix::tools {

void CDensityWindows::begin_sequence(std::int64_t length) {
  lengths_.push_back(length);
  while (counts_.size() + windows_of(length) > max_windows_ + lengths_.size() &&
         window_ < *std::max_element(lengths_.begin(), lengths_.end())) {
    widen();
  }
  first_window_ = counts_.size();
  counts_.resize(first_window_ + windows_of(length));
  covered_end_ = 0;
}

void CDensityWindows::add(std::int64_t start, std::int64_t end) {
  std::int64_t begin = std::max(start - 1, covered_end_);
  while (begin < end) {
    const std::int64_t number = begin / window_;
    const std::int64_t stop = std::min(end, (number + 1) * window_);
    counts_[first_window_ + static_cast<std::size_t>(number)] += stop - begin;
    begin = stop;
  }
  covered_end_ = std::max(covered_end_, end);
}

/// Joins windows to the next length of the row 1, 2, 10, 20, 100... The last record has none yet.
void CDensityWindows::widen() {
  std::int64_t leading = window_;
  while (leading >= 10) leading /= 10;
  const std::int64_t factor = leading == 1 ? 2 : 5;
  std::size_t from = 0;
  std::size_t to = 0;
  for (std::size_t i = 0; i + 1 < lengths_.size(); ++i) {
    const std::size_t end = from + windows_of(lengths_[i]);
    while (from < end) {
      const std::size_t stop = std::min(end, from + static_cast<std::size_t>(factor));
      std::int64_t sum = 0;
      while (from < stop) sum += counts_[from++];
      counts_[to++] = sum;
    }
  }
  counts_.resize(to);
  window_ *= factor;
}

}  // namespace quorix::tools
