#include "faults/output_faults.h"

#include <algorithm>
#include <cstring>

namespace quorix::testing {

namespace {

constexpr int kOutputWriteError = 153;

/// True if nothing is written to the target after the call.
bool is_last_write(const std::vector<Call>& calls, std::size_t index) {
  const Call write{CallKind::kWrite, calls[index].target};
  return std::find(calls.begin() + static_cast<std::ptrdiff_t>(index) + 1, calls.end(), write) ==
         calls.end();
}

/// True if the run has gone on to further records after the failed call. Once it may write: what
/// was gathered of a report whose head has failed leaves when the file is closed.
bool goes_on(const RunShape& shape, const std::vector<Call>& calls, std::size_t failed) {
  constexpr std::ptrdiff_t kMaxWrites = 1;
  const auto is_output = [&shape](const Call& call) {
    return call.kind == CallKind::kWrite &&
           (call.target == shape.report_target() || call.target == kMaskedName);
  };
  return std::count_if(calls.begin() + static_cast<std::ptrdiff_t>(failed) + 1, calls.end(),
                       is_output) > kMaxWrites;
}

std::string describe(const RunShape& shape, const std::vector<Call>& calls,
                     const Meddling& meddling) {
  std::string text = shape.name() + ", call " + std::to_string(meddling.call) + " to " +
                     calls[meddling.call].target;
  if (meddling.error != 0) text += std::string(": ") + std::strerror(meddling.error);
  if (meddling.is_lasting) text += " from there on";
  return text;
}

}  // namespace

Expectation expect_success() {
  return {.statuses = {{0, ""}}};
}

Expectation expect_failed_output(const RunShape& shape, const std::vector<Call>& calls,
                                 std::size_t index, int error) {
  const std::string& target = calls[index].target;
  if (target != shape.report_target() && target != kMaskedName) return expect_success();
  Expectation expectation{.statuses = {{kOutputWriteError, failed_write_text(target, error)}}};
  expectation.is_at_the_end = target == shape.report_target() && is_last_write(calls, index);
  return expectation;
}

void fail_every_output(const std::string& program, const RunShape& shape, CallKind kind,
                       Meddling meddling, CPointLog& log) {
  const CFaultFolder folder;
  RunPlan plan = shape.plan();
  plan.program = program;
  const TracedRun undisturbed = run_traced(folder, plan);
  for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
    if (undisturbed.calls[i].kind != kind) continue;
    meddling.call = i;
    Expectation expectation =
        meddling.error == 0 ? expect_success()
                            : expect_failed_output(shape, undisturbed.calls, i, meddling.error);
    expectation.may_have_holes = !meddling.is_lasting;
    const TracedRun disturbed = run_traced(folder, plan, meddling);
    const std::string place = describe(shape, undisturbed.calls, meddling);
    if (i >= disturbed.calls.size() || disturbed.calls[i] != undisturbed.calls[i]) {
      log.add(place, disturbed.outcome, "the runs are not alike up to this call");
    } else if (expectation.statuses.count(0) == 0 && goes_on(shape, disturbed.calls, i)) {
      log.add(place, disturbed.outcome, "the run goes on after a failure");
    } else {
      log.judge(place, disturbed.outcome, undisturbed.outcome, expectation);
    }
  }
}

}  // namespace quorix::testing
