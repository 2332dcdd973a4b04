#pragma once

/// @file
/// The command `search`: a run of quorix on several threads.

namespace quorix::tools {

/// Runs quorix with its arguments, of which the first is the name that it was called by, and with
/// an option for the number of threads. Returns its exit code, see console/exit_status.h: reports,
/// messages and codes are those of quorix.
int search(int argc, const char* const* argv);

}  // namespace quorix::tools
