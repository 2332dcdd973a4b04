#pragma once

/// @file
/// The file of an output before anything in it is touched: open, and locked against other runs.
///
/// Two runs that write one file at the same time would leave a mixture of both, and both would
/// report success. So a run takes the advisory lock of the file and keeps it as long as the file is
/// open. The system drops the lock at the latest when the process ends, and programs that do not
/// ask for it are not affected. Only regular files are locked.

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

/// Opens `filename` for writing and locks it; its content stays. Never waits for a lock, but waits
/// for the reader of a pipe. Interrupted calls are repeated.
[[nodiscard]] ClaimedFile claim_file(const std::string& filename, Missing missing);

/// Truncates an open file to length 0. True also for a pipe or device, which has no length.
[[nodiscard]] bool empty_file(int descriptor);

}  // namespace quorix
