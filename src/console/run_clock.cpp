// Both times are process-wide words of one thread. The first line is due one second after the
// process was loaded, at the earliest.

#include "console/run_clock.h"

#include "console/clock.h"

namespace quorix {

namespace {

constexpr std::time_t kSecondsBetweenReports = 59;

}  // namespace

std::time_t time_analysis_started = 0;
std::time_t time_next_status_report = current_time();

void update_report_time() {
  time_next_status_report = current_time() + kSecondsBetweenReports;
}

bool check_report_status() {
  const std::time_t now = current_time();
  if (now <= time_next_status_report) return false;
  time_next_status_report = now + kSecondsBetweenReports;
  return true;
}

}  // namespace quorix
