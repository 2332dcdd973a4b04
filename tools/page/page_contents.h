#pragma once

/// @file
/// What a page shows of a report, collected while the report streams by.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/page/density_windows.h"
#include "tools/page/distributions.h"
#include "tools/page/page_limits.h"
#include "tools/page/row_sample.h"
#include "tools/report/repeat.h"
#include "tools/report/report_settings.h"
#include "tools/summary/summary.h"

namespace quorix::tools {

class CPageContents {
 public:
  /// `filters` says which repeats are taken, in words of the command line; empty for all.
  CPageContents(const ReportSettings& settings, const PageLimits& limits, std::string filters = {});

  /// The repeats that follow belong to this record.
  void begin_sequence(std::string_view identifier, std::int64_t length);

  /// Adds a repeat of the record. REQUIRES: repeats come by their starts.
  void add(const Repeat& repeat);

  /// Ends the record; `is_complete` is false if the report is cut short there.
  void end_sequence(bool is_complete) { summary_.end_record(is_complete); }

  /// Ends the report; `is_complete` is false if it is cut short, in a record or between two.
  void end_report(bool is_complete) { summary_.end_report(is_complete); }

  [[nodiscard]] const ReportSettings& settings() const { return settings_; }
  [[nodiscard]] const std::string& filters() const { return filters_; }
  [[nodiscard]] const CSummary& summary() const { return summary_; }
  [[nodiscard]] const CDistributions& distributions() const { return distributions_; }
  [[nodiscard]] const CDensityWindows& density() const { return density_; }
  [[nodiscard]] const CRowSample& sample() const { return sample_; }

 private:
  ReportSettings settings_;
  std::string filters_;
  CSummary summary_;
  CDistributions distributions_;
  CDensityWindows density_;
  CRowSample sample_;
  std::uint32_t sequence_count_ = 0;
};

}  // namespace quorix::tools
