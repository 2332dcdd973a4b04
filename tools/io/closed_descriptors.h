#pragma once

/// @file
/// Standard descriptors that the caller has closed. A file that is opened later would get the
/// number of one of them, and messages would go into it.

namespace quorix::tools {

/// Opens those of 0, 1 and 2 that are closed: 0 and 2 on /dev/null, 1 so that writes to it fail.
void occupy_closed_descriptors();

}  // namespace quorix::tools
