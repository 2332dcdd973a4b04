// Writes and closings that fail, one after another.

#include <gtest/gtest.h>

#include <cerrno>

#include "faults/output_faults.h"

namespace quorix::testing {
namespace {

/// Under a sanitizer a run costs many times as much, so it does with fewer shapes.
std::vector<RunShape> shapes() {
  if (fault_settings.is_brief) return {{"imperfect", true, true}};
  return {{"exact", true, true},
          {"extendExact", false, true},
          {"imperfect", true, true},
          {"imperfect", false, false}};
}

std::vector<int> errors() {
  if (fault_settings.is_brief) return {ENOSPC};
  return {ENOSPC, EIO, EPIPE};
}

/// Breaks off every write to an output in turn. Nothing but the messages may suffer.
void fail_every_write_by_a_signal(const RunShape& shape, CPointLog& log) {
  const CFaultFolder folder;
  const TracedRun undisturbed = run_traced(folder, shape.plan());
  for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
    const Call& call = undisturbed.calls[i];
    if (call.kind != CallKind::kWrite || call.target == "standard error") continue;
    log.judge(shape.name() + ", " + call.target + ", call " + std::to_string(i),
              run_traced(folder, shape.plan(), {.call = i, .error = EINTR}).outcome,
              undisturbed.outcome, expect_success());
  }
}

TEST(FailedWrite, is_reported_and_never_passes_for_success) {
  CPointLog log("failed writes");
  for (const RunShape& shape : shapes()) {
    for (const int error : errors()) {
      fail_every_output(fault_settings.program, shape, CallKind::kWrite, {.error = error}, log);
    }
  }
  log.expect_no_findings(fault_settings.is_brief ? 50 : 600);
}

TEST(FailedWrite, leaves_the_beginning_of_the_output_when_no_later_one_succeeds) {
  CPointLog log("disks that stay full");
  for (const RunShape& shape : shapes()) {
    fail_every_output(fault_settings.program, shape, CallKind::kWrite,
                      {.error = ENOSPC, .is_lasting = true}, log);
  }
  log.expect_no_findings(fault_settings.is_brief ? 50 : 200);
}

TEST(ShortWrite, is_carried_on) {
  CPointLog log("short writes");
  for (const RunShape& shape : shapes()) {
    fail_every_output(fault_settings.program, shape, CallKind::kWrite, {.max_bytes = 1}, log);
  }
  log.expect_no_findings(fault_settings.is_brief ? 50 : 200);
}

TEST(BrokenOffWrite, is_made_again) {
  CPointLog log("broken-off writes");
  for (const RunShape& shape : shapes()) {
    fail_every_write_by_a_signal(shape, log);
  }
  log.expect_no_findings(fault_settings.is_brief ? 15 : 60);
}

TEST(FailedClosing, of_an_output_is_reported) {
  CPointLog log("failed closings");
  for (const RunShape& shape : all_run_shapes()) {
    for (const int error : {EIO, ENOSPC, EDQUOT, EINTR}) {
      fail_every_output(fault_settings.program, shape, CallKind::kClose, {.error = error}, log);
    }
  }
  // Each mode closes the input four times, and both places of the report and the masked copy twice.
  log.expect_no_findings(search_modes().size() * (4 + 2 + 2 + 2) * 4);
}

// The judge has to be able to find something.

TEST(CarelessProgram, is_found_out_at_every_write) {
  CPointLog log("careless writes");
  fail_every_output(fault_settings.careless_program, {"imperfect", true, true}, CallKind::kWrite,
                    {.error = ENOSPC, .is_lasting = true}, log);
  // The report's head, eight blocks and the closing line, and eight records of the masked copy.
  EXPECT_EQ(log.findings().size(), 1U + 8U + 1U + 8U);
  EXPECT_GT(log.point_count(), log.findings().size());
}

TEST(CarelessProgram, is_found_out_at_every_closing) {
  CPointLog log("careless closings");
  fail_every_output(fault_settings.careless_program, {"imperfect", true, true}, CallKind::kClose,
                    {.error = EIO}, log);
  EXPECT_EQ(log.findings().size(), 2U);
  EXPECT_EQ(log.point_count(), 3U);
}

}  // namespace
}  // namespace quorix::testing
