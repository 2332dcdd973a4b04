#pragma once

/// @file
/// The command line of quorix-tools.

namespace quorix::tools {

/// Reads the arguments, carries out the command and returns an `ExitStatus`. What fails is said on
/// standard error; nothing is thrown.
int run_command_line(int argc, const char* const* argv);

}  // namespace quorix::tools
