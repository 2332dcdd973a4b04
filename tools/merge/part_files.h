#pragma once

/// @file
/// The files of parts that are put together.

#include <string>
#include <vector>

namespace quorix::tools {

/// Throws: InputError if one is no regular file, or if two names lead to one file. A part may be
/// read twice, which no pipe bears.
void check_part_files(const std::vector<std::string>& names);

}  // namespace quorix::tools
