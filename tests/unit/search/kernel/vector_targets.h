#pragma once

/// @file
/// The kinds of processor that the vector code is compiled for, one after the other.

#include <hwy/targets.h>

#include <cstdint>

namespace quorix::testing {

/// Calls `check` with the name of each kind of processor that has vectors and that this one can
/// stand for, while the vector code chooses the instructions of that kind. Gives how many they
/// were.
template <class Check>
int for_each_vector_target(const Check& check) {
  int count = 0;
  hwy::SetSupportedTargetsForTest(0);
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
    if (target == HWY_SCALAR) continue;
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    check(hwy::TargetName(target));
    ++count;
  }
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  return count;
}

/// As above, for a processor without vector instructions.
template <class Check>
void with_no_vectors(const Check& check) {
  hwy::SetSupportedTargetsForTest(HWY_SCALAR);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  check();
  hwy::SetSupportedTargetsForTest(0);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace quorix::testing
