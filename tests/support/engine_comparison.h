#pragma once

/// @file
/// The program beside the plain engine, and the message when they differ.

#include <string>

#include "support/random_options.h"
#include "support/record_runs.h"

namespace quorix::testing {

/// What both make of one record.
struct Comparison {
  RunOutput program;
  RunOutput plain;

  /// Same report, same masked copy.
  [[nodiscard]] bool is_equal() const { return program == plain; }
};

/// Runs both on one record, with the current settings.
Comparison compare_engines(const NamedBases& record);

/// A report of a difference: the smallest record found that still shows it, the command line that
/// repeats it, and both outputs. REQUIRES: the engines differ on `record` with `options`.
std::string describe_difference(const NamedBases& record, const Options& options);

/// Sends standard error to /dev/null: progress lines of a million runs help nobody.
void silence_standard_error();

}  // namespace quorix::testing
