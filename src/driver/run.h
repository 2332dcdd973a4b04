#pragma once

/// @file
/// A whole run of the program, from the arguments to the exit status.

#include <functional>

#include "driver/record_loop.h"

namespace quorix {

/// How a run goes over the records. What it is made of is the way of `quorix`: one after the other.
struct RunMethod {
  /// Reads, searches and writes all records of `files.input`; the record is one to read into.
  /// Returns `kSuccess`, or the code of a failure after its message. Throws: std::bad_alloc.
  std::function<int(RunFiles& files, CSequence_Mol& record)> process_records =
      quorix::process_records;
  /// Where the option for threads is stored. Null: there is no such option.
  int* thread_count = nullptr;
};

/// Runs the program. Returns its exit code, see console/exit_status.h. Throws: std::bad_alloc.
int run(int argc, const char* const* argv, const RunMethod& method = {});

/// The same for `main`: a caller may have closed standard descriptors, and memory that runs out
/// ends the run with its message and code.
int run_process(int argc, const char* const* argv, const RunMethod& method = {});

}  // namespace quorix
