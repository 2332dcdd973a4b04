#pragma once

/// @file
/// The list of a repeat's edits: "(13,I),(20,M),".

#include <cstdint>
#include <string_view>
#include <vector>

namespace quorix::tools {

/// A difference between a repeat and perfect copies of its unit: 'M', the base does not match; 'I',
/// the base has no counterpart in the unit; 'D', a base is missing just before this one.
struct ReportedEdit {
  std::int64_t position = 0;  ///< within the repeat, from 1
  char kind = 'M';

  friend bool operator==(const ReportedEdit&, const ReportedEdit&) = default;
};

/// Makes `edits` the list in `text`. Throws: LineFault if a piece is malformed, or if the edits do
/// not ascend by position and, at one position, from 'D' over 'I' to 'M'.
void read_edits(std::string_view text, std::vector<ReportedEdit>& edits);

}  // namespace quorix::tools
