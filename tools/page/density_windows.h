#pragma once

/// @file
/// How many bases lie in repeats, window by window along each record. A base in several repeats
/// counts once. All records have windows of one length, which fits the length of them all: 1, 2,
/// 10, 20, 100... bases.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorix::tools {

class CDensityWindows {
 public:
  /// There are up to `max_windows` windows, besides one for each record.
  explicit CDensityWindows(std::size_t max_windows) : max_windows_(max_windows) {}

  /// Goes on to the next record, of `length` bp.
  void begin_sequence(std::int64_t length);

  /// Adds a repeat of the record; positions are 1-based, and both ends belong to the repeat.
  /// REQUIRES: repeats come by their starts.
  void add(std::int64_t start, std::int64_t end);

  /// Returns the length of a window in bp; the last window of a record may be shorter.
  [[nodiscard]] std::int64_t window() const { return window_; }

  /// Returns the number of bases in repeats of each window, one record after the other. A record
  /// without bases has no window.
  [[nodiscard]] const std::vector<std::int64_t>& counts() const { return counts_; }

 private:
  [[nodiscard]] std::size_t windows_of(std::int64_t length) const {
    return static_cast<std::size_t>((length + window_ - 1) / window_);
  }
  void widen();

  std::size_t max_windows_;
  std::int64_t window_ = 1;
  std::vector<std::int64_t> lengths_;  ///< of the records
  std::vector<std::int64_t> counts_;
  std::size_t first_window_ = 0;  ///< of the record
  std::int64_t covered_end_ = 0;  ///< of the repeats so far; bases before it are counted
};

}  // namespace quorix::tools
