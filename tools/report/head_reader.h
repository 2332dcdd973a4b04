#pragma once

/// @file
/// The head of a report: its settings and the legend of its columns.

#include "tools/report/report_lines.h"
#include "tools/report/report_settings.h"

namespace quorix::tools {

/// Reads the head, up to its last line. Throws: InputError if a line is missing, misplaced or not
/// as the program prints it; LineFault for the line that was read last.
[[nodiscard]] ReportSettings read_head(CReportLines& lines);

}  // namespace quorix::tools
