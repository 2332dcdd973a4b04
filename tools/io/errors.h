#pragma once

/// @file
/// The failures of quorix-tools. Each has a status of its own; the text says all that a user needs.

#include <stdexcept>

namespace quorix::tools {

/// An input that cannot be opened or read, or that is not what it should be: "FILE:LINE: reason".
struct InputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An input that ends before it is complete. What was read up to there is good.
struct InputCutShort : InputError {
  using InputError::InputError;
};

/// An output that cannot be opened, written or given its name.
struct OutputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Options that do not fit together, or a value that an option does not take.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace quorix::tools
