// Outputs that take nothing: full devices, closed streams, and readers that go away.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "faults/fault_runs.h"
#include "faults/point_log.h"

namespace quorix::testing {
namespace {

constexpr int kOutputWriteError = 153;

/// In the new process: puts a device in the place of a stream.
void redirect_to_device(int descriptor, const char* device) {
  const int opened = ::open(device, O_RDWR);
  if (opened < 0 || ::dup2(opened, descriptor) < 0) ::_exit(kOutputWriteError + 1);
}

TEST(FullDevice, is_reported_in_the_place_of_each_output) {
  CPointLog log("full devices");
  for (const RunShape& shape : all_run_shapes()) {
    const CFaultFolder folder;
    const Outcome undisturbed = run_program_once(folder, shape.plan());

    RunPlan full_report = shape.plan();
    if (shape.has_report_file) {
      full_report.arguments.back() = "/dev/full";
    } else {
      full_report.prepare = [] { redirect_to_device(STDOUT_FILENO, "/dev/full"); };
    }
    const std::string target = shape.has_report_file ? "/dev/full" : "standard output";
    log.judge(shape.name() + ", report", run_program_once(folder, full_report), undisturbed,
              {.statuses = {{kOutputWriteError, failed_write_text(target, ENOSPC)}}});

    // Not a word of the messages gets out, and nothing else is lost.
    RunPlan full_messages = shape.plan();
    full_messages.prepare = [] { redirect_to_device(STDERR_FILENO, "/dev/full"); };
    log.judge(shape.name() + ", messages", run_program_once(folder, full_messages), undisturbed,
              {.statuses = {{0, ""}}});
  }
  log.expect_no_findings(search_modes().size() * 8);
}

TEST(FullDevice, under_the_masked_copy_is_reported) {
  CPointLog log("full devices");
  for (const std::string& mode : search_modes()) {
    const CFaultFolder folder;
    const RunShape shape{mode, true, true};
    const Outcome undisturbed = run_program_once(folder, shape.plan());
    // The name of an earlier masked copy is taken away before a run, so the link comes after that.
    const std::string link = folder.path_of(kMaskedName);
    RunPlan plan = shape.plan();
    plan.prepare = [&link] {
      if (::symlink("/dev/full", link.c_str()) != 0) ::_exit(kOutputWriteError + 1);
    };
    log.judge(shape.name(), run_program_once(folder, plan), undisturbed,
              {.statuses = {{kOutputWriteError, failed_write_text(kMaskedName, ENOSPC)}}});
    ::unlink(link.c_str());
  }
  log.expect_no_findings(search_modes().size());
}

TEST(ClosedStream, does_no_harm_unless_the_report_goes_there) {
  CPointLog log("closed streams");
  for (const RunShape& shape : all_run_shapes()) {
    const CFaultFolder folder;
    const Outcome undisturbed = run_program_once(folder, shape.plan());
    for (unsigned closed = 1; closed < 8; ++closed) {
      RunPlan plan = shape.plan();
      plan.prepare = [closed] { close_streams(closed); };
      Expectation expectation{.statuses = {{0, ""}}};
      if ((closed & kOutputBit) != 0 && !shape.has_report_file) {
        expectation.statuses = {{kOutputWriteError, failed_write_text("standard output", EBADF)}};
      }
      expectation.has_no_messages = (closed & kMessagesBit) != 0;
      log.judge(shape.name() + ", closed: " + std::to_string(closed),
                run_program_once(folder, plan), undisturbed, expectation);
    }
  }
  log.expect_no_findings(search_modes().size() * 4 * 7);
}

TEST(LibraryText, that_cannot_be_written_is_reported) {
  CPointLog log("usage and version without a place");
  for (const char* const asked : {"--help", "-h", "--version"}) {
    const CFaultFolder folder;
    RunPlan plan{fault_settings.program, {asked}, {}, {}};
    const Outcome undisturbed = run_program_once(folder, plan);
    EXPECT_EQ(undisturbed.status, 0);
    EXPECT_NE(undisturbed.output, "");

    plan.prepare = [] { redirect_to_device(STDOUT_FILENO, "/dev/full"); };
    log.judge(asked, run_program_once(folder, plan), undisturbed,
              {.statuses = {{kOutputWriteError, failed_write_text("standard output", ENOSPC)}}});
    plan.prepare = [] { close_streams(kOutputBit); };
    log.judge(asked, run_program_once(folder, plan), undisturbed,
              {.statuses = {{kOutputWriteError, failed_write_text("standard output", EBADF)}}});
  }
  // What is wrong with a command line goes to standard error.
  const CFaultFolder folder;
  RunPlan malformed{fault_settings.program, {"--bogus"}, {}, {}};
  const Outcome undisturbed = run_program_once(folder, malformed);
  EXPECT_EQ(undisturbed.status, 1);
  malformed.prepare = [] { redirect_to_device(STDOUT_FILENO, "/dev/full"); };
  log.judge("--bogus", run_program_once(folder, malformed), undisturbed,
            {.statuses = {{1, "PARSE ERROR"}}});
  log.expect_no_findings(7);
}

/// A pipe as short as they come, in the place of standard output.
class CShortPipe {
 public:
  CShortPipe() {
    if (::pipe2(ends_, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    length_ = ::fcntl(ends_[1], F_SETPIPE_SZ, 1);
  }
  ~CShortPipe() { close(); }
  CShortPipe(const CShortPipe&) = delete;
  CShortPipe& operator=(const CShortPipe&) = delete;

  /// Bytes that it holds.
  [[nodiscard]] std::size_t length() const { return static_cast<std::size_t>(length_); }

  /// In the new process.
  void become_output() const {
    if (::dup2(ends_[1], STDOUT_FILENO) < 0) ::_exit(kOutputWriteError + 1);
  }

  /// Takes up to `count` bytes, fewer only where the writer has ended, and goes away.
  std::string take_and_leave(std::size_t count) {
    ::close(ends_[1]);
    ends_[1] = -1;
    std::string taken(count, '\0');
    std::size_t length = 0;
    while (length < count) {
      const ssize_t got = ::read(ends_[0], taken.data() + length, count - length);
      if (got <= 0) break;
      length += static_cast<std::size_t>(got);
    }
    taken.resize(length);
    close();
    return taken;
  }

 private:
  void close() {
    for (int& end : ends_) {
      if (end >= 0) ::close(end);
      end = -1;
    }
  }

  int ends_[2] = {-1, -1};
  int length_ = 0;
};

/// Lets the reader of standard output go away after each of some numbers of bytes.
void leave_every_reader(const RunShape& shape, bool is_ignored, CPointLog& log) {
  const CFaultFolder folder;
  const Outcome undisturbed = run_program_once(folder, shape.plan());
  const std::string& report = undisturbed.output;
  const std::size_t step = fault_settings.is_brief ? 211 : 29;
  for (std::size_t count = 0; count < report.size(); count += step) {
    CShortPipe pipe;
    RunPlan plan = shape.plan();
    plan.prepare = [&] {
      if (is_ignored) std::signal(SIGPIPE, SIG_IGN);
      pipe.become_output();
    };
    CProgramRun run(folder, plan);
    const std::string taken = pipe.take_and_leave(count);
    Outcome outcome = run.wait();
    Expectation expectation;
    // Where the pipe held the rest, the run may have ended before its reader left.
    if (count + pipe.length() >= report.size()) {
      expectation.statuses[0] = "";
      expectation.is_at_the_end = true;
      if (outcome.status == 0) outcome.output = report;
    }
    if (is_ignored) {
      expectation.statuses[kOutputWriteError] = failed_write_text("standard output", EPIPE);
    } else {
      expectation.signals = {SIGPIPE};
    }
    const std::string place = shape.mode + ", a reader that takes " + std::to_string(count) +
                              (is_ignored ? " bytes, signal ignored" : " bytes");
    log.judge(place, outcome, undisturbed, expectation);
    EXPECT_EQ(taken, report.substr(0, count)) << place;
  }
}

TEST(LostReader, ends_the_run_by_its_signal_or_is_reported) {
  CPointLog log("readers that go away");
  leave_every_reader({"imperfect", false, false}, false, log);
  leave_every_reader({"imperfect", false, false}, true, log);
  log.expect_no_findings(20);
}

}  // namespace
}  // namespace quorix::testing
