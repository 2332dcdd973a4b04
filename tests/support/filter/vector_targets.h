#pragma once

/// @file
/// The kinds of processor that the vector code is compiled for, one after the other.

#include <hwy/targets.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace quorix::testing {

/// Lets the vector code choose the instructions of `targets` from now on; 0 stands for those of
/// this processor.
inline void use_vector_targets(std::int64_t targets) {
  hwy::SetSupportedTargetsForTest(targets);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

/// The kinds of processor that have vectors and that this one can stand for.
inline const std::vector<std::int64_t>& vector_targets() {
  static const std::vector<std::int64_t> targets = [] {
    hwy::SetSupportedTargetsForTest(0);
    std::vector<std::int64_t> found = hwy::SupportedAndGeneratedTargets();
    found.erase(std::remove(found.begin(), found.end(), HWY_SCALAR), found.end());
    return found;
  }();
  return targets;
}

/// Calls `check` with the name of each kind of processor that has vectors and that this one can
/// stand for, while the vector code chooses the instructions of that kind. Returns their number.
template <class Check>
int for_each_vector_target(const Check& check) {
  for (const std::int64_t target : vector_targets()) {
    use_vector_targets(target);
    check(hwy::TargetName(target));
  }
  use_vector_targets(0);
  return static_cast<int>(vector_targets().size());
}

/// True for the kinds with vectors of 32 bytes or more, by their name. How much work the bounds do
/// is the same on these; narrower vectors take two tables for a batch of seeds.
inline bool has_wide_vectors(const std::string& target) {
  return target.starts_with("AVX");
}

/// As above, for a processor without vector instructions.
template <class Check>
void with_no_vectors(const Check& check) {
  use_vector_targets(HWY_SCALAR);
  check();
  use_vector_targets(0);
}

}  // namespace quorix::testing
