#pragma once

/// @file
/// The line of figures of a repeat, in the three formats of a report.

#include <string_view>

#include "tools/report/repeat.h"
#include "tools/report/report_settings.h"

namespace quorix::tools {

/// Reads the figures and the unit of a repeat into `repeat`, whose other members it leaves alone.
/// Throws: LineFault if the line is malformed, or if its figures contradict each other, the
/// settings or the length of the sequence.
void read_information(std::string_view line, const ReportSettings& settings,
                      std::int64_t sequence_length, Repeat& repeat);

}  // namespace quorix::tools
