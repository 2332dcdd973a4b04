#pragma once

/// @file
/// From the arguments of the process to the settings of the run.

namespace quorix {

/// The highest number of threads that may be asked for.
inline constexpr int kMaxThreads = 1024;

/// Thrown after the command-line library has written its own text: the process is to end.
struct CommandLineEnd {
  int status;  ///< 0 after help and version, 1 after the message about a malformed command line
};

/// Sets every setting to its default, reads the arguments over them and checks the result.
///
/// One file name is the input, a second one the report; with three or more neither is taken, so
/// that the input cannot be opened. Returns `kSuccess`, or `kInvalidSetting` or `kUnknownMode`
/// after a message on standard error. Throws: CommandLineEnd for help and version, after their
/// text on standard output, whose writes are not checked, and for a malformed command line, after
/// a message on standard error.
///
/// If `thread_count` is not null, there is an option for the number of threads besides, which is
/// stored there, from 1 to `kMaxThreads`; without it the value stays as it was.
///
/// REQUIRES: argc >= 1 and argv[0] is the name that the program was called by.
[[nodiscard]] int read_and_init_parameters(int argc, const char* const* argv,
                                           int* thread_count = nullptr);

}  // namespace quorix
