#pragma once

/// @file
/// What a run that met a fault may have come to.
///
/// A run may fail, but never silently: with status 0 all outputs are those of the undisturbed run,
/// with any other one there is a message, no mark of success after it, and what the outputs hold
/// is the beginning of what they would have held.

#include <map>
#include <string>
#include <vector>

#include "faults/program_run.h"

namespace quorix::testing {

/// The last line of a finished report.
constexpr const char* kSuccessMark = "## Finished successfully. ##\n";

/// What is allowed at one point.
struct Expectation {
  /// The exit statuses, each with a text that has to stand in the messages.
  std::map<int, std::string> statuses = {};
  /// The signals that may end the run.
  std::vector<int> signals = {};
  /// Standard error lost texts, or all of it, so none is looked for there.
  bool has_no_messages = false;
  /// A single write was lost, so the outputs of a failed run may have a hole.
  bool may_have_holes = false;
  /// What fails is the end of the report itself, when the success has been reported already.
  bool is_at_the_end = false;
  /// Status 0 may also mean that the edits of a repeat could not grow: then the last line of
  /// standard output says so, and the report has no mark of success.
  bool may_lack_edits = false;
};

/// What the messages say of a failed write to the file, for the reason of an `errno`.
std::string failed_write_text(const std::string& target, int error);

/// What the messages say of an output that cannot be opened.
std::string failed_open_text(const std::string& target);

/// What the messages say when the memory runs out.
std::string no_memory_text();

/// True if the run says that the edits of a repeat could not grow.
bool lacks_edits(const Outcome& outcome);

/// What is wrong with the outcome, beside that of the undisturbed run; "" if nothing is.
std::string find_fault(const Outcome& outcome, const Outcome& undisturbed,
                       const Expectation& expectation);

}  // namespace quorix::testing
