#pragma once

/// @file
/// The lines that a run writes to standard error for its records, in the order of the records,
/// whichever is searched first.
///
/// Lines belong to the record that is to be reported next; those of later records wait. So without
/// a clock that says otherwise, the lines are those of a search of one record after the other.

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "tools/search/search_watcher.h"

namespace quorix::tools {

/// The lines of one record.
class CProgressLines : public CSearchWatcher {
 public:
  /// Record `number`, from 1. `lock` is of all records of the run.
  CProgressLines(std::mutex& lock, std::uint64_t number, const std::string& name)
      : lock_(lock), number_(number), name_(name) {}

  /// The record is the next one to be reported: writes its first line and those that wait.
  void become_first();

  void begin_part(const char* line) override;
  /// Writes a line if one is due.
  void pass(std::uint64_t unit_length) override;

 private:
  std::mutex& lock_;
  std::uint64_t number_;
  const std::string& name_;
  std::atomic<bool> is_first_ = false;
  std::vector<const char*> waiting_;  ///< under the lock
};

}  // namespace quorix::tools
