#pragma once

/// @file
/// The reports that a command reads.

#include <string>
#include <vector>

namespace quorix::tools {

struct ReportChoice {
  std::vector<std::string> names;  ///< of files, or "-" for standard input
  bool allows_incomplete = false;  ///< a report that is cut short ends there
  bool has_full_names = false;     ///< records are identified by their whole names
};

/// Throws: UsageError if the output, unless that is empty or "-", is the file of a report: reports
/// are read to the end after the output may have been emptied or replaced.
void check_output_name(const std::string& output_name, const ReportChoice& reports);

}  // namespace quorix::tools
