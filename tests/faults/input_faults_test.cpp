// Reads and openings that fail, one after another, and files that the system cannot tell apart.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "faults/call_tracer.h"
#include "faults/fault_runs.h"
#include "faults/output_faults.h"
#include "faults/point_log.h"

namespace quorix::testing {
namespace {

constexpr int kInputReadError = 231;
constexpr std::size_t kPiece = 16;

/// Where every read gives sixteen bytes, the read of this number, from 0, fails after so many
/// lines, and tells this reason.
Expectation expect_failed_read(std::size_t number, const std::string& reason) {
  const std::string read = CFaultFolder::input().substr(0, number * kPiece);
  const auto line = 1 + std::count(read.begin(), read.end(), '\n');
  return {.statuses = {
              {kInputReadError,
               "\n\nAn error occurred while reading the input file. It might not be a valid fasta "
               "file.\nFile position: line " +
                   std::to_string(line) + "\n" + reason + "\n"}}};
}

/// What is allowed where the read of this number is meddled with.
Expectation expectation_of_read(std::size_t number, const Meddling& meddling) {
  const std::size_t length = CFaultFolder::input().size();
  if (meddling.error == EIO) return expect_failed_read(number, std::strerror(EIO));
  if (!meddling.is_at_end || number * kPiece >= length) return expect_success();
  return expect_failed_read(number, "The file ended after " + std::to_string(number * kPiece) +
                                        " of the " + std::to_string(length) +
                                        " bytes that it had when it was opened.");
}

/// Meddles with every read of the input in turn.
void fail_every_read(const RunShape& shape, Meddling meddling, CPointLog& log) {
  const CFaultFolder folder;
  meddling.read_piece = kPiece;
  const TracedRun undisturbed = run_traced(folder, shape.plan(), {.read_piece = kPiece});
  ASSERT_EQ(undisturbed.outcome.status, 0);
  std::size_t number = 0;
  for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
    if (undisturbed.calls[i] != Call{CallKind::kRead, kInputName}) continue;
    meddling.call = i;
    log.judge(shape.name() + ", read " + std::to_string(number),
              run_traced(folder, shape.plan(), meddling).outcome, undisturbed.outcome,
              expectation_of_read(number, meddling));
    ++number;
  }
  // All pieces, and the one that reports the end.
  const std::size_t piece_count = (CFaultFolder::input().size() + kPiece - 1) / kPiece;
  EXPECT_EQ(number, piece_count + 1);
}

TEST(FailedRead, names_the_line) {
  CPointLog log("failed reads");
  for (const RunShape& shape : three_file_shapes()) fail_every_read(shape, {.error = EIO}, log);
  log.expect_no_findings(search_modes().size() * 32);
}

// A file that another program cuts after the place of the reader must not pass for a whole one.
TEST(EarlyEnd, is_no_end_of_the_input) {
  CPointLog log("inputs that end early");
  for (const RunShape& shape : three_file_shapes())
    fail_every_read(shape, {.is_at_end = true}, log);
  log.expect_no_findings(search_modes().size() * 32);
}

TEST(BrokenOffRead, is_made_again) {
  CPointLog log("broken-off reads");
  fail_every_read({"imperfect", true, true}, {.error = EINTR}, log);
  if (!fault_settings.is_brief) fail_every_read({"exact", false, false}, {.error = EINTR}, log);
  log.expect_no_findings(32);
}

TEST(ShortRead, is_carried_on) {
  CPointLog log("short reads");
  fail_every_read({"imperfect", true, true}, {.max_bytes = 1}, log);
  if (!fault_settings.is_brief) fail_every_read({"exact", false, false}, {.max_bytes = 3}, log);
  log.expect_no_findings(32);
}

TEST(ShortRead, of_every_length_changes_nothing) {
  const CFaultFolder folder;
  CPointLog log("pieces of the input");
  const RunPlan plan = RunShape{"imperfect", true, true}.plan();
  const Outcome undisturbed = run_traced(folder, plan).outcome;
  for (std::size_t piece = 1; piece <= (fault_settings.is_brief ? 8 : 100); ++piece) {
    log.judge("pieces of " + std::to_string(piece),
              run_traced(folder, plan, {.read_piece = piece}).outcome, undisturbed,
              expect_success());
  }
  log.expect_no_findings(8);
}

/// What is allowed when opening a file fails. The outputs do not exist yet, so each is opened
/// twice: it `is_looked_for` first, and made when all others have been looked for.
Expectation expect_failed_opening(const RunShape& shape, const std::string& target,
                                  bool is_looked_for, int error) {
  if (error == EINTR) return expect_success();  // it is opened again
  if (target == kInputName) {
    return {.statuses = {{155, "Sorry! The input file \n   \"in.fa\"\ncould not be opened."}}};
  }
  if (is_looked_for && error == ENOENT) return expect_success();
  if (target == kMaskedName) return {.statuses = {{153, failed_open_text(target)}}};
  if (target == shape.report_target()) return {.statuses = {{154, failed_open_text(target)}}};
  return expect_success();
}

/// True if the same call stands among those before.
bool is_repeated(const std::vector<Call>& calls, std::size_t index) {
  const auto here = calls.begin() + static_cast<std::ptrdiff_t>(index);
  return std::find(calls.begin(), here, calls[index]) != here;
}

TEST(FailedOpening, has_a_status_for_each_file) {
  const CFaultFolder folder;
  CPointLog log("failed openings");
  for (const RunShape& shape : all_run_shapes()) {
    const TracedRun undisturbed = run_traced(folder, shape.plan());
    for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
      const Call& call = undisturbed.calls[i];
      if (call.kind != CallKind::kOpen) continue;
      const bool is_looked_for = !is_repeated(undisturbed.calls, i);
      for (const int error : {EACCES, EINTR, EIO, EMFILE, ENOENT, ENOMEM, ENOSPC, EROFS}) {
        log.judge(shape.name() + ", " + call.target + ": " + std::strerror(error),
                  run_traced(folder, shape.plan(), {.call = i, .error = error}).outcome,
                  undisturbed.outcome,
                  expect_failed_opening(shape, call.target, is_looked_for, error));
      }
    }
  }
  // Each mode opens the input, and each output twice.
  log.expect_no_findings(search_modes().size() * (1 + 3 + 3 + 5) * 8);
}

/// Has every call of `kind` fail with each error. `expect` gives what is allowed for a call.
template <class Expect>
void fail_every_call(CallKind kind, const std::vector<int>& errors, CPointLog& log, Expect expect) {
  const CFaultFolder folder;
  for (const RunShape& shape : all_run_shapes()) {
    const TracedRun undisturbed = run_traced(folder, shape.plan());
    for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
      const Call& call = undisturbed.calls[i];
      if (call.kind != kind) continue;
      for (const int error : errors) {
        log.judge(shape.name() + ", " + call.target + ": " + std::strerror(error),
                  run_traced(folder, shape.plan(), {.call = i, .error = error}).outcome,
                  undisturbed.outcome, expect(call.target, error));
      }
    }
  }
}

TEST(FailedLock, is_gone_without_unless_another_process_has_it) {
  CPointLog log("failed locks");
  fail_every_call(
      CallKind::kLock, {ENOLCK, EOPNOTSUPP, EINVAL, ENOSYS, EINTR, EWOULDBLOCK}, log,
      [](const std::string& target, int error) -> Expectation {
        if (error != EWOULDBLOCK) return expect_success();
        return {.statuses = {{154, failed_open_text(target) +
                                       "It is locked: another run is writing to it.\n"}}};
      });
  // Each mode locks a report, a masked copy, and both.
  log.expect_no_findings(search_modes().size() * (1 + 1 + 2) * 6);
}

TEST(FailedEmptying, is_a_failed_opening) {
  CPointLog log("failed emptyings");
  fail_every_call(
      CallKind::kEmpty, {EIO, EPERM, EINTR}, log,
      [](const std::string& target, int error) -> Expectation {
        if (error == EINTR) return expect_success();
        return {.statuses = {{target == kMaskedName ? 153 : 154, failed_open_text(target)}}};
      });
  log.expect_no_findings(search_modes().size() * (1 + 1 + 2) * 3);
}

// A closed stream is filled, so that no file of the run takes its place; also where the device for
// that cannot be opened.
TEST(FailedOpening, of_the_null_device_lets_no_text_into_a_file) {
  CPointLog log("failed openings");
  for (const RunShape& shape : three_file_shapes()) {
    const CFaultFolder folder;
    const Outcome undisturbed = run_traced(folder, shape.plan()).outcome;
    for (unsigned closed = 1; closed < 8; ++closed) {
      RunPlan plan = shape.plan();
      plan.prepare = [closed] { close_streams(closed); };
      // The first call of all opens the device, once for each closed stream.
      const TracedRun disturbed =
          run_traced(folder, plan, {.call = 0, .error = ENOENT, .is_lasting = true});
      const std::string place = shape.name() + ", closed: " + std::to_string(closed);
      EXPECT_EQ(disturbed.calls.front(), (Call{CallKind::kOpen, "null"})) << place;
      log.judge(place, disturbed.outcome, undisturbed, expect_success());
    }
  }
  log.expect_no_findings(search_modes().size() * 7);
}

TEST(FailedLook, at_a_file_that_is_no_other_changes_nothing) {
  const CFaultFolder folder;
  CPointLog log("failed looks at files");
  for (const RunShape& shape : all_run_shapes()) {
    const TracedRun undisturbed = run_traced(folder, shape.plan());
    for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
      const Call& call = undisturbed.calls[i];
      if (call.kind != CallKind::kStatus) continue;
      for (const int error : {EACCES, EIO}) {
        log.judge(shape.name() + ", " + call.target + ": " + std::strerror(error),
                  run_traced(folder, shape.plan(), {.call = i, .error = error}).outcome,
                  undisturbed.outcome, expect_success());
      }
    }
  }
  log.expect_no_findings(search_modes().size() * 40);
}

}  // namespace
}  // namespace quorix::testing
