#pragma once

/// @file
/// The settings of a report as a page shows them.

#include <string>
#include <utility>
#include <vector>

#include "tools/report/report_settings.h"

namespace quorix::tools {

/// Returns labels and values in the order of the page. What the report does not tell is left out.
/// Values hold the bytes of file names as they are.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> shown_settings(
    const ReportSettings& settings);

}  // namespace quorix::tools
