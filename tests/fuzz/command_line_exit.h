#pragma once

/// @file
/// How the command-line library would have ended the process.

namespace quorix::fuzz {

struct CommandLineExit {
  int status;
};

}  // namespace quorix::fuzz
