// quorix_variant: the program as it would be on another processor, or with another read buffer.
//
//   quorix_variant targets                             the processors that this one can stand for
//   quorix_variant TARGET LENGTH [ARGUMENT]...         a run of the program
//
// TARGET is one of the names, or "any" for what the program chooses itself. LENGTH is the most that
// a read of the input gives, in bytes, which is what a read buffer of that length would come to; 0
// is no limit.

#include <hwy/targets.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "determinism/limited_source.h"
#include "driver/run.h"

namespace {

constexpr std::string_view kNoVectors = "none";

/// The targets that the vector code is compiled for and this processor has; the code without
/// vectors is among them.
std::vector<std::int64_t> targets() {
  std::vector<std::int64_t> found = hwy::SupportedAndGeneratedTargets();
  std::erase(found, HWY_SCALAR);  // there or not, by the compiler
  found.push_back(HWY_SCALAR);
  return found;
}

std::string_view name_of(std::int64_t target) {
  return target == HWY_SCALAR ? kNoVectors : hwy::TargetName(target);
}

bool choose_target(std::string_view name) {
  if (name == "any") return true;
  for (const std::int64_t target : targets()) {
    if (name != name_of(target)) continue;
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "targets") {
    for (const std::int64_t target : targets()) std::puts(name_of(target).data());
    return 0;
  }
  if (argc < 3 || !choose_target(argv[1])) {
    std::fputs("usage: quorix_variant targets | TARGET LENGTH [ARGUMENT]...\n", stderr);
    return 2;
  }
  quorix::testing::longest_read = std::strtoull(argv[2], nullptr, 10);
  argv[2] = argv[0];
  return quorix::run(argc - 2, argv + 2);
}
