#pragma once

/// @file
/// A run of the program whose system calls are seen from outside, and one of them meddled with.
///
/// The calls are those of the kernel, so the ones that the C library makes inside are among them.
/// They are counted from the first step of `main` on: what the loader does before is none of the
/// program's. The kernel stops the traced process at the calls that count, and at no others, so a
/// traced run costs little more than another one.

#include <cstddef>
#include <string>
#include <vector>

#include "faults/program_run.h"

namespace quorix::testing {

enum class CallKind { kRead, kWrite, kOpen, kClose, kLock, kEmpty, kStatus, kMemory };

/// A call of a run. `target` is the file as the program's messages name it: the last part of its
/// path, or "standard input", "standard output" and "standard error"; "memory" for memory.
struct Call {
  CallKind kind;
  std::string target;

  friend bool operator==(const Call&, const Call&) = default;
};

constexpr std::size_t kNoCall = static_cast<std::size_t>(-1);

/// What is done to a run.
struct Meddling {
  std::size_t call = kNoCall;  ///< which call, counted from 0 as `TracedRun::calls` is
  int error = 0;               ///< it fails with this `errno`, without being carried out
  std::size_t max_bytes = 0;   ///< or: it reads or writes so many bytes at the most
  bool is_at_end = false;      ///< or: it reads nothing, as at the end of a file
  int signal = 0;              ///< or: this signal comes while it is carried out
  bool is_lasting = false;     ///< the same for all later calls of its kind to its target
  /// Every read gives so many bytes at the most; 0 for as many as there are.
  std::size_t read_piece = 0;
  /// Calls for memory count as well. How many there are may differ from run to run.
  bool sees_memory = false;
};

struct TracedRun {
  Outcome outcome;
  std::vector<Call> calls;
};

/// Throws std::runtime_error where this process may not trace another one, or where the program
/// never came to its first step.
TracedRun run_traced(const CTemporaryFolder& folder, const RunPlan& plan,
                     const Meddling& meddling = {});

}  // namespace quorix::testing
