#pragma once

/// @file
/// A line on the terminal that says how far a long command has come.

#include <chrono>
#include <cstdint>
#include <string>

namespace quorix::tools {

/// Silent unless standard error is a terminal. A line appears after a second, is renewed every
/// second, and is gone at the end.
class CProgress {
 public:
  CProgress();
  CProgress(const CProgress&) = delete;
  CProgress& operator=(const CProgress&) = delete;
  ~CProgress();

  /// Notes a repeat of the report `name`, of which so many bytes are read. Cheap.
  void note(const std::string& name, std::uint64_t byte_count) {
    if (is_shown_ && ++call_count_ % kCallsBetweenLooks == 0) look_at_clock(name, byte_count);
  }

  /// Removes the line, so that a message has one of its own.
  void clear();

 private:
  static constexpr std::uint64_t kCallsBetweenLooks = 1024;

  void look_at_clock(const std::string& name, std::uint64_t byte_count);

  bool is_shown_;
  bool has_line_ = false;
  std::uint64_t call_count_ = 0;
  std::chrono::steady_clock::time_point last_;
};

}  // namespace quorix::tools
