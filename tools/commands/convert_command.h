#pragma once

/// @file
/// `quorix-tools convert`: reports in other formats.

#include <cstdint>
#include <optional>
#include <string>

#include "tools/commands/repeat_filter.h"
#include "tools/commands/repeat_list.h"
#include "tools/commands/report_choice.h"

namespace quorix::tools {

struct ConvertOptions {
  std::string format;
  std::string output_name;  ///< empty or "-" for standard output
  ReportChoice reports;
  std::optional<std::int64_t> window;  ///< of a bedgraph, in bp
  std::optional<SortKey> sort_key;     ///< none: the order of the reports, in flat memory
  FilterOptions filters;
};

/// Converts the reports. Throws: InputError, OutputError, UsageError.
void convert(const ConvertOptions& options);

}  // namespace quorix::tools
