#pragma once

/// @file
/// Every write and every closing of a run fails in turn.

#include <cstddef>
#include <string>
#include <vector>

#include "faults/call_tracer.h"
#include "faults/fault_runs.h"
#include "faults/point_log.h"

namespace quorix::testing {

/// What is allowed where the call `index` of a run, a write or a closing, fails with `error`.
Expectation expect_failed_output(const RunShape& shape, const std::vector<Call>& calls,
                                 std::size_t index, int error);

/// The same, without a failure, for a call that is carried out in part or again.
Expectation expect_success();

/// Meddles with every call of `kind` in turn, as `meddling` says. `program` takes the place of the
/// one in the plan of the shape. Findings go to `log`.
void fail_every_output(const std::string& program, const RunShape& shape, CallKind kind,
                       Meddling meddling, CPointLog& log);

}  // namespace quorix::testing
