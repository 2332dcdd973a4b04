#pragma once

/// @file
/// From the arguments of the process to the settings of the run.

namespace quorix {

/// Gives every setting its default, reads the arguments over them and checks the result.
///
/// One file name is the input, a second one the report; with three or more neither is taken, so
/// that the input cannot be opened. Returns `kSuccess`, or `kInvalidSetting` or `kUnknownMode`
/// after a message on standard error. A malformed command line, help and version end the process
/// inside the command-line library, with status 1, 0 and 0.
///
/// REQUIRES: argc >= 1 and argv[0] is the name that the program was called by.
[[nodiscard]] int read_and_init_parameters(int argc, const char* const* argv);

}  // namespace quorix
