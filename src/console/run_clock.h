#pragma once

/// @file
/// The pacing of progress lines: at most one every 59 seconds from inside a search, besides the
/// one that the driver writes when it starts a sequence.

#include <ctime>

namespace quorix {

/// When the analysis started; progress lines show the time since then.
extern std::time_t time_analysis_started;

/// The time after which the next progress line may be written. At first it is the time at which the
/// process was loaded.
extern std::time_t time_next_status_report;

/// Puts the next progress line off to 59 seconds from now.
void update_report_time();

/// True when a progress line is due, that is strictly after `time_next_status_report`; the next
/// one is then put off to 59 seconds from now. False changes nothing.
[[nodiscard]] bool check_report_status();

}  // namespace quorix
