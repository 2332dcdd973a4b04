#pragma once

/// @file
/// `quorix-tools html`: a report as a page for a browser.

#include <stdexcept>
#include <string>

#include "tools/commands/repeat_filter.h"
#include "tools/commands/report_choice.h"
#include "tools/page/page_limits.h"

namespace quorix::tools {

struct HtmlOptions {
  std::string output_name;  ///< empty or "-" for standard output
  ReportChoice reports;     ///< one
  FilterOptions filters;
  PageLimits limits;
};

/// The program was built without the page.
struct PageMissing : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Writes the page, and says on standard error if it does not list everything. Throws: InputError,
/// OutputError, UsageError, PageMissing.
void write_html(const HtmlOptions& options);

}  // namespace quorix::tools
