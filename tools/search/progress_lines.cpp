// The clock of the progress lines is process-wide, so it is read under the lock.

#include "tools/search/progress_lines.h"

#include <cstdio>

#include "console/console_texts.h"
#include "console/run_clock.h"
#include "settings/settings.h"

namespace quorix::tools {

namespace {

void write_line(const char* line) {
  general_PrintMessage(stderr, line);
  std::fflush(stderr);
}

}  // namespace

void CProgressLines::become_first() {
  const std::lock_guard lock(lock_);
  report_status(number_, name_.c_str(), global_min_unit_length, 'r');
  update_report_time();
  for (const char* const line : waiting_) write_line(line);
  waiting_.clear();
  is_first_ = true;
}

void CProgressLines::begin_part(const char* line) {
  const std::lock_guard lock(lock_);
  if (is_first_) {
    write_line(line);
  } else {
    waiting_.push_back(line);
  }
}

void CProgressLines::pass(std::uint64_t unit_length) {
  if (!is_first_.load(std::memory_order_relaxed)) return;
  const std::unique_lock lock(lock_, std::try_to_lock);
  if (lock.owns_lock() && check_report_status()) {
    report_status(number_, name_.c_str(), unit_length, 'r');
  }
}

}  // namespace quorix::tools
