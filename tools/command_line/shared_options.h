#pragma once

/// @file
/// Options that several commands have.

#include <string>

#include "tools/commands/repeat_filter.h"
#include "tools/commands/report_choice.h"

namespace CLI {
class App;
}

namespace quorix::tools {

/// How the help names a value that is a file; completions are made from that.
inline constexpr const char* kFileType = "FILE";

/// Adds `-o` and `--output`.
void add_output(CLI::App& command, std::string& output_name);

/// Adds the options that leave out repeats.
void add_filters(CLI::App& command, FilterOptions& filters);

/// Adds the reports, of which there must be one or more, and how they are read.
void add_reports(CLI::App& command, ReportChoice& reports);

}  // namespace quorix::tools
