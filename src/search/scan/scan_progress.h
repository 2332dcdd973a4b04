#pragma once

/// @file
/// Progress lines of a scan over the bases of a sequence.

#include <cstdint>
#include <string>

#include "console/console_texts.h"
#include "console/run_clock.h"

namespace quorix {

/// What progress lines say of the sequence that is searched.
struct SequenceLabel {
  std::uint64_t number;  ///< in its file, from 1
  const std::string& name;
};

/// A scan looks at the clock at every 256th base. It may pass many bases at a time.
class CScanProgress {
 public:
  /// The progress of the scan for units of `unit_length` bp, from the first base on.
  CScanProgress(const SequenceLabel& sequence, std::uint64_t unit_length)
      : sequence_(sequence), unit_length_(unit_length) {}

  /// The scan is at base `position`, 0-based: writes the progress lines that are due up to there.
  void pass(std::uint64_t position) {
    for (; next_ <= position; next_ += kInterval) {
      if (!check_report_status()) {
        // No time passes within a call, so no later base is due either.
        next_ = (position / kInterval + 1) * kInterval;
        return;
      }
      report_status(sequence_.number, sequence_.name.c_str(), unit_length_, 'r');
    }
  }

  /// The scan goes on at base `position` and does not look at those before it.
  void skip_to(std::uint64_t position) {
    if (next_ < position) next_ = (position + kInterval - 1) / kInterval * kInterval;
  }

 private:
  static constexpr std::uint64_t kInterval = 256;

  const SequenceLabel& sequence_;
  std::uint64_t unit_length_;
  std::uint64_t next_ = 0;
};

}  // namespace quorix
