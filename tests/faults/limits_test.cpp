// Limits of the system in small steps: address space, lengths of files, open files.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>

#include "faults/fault_runs.h"
#include "faults/point_log.h"

namespace quorix::testing {
namespace {

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kStep = 160;  // KiB

/// The plan of a shape under a limit.
RunPlan limited(const RunShape& shape, int resource, std::size_t count) {
  RunPlan plan = shape.plan();
  plan.prepare = [=] { limit_resource(resource, count); };
  return plan;
}

/// True if the program itself has begun to run: the loader tells in its own words, or not at all,
/// that it has too little.
bool has_begun(const Outcome& outcome) {
  return outcome.messages.find("Welcome to Quorix") != std::string::npos ||
         outcome.messages.find(no_memory_text()) != std::string::npos;
}

/// True if the system, the loader or what a library does before `main` has given up.
bool could_not_begin(const Outcome& outcome) {
  constexpr int kLoaderFailure = 127;
  constexpr const char* kNoExceptionText = "terminate called without an active exception\n";
  return outcome.status == kLoaderFailure || outcome.signal == SIGKILL ||
         (outcome.signal == SIGABRT && outcome.messages == kNoExceptionText);
}

// From more than enough down to where the loader itself fails.
TEST(AddressSpace, that_is_too_small_is_reported) {
  CPointLog log("steps of the address space");
  for (const RunShape& shape : three_file_shapes()) {
    const CFaultFolder folder;
    const Outcome undisturbed = run_program_once(folder, shape.plan());
    Expectation expectation{
        .statuses = {{0, ""}, {152, no_memory_text()}, {153, failed_open_text(kMaskedName)}}};
    expectation.statuses[154] = failed_open_text(kReportName);
    expectation.may_lack_edits = true;
    std::size_t succeeded_count = 0;
    std::size_t failed_count = 0;
    // False if the program could not even begin.
    const auto try_size = [&](std::size_t size) {
      const Outcome outcome = run_program_once(folder, limited(shape, RLIMIT_AS, size * kKiB));
      const std::string place = shape.name() + ", " + std::to_string(size) + " KiB";
      if (!has_begun(outcome)) {
        EXPECT_TRUE(could_not_begin(outcome)) << place;
        return false;
      }
      ++(outcome.status == 0 ? succeeded_count : failed_count);
      log.judge(place, outcome, undisturbed, expectation);
      return true;
    };
    std::size_t size = 24'000;
    while (size > kStep && try_size(size)) size -= kStep;
    EXPECT_TRUE(succeeded_count > 0 && failed_count > 0) << shape.name();
    // Where there is next to nothing, each page counts.
    for (const std::size_t end = size + 3 * kStep; size < end; size += 8) try_size(size);
  }
  log.expect_no_findings(200);
}

/// Lets files grow to so many bytes, and where they end there, the write fails.
RunPlan with_files_up_to(const RunShape& shape, std::size_t length) {
  RunPlan plan = shape.plan();
  plan.prepare = [=] {
    std::signal(SIGXFSZ, SIG_IGN);
    limit_resource(RLIMIT_FSIZE, length);
  };
  return plan;
}

TEST(FileLength, that_is_limited_leaves_the_report_up_to_there) {
  CPointLog log("steps of the length of files");
  for (const bool has_report_file : {true, false}) {
    const RunShape shape{"imperfect", has_report_file, false};
    const CFaultFolder folder;
    const Outcome undisturbed = run_program_once(folder, shape.plan());
    const std::string& report = has_report_file ? undisturbed.report : undisturbed.output;
    Expectation expectation{.statuses = {{153, failed_write_text(shape.report_target(), EFBIG)}}};
    for (std::size_t length = has_report_file ? 0 : 5; length < report.size(); length += 23) {
      const Outcome outcome = run_program_once(folder, with_files_up_to(shape, length));
      // The last that is written is the mark.
      expectation.is_at_the_end = length >= report.size() - std::string(kSuccessMark).size();
      const std::string place = shape.name() + ", " + std::to_string(length) + " bytes";
      log.judge(place, outcome, undisturbed, expectation);
      const std::string& left = has_report_file ? outcome.report : outcome.output;
      EXPECT_EQ(left.size(), length) << place;
    }
    EXPECT_EQ(run_program_once(folder, with_files_up_to(shape, report.size() - 1)).status, 153);
    EXPECT_EQ(run_program_once(folder, with_files_up_to(shape, report.size())).status, 0);
  }
  log.expect_no_findings(300);
}

TEST(FileLength, of_a_limit_whose_signal_is_not_ignored_ends_the_run) {
  CPointLog log("signals of the length of files");
  const RunShape shape{"imperfect", true, true};
  const CFaultFolder folder;
  const Outcome undisturbed = run_program_once(folder, shape.plan());
  Expectation expectation;
  expectation.signals = {SIGXFSZ};
  for (std::size_t length = 0; length < undisturbed.report.size(); length += 250) {
    log.judge(std::to_string(length) + " bytes",
              run_program_once(folder, limited(shape, RLIMIT_FSIZE, length)), undisturbed,
              expectation);
  }
  log.expect_no_findings(10);
}

// Three descriptors are the standard streams, and the loader needs a fourth for a moment, as the
// input does for the whole run.
TEST(OpenFiles, that_are_too_many_are_reported) {
  CPointLog log("limits of open files");
  for (const RunShape& shape : three_file_shapes()) {
    const CFaultFolder folder;
    const Outcome undisturbed = run_program_once(folder, shape.plan());
    const auto run_with = [&](std::size_t count, const Expectation& expectation) {
      log.judge(shape.name() + ", " + std::to_string(count) + " open files",
                run_program_once(folder, limited(shape, RLIMIT_NOFILE, count)), undisturbed,
                expectation);
    };
    run_with(4, {.statuses = {{154, failed_open_text(kReportName)}}});
    run_with(5, {.statuses = {{153, failed_open_text(kMaskedName)}}});
    run_with(6, {.statuses = {{0, ""}}});
  }
  log.expect_no_findings(9);
}

}  // namespace
}  // namespace quorix::testing
