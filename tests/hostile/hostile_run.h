#pragma once

/// @file
/// Runs of the real program, with what is true of every run however it ends.

#include <string>
#include <vector>

#include "unit/driver/run_folder.h"

namespace quorix::testing {

/// Seconds that a run of these tests may take, sanitizers and a busy machine included.
inline constexpr unsigned kLongestRun = 300;

/// Runs the program, called "quorix", in the folder, with standard input from /dev/null, and checks
/// that the banner comes first, and the mark of success if and only if the status is 0 and the
/// report went to standard output. A run of more than `kLongestRun` seconds has the status of
/// SIGALRM.
ProcessResult run_hostile(const CRunFolder& folder, const std::vector<std::string>& arguments);

/// What a report has after its head, from the first sequence to the end.
std::string after_head(const std::string& report);

/// The bytes with those that cannot be seen written as escapes, cut after some hundred.
std::string visible(const std::string& bytes);

}  // namespace quorix::testing
