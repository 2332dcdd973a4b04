#pragma once

/// @file
/// What the search of a record says while it is under way.

#include <cstdint>

namespace quorix::tools {

class CSearchWatcher {
 public:
  CSearchWatcher() = default;
  virtual ~CSearchWatcher() = default;
  CSearchWatcher(const CSearchWatcher&) = delete;
  CSearchWatcher& operator=(const CSearchWatcher&) = delete;

  /// The search has come to a part that begins with a line of text, which stays valid.
  virtual void begin_part(const char* line) = 0;

  /// The search is at units of this length. Several threads may call this at once.
  virtual void pass(std::uint64_t unit_length) = 0;
};

}  // namespace quorix::tools
