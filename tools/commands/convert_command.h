#pragma once

/// @file
/// `quorix-tools convert`: reports in other formats.

#include <cstdint>
#include <string>
#include <vector>

namespace quorix::tools {

struct ConvertOptions {
  std::string format;
  std::string output_name;  ///< empty or "-" for standard output
  std::vector<std::string> report_names;
  bool allows_incomplete = false;
  bool has_full_names = false;
};

/// Converts the reports. Throws: InputError, OutputError, UsageError.
void convert(const ConvertOptions& options);

}  // namespace quorix::tools
