#pragma once

/// @file
/// One run of the real program, started and looked at from outside.
///
/// A run happens in a folder of the test, where it finds its input and leaves its outputs. What was
/// there of an earlier run is removed first, so that an outcome holds nothing but its own run's.

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "unit/sequence/temporary_folder.h"

namespace quorix::testing {

// The names of the files in the folder of a run.
constexpr const char* kInputName = "in.fa";
constexpr const char* kReportName = "report";
constexpr const char* kMaskedName = "in.fa.masked";
constexpr const char* kOutputName = "output";  ///< where standard output goes

/// How a run ended and what it has left.
struct Outcome {
  int status = -1;       ///< the exit status, -1 when a signal ended the run
  int signal = 0;        ///< the signal that ended the run, 0 when none did
  std::string output;    ///< standard output, as far as it went to its file
  std::string messages;  ///< standard error
  std::string report;    ///< the file of that name, "" without one
  std::string masked;    ///< the file of that name, "" without one
};

/// How a run is started.
struct RunPlan {
  std::string program;                   ///< its path
  std::vector<std::string> arguments;    ///< after the program's name
  std::vector<std::string> environment;  ///< NAME=VALUE, beside what this process has
  /// Called in the new process when its streams are set and the program is about to start: the
  /// place for limits and closed descriptors.
  std::function<void()> prepare;
};

class CProgramRun {
 public:
  /// Starts the program in `folder`, with standard input from /dev/null and a processor limit that
  /// ends it should it never come back. Throws std::system_error.
  CProgramRun(const CTemporaryFolder& folder, const RunPlan& plan);
  /// Kills a run whose end nobody has waited for.
  ~CProgramRun();
  CProgramRun(const CProgramRun&) = delete;
  CProgramRun& operator=(const CProgramRun&) = delete;

  [[nodiscard]] pid_t process() const { return process_; }

  /// Returns when the program has taken the place of the new process.
  void wait_until_started();

  /// Waits for the end of the run.
  Outcome wait();

  /// The outcome of a run whose end the caller has waited for; `wait_status` is the status it got.
  Outcome finish(int wait_status);

 private:
  [[noreturn]] void become_program(const RunPlan& plan) const;

  std::string folder_;
  pid_t process_ = -1;
  int messages_[2] = {-1, -1};  ///< a pipe, which no limit of file lengths reaches
  int started_[2] = {-1, -1};   ///< a pipe that closes when the program starts
};

/// All of that.
Outcome run_program_once(const CTemporaryFolder& folder, const RunPlan& plan);

/// The bytes of a file, "" when it cannot be read or is something else, such as a device.
std::string file_bytes(const std::string& path);

/// In the new process: at most `count` of the resource, such as RLIMIT_AS. Ends it on failure.
void limit_resource(int resource, std::size_t count);

}  // namespace quorix::testing
