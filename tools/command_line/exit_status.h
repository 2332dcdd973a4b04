#pragma once

/// @file
/// The statuses that quorix-tools ends with.

namespace quorix::tools {

enum ExitStatus : int {
  kSuccess = 0,
  kInternalError = 1,  ///< a fault of the program, or too little memory
  kUsageError = 2,     ///< options that are wrong
  kInputFailed = 3,    ///< an input that cannot be read, or is not what it should be
  kOutputFailed = 4,   ///< an output that cannot be written
};

}  // namespace quorix::tools
