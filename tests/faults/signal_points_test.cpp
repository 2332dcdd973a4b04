// A signal at every call of the system that a run makes.

#include <gtest/gtest.h>

#include <csignal>

#include "faults/call_tracer.h"
#include "faults/fault_runs.h"
#include "faults/point_log.h"

namespace quorix::testing {
namespace {

TEST(SignalAtCall, leaves_the_beginning_of_the_outputs) {
  CPointLog log("signals at calls");
  const RunShape shape{"imperfect", true, true};
  const CFaultFolder folder;
  const TracedRun undisturbed = run_traced(folder, shape.plan());
  for (const int signal : {SIGINT, SIGTERM}) {
    Expectation expectation;
    expectation.signals = {signal};
    expectation.is_at_the_end = true;
    for (std::size_t i = 0; i < undisturbed.calls.size(); ++i) {
      log.judge("signal " + std::to_string(signal) + ", call " + std::to_string(i),
                run_traced(folder, shape.plan(), {.call = i, .signal = signal}).outcome,
                undisturbed.outcome, expectation);
    }
    if (fault_settings.is_brief) break;
  }
  log.expect_no_findings(60);
}

}  // namespace
}  // namespace quorix::testing
