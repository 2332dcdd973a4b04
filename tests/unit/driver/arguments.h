#pragma once

/// @file
/// Command lines read by a test.

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "driver/command_line.h"
#include "support/captured_process.h"

namespace quorix::testing {

using Arguments = std::vector<std::string>;

/// Returns the words of `line`, which blanks separate.
inline Arguments words_of(const std::string& line) {
  std::istringstream words(line);
  return Arguments(std::istream_iterator<std::string>(words), {});
}

/// Reads these arguments of a program that was called by the name `invocation_name`.
inline int read_arguments(const Arguments& arguments, const char* invocation_name = "quorix") {
  std::vector<const char*> words{invocation_name};
  for (const std::string& argument : arguments) words.push_back(argument.c_str());
  return read_and_init_parameters(static_cast<int>(words.size()), words.data());
}

constexpr int kHasReturned = 77;

/// What `read_arguments` ends the process with, `kHasReturned` where it does not.
inline int status_of_end(const Arguments& arguments) {
  try {
    static_cast<void>(read_arguments(arguments));
  } catch (const CommandLineEnd& end) {
    return end.status;
  }
  return kHasReturned;
}

/// Code and message of a command line that is read, as "0" or "-1 Error: ...".
inline std::string verdict_on(const Arguments& arguments, const char* invocation_name = "quorix") {
  int code = 0;
  const std::string message =
      messages_of([&] { code = read_arguments(arguments, invocation_name); });
  return std::to_string(code) + (message.empty() ? "" : " ") + message;
}

}  // namespace quorix::testing
