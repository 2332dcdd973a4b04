// Signals at random moments, and a run that stands still while its input comes.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <thread>

#include "faults/fault_runs.h"
#include "faults/point_log.h"
#include "support/random_dna.h"
#include "support/record_runs.h"

namespace quorix::testing {
namespace {

using Microseconds = std::chrono::microseconds;

/// A folder whose input takes a run long enough for a signal to hit it anywhere.
class CSignalled : public ::testing::Test {
 protected:
  CSignalled() : engine_(fault_settings.seed) {
    std::printf("seed %llu\n", static_cast<unsigned long long>(fault_settings.seed));
    std::vector<NamedBases> records;
    for (std::size_t i = 0; i < kRecordCount; ++i) {
      records.push_back({"record " + std::to_string(i), draw_record(engine_, 400, 6)});
    }
    static_cast<void>(folder_.file_of(kInputName, fasta_text(records)));
    undisturbed_ = run_program_once(folder_, shape_.plan());
    const auto start = std::chrono::steady_clock::now();
    run_program_once(folder_, shape_.plan());
    duration_ = std::chrono::duration_cast<Microseconds>(std::chrono::steady_clock::now() - start);
  }

  /// Waits for a moment of a run that takes as long as the undisturbed one.
  Microseconds wait_for_random_moment() {
    const Microseconds moment(
        draw_between(engine_, 0, static_cast<std::size_t>(duration_.count())));
    std::this_thread::sleep_for(moment);
    return moment;
  }

  static constexpr std::size_t kRecordCount = 40;
  RandomEngine engine_;
  CFaultFolder folder_;
  RunShape shape_{"imperfect", true, true};
  Outcome undisturbed_;
  Microseconds duration_{};
};

using Signalled = CSignalled;

/// A run that a signal ends leaves the beginning of its outputs, and the mark of success only
/// after all of the report. One that has ended before has done all its work.
TEST_F(Signalled, run_that_is_ended_leaves_the_beginning_of_its_outputs) {
  CPointLog log("signals that end a run");
  const int run_count = fault_settings.is_brief ? 15 : 60;
  std::size_t ended_count = 0;
  for (const int signal : {SIGINT, SIGTERM, SIGKILL}) {
    for (int i = 0; i < run_count; ++i) {
      CProgramRun run(folder_, shape_.plan());
      run.wait_until_started();
      const Microseconds moment = wait_for_random_moment();
      ::kill(run.process(), signal);
      const Outcome outcome = run.wait();
      if (outcome.signal == signal) ++ended_count;
      Expectation expectation{.statuses = {{0, ""}}};
      expectation.signals = {signal};
      expectation.is_at_the_end = true;
      log.judge(
          "signal " + std::to_string(signal) + " at " + std::to_string(moment.count()) + " us",
          outcome, undisturbed_, expectation);
    }
  }
  // Moments that come after the end are rare.
  EXPECT_GE(ended_count, static_cast<std::size_t>(3 * run_count) / 10);
  log.expect_no_findings(static_cast<std::size_t>(3 * run_count));
}

/// Stops a run, unless it has ended before. Returns true if it was stopped.
bool stop_unless_ended(pid_t process) {
  siginfo_t change{};
  ::kill(process, SIGSTOP);
  const auto id = static_cast<id_t>(process);
  // The end is left to whoever waits for it.
  if (::waitid(P_PID, id, &change, WSTOPPED | WEXITED | WNOWAIT) != 0) return false;
  if (change.si_code != CLD_STOPPED) return false;
  return ::waitid(P_PID, id, &change, WSTOPPED) == 0;
}

TEST_F(Signalled, run_that_is_stopped_goes_on_as_if_nothing_had_been) {
  CPointLog log("signals that stop a run for a while");
  const int run_count = fault_settings.is_brief ? 15 : 100;
  int stopped_count = 0;
  for (int i = 0; i < run_count; ++i) {
    CProgramRun run(folder_, shape_.plan());
    run.wait_until_started();
    for (int stop = 0; stop < 3; ++stop) {
      wait_for_random_moment();
      if (stop_unless_ended(run.process())) ++stopped_count;
      wait_for_random_moment();
      ::kill(run.process(), SIGCONT);
    }
    log.judge("run " + std::to_string(i), run.wait(), undisturbed_, {.statuses = {{0, ""}}});
  }
  EXPECT_GE(stopped_count, run_count / 2);
  log.expect_no_findings(15);
}

/// In each state that the process comes to, from outside: stopped, and going on.
void stop_and_continue(pid_t process) {
  siginfo_t change{};
  ::kill(process, SIGSTOP);
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(process), &change, WSTOPPED), 0);
  ::kill(process, SIGCONT);
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(process), &change, WCONTINUED), 0);
}

// The input comes through a pipe, piece by piece, and at each piece the run is stopped while it
// waits for more.
TEST(StoppedReader, goes_on_reading) {
  const CFaultFolder folder;
  CPointLog log("stops while the input comes");
  const std::string& input = CFaultFolder::input();
  RunPlan plan{fault_settings.program, {"/dev/stdin", kReportName}, {}, {}};
  const auto run_in_pieces = [&](std::size_t piece, bool is_stopped) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    plan.prepare = [&ends] {
      if (::dup2(ends[0], STDIN_FILENO) < 0) ::_exit(125);
    };
    CProgramRun run(folder, plan);
    ::close(ends[0]);
    run.wait_until_started();
    for (std::size_t start = 0; start < input.size(); start += piece) {
      const std::string bytes = input.substr(start, piece);
      EXPECT_EQ(::write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
      if (is_stopped) stop_and_continue(run.process());
    }
    ::close(ends[1]);
    return run.wait();
  };
  const Outcome undisturbed = run_in_pieces(input.size(), false);
  ASSERT_EQ(undisturbed.status, 0);
  for (std::size_t piece = 1; piece <= 25; ++piece) {
    log.judge("pieces of " + std::to_string(piece), run_in_pieces(piece, true), undisturbed,
              {.statuses = {{0, ""}}});
  }
  log.expect_no_findings(25);
}

}  // namespace
}  // namespace quorix::testing
