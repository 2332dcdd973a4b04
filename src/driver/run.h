#pragma once

/// @file
/// A run from its arguments to its exit code.

namespace quorix {

/// Greets, reads the arguments, opens the files, writes the heads, searches and reports the
/// sequences of the range one by one, and says goodbye. Returns an `ExitCode`, for a failure after
/// a message on standard error. Throws: std::bad_alloc.
[[nodiscard]] int run(int argc, const char* const* argv);

}  // namespace quorix
