#pragma once

/// @file
/// `quorix-tools merge`: what runs over consecutive ranges of records have written, as one run
/// would have written it.

#include <string>
#include <vector>

namespace quorix::tools {

struct MergeOptions {
  std::vector<std::string> parts;  ///< files
  std::string output_name;         ///< empty or "-" for standard output
  bool is_masked = false;          ///< the parts are masked copies, in their order
  std::string report_name;         ///< of the report that masked copies are compared with, or empty
};

/// Merges the parts. Throws: InputError, OutputError, UsageError.
void merge(const MergeOptions& options);

}  // namespace quorix::tools
