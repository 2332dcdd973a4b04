#pragma once

/// @file
/// The file of an output before anything in it is touched: open, and locked against other runs.
///
/// Two runs at once that write one file would leave a mixture of both, and both would end well. So
/// a run takes the advisory lock of the file and keeps it as long as the file is open. The lock is
/// the system's, which drops it at the latest when the process ends, and it asks nothing of
/// programs that do not look for it. Only regular files are locked.

#include <string>

namespace quorix {

enum class Claim {
  kNone,     ///< not tried yet
  kHeld,     ///< the file is open, and locked where its file system has locks
  kMissing,  ///< there is no such file, and none was to be made
  kInUse,    ///< another process has locked it
  kFailed,   ///< it cannot be opened for writing
};

/// What to do about a file that does not exist.
enum class Missing { kLeave, kCreate };

struct ClaimedFile {
  Claim claim = Claim::kNone;
  int descriptor = -1;  ///< the caller's to close with `kHeld`, else -1
};

/// Opens `filename` for writing and locks it; what it holds stays. Never waits for a lock, but for
/// the reader of a pipe. Interrupted calls are tried again.
[[nodiscard]] ClaimedFile claim_file(const std::string& filename, Missing missing);

/// Takes all content out of an open file. True also where there is none to take, as in a pipe.
[[nodiscard]] bool empty_file(int descriptor);

}  // namespace quorix
