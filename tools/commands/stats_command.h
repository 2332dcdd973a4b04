#pragma once

/// @file
/// `quorix-tools stats`: what reports add up to.

#include <cstdint>
#include <optional>
#include <string>

#include "tools/commands/repeat_filter.h"
#include "tools/commands/report_choice.h"

namespace quorix::tools {

struct StatsOptions {
  std::string format;
  std::string output_name;  ///< empty or "-" for standard output
  ReportChoice reports;
  std::optional<std::int64_t> max_unit_count;  ///< 0 for all; none for the default
  FilterOptions filters;
};

inline constexpr std::int64_t kDefaultUnitCount = 20;

/// Sums up the reports. Throws: InputError, OutputError, UsageError.
void stats(const StatsOptions& options);

}  // namespace quorix::tools
