#pragma once

/// @file
/// The arguments of programs that test many drawn cases: how many, and where to begin.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace quorix::testing {

struct CaseArguments {
  std::uint64_t case_count;
  std::uint64_t first_seed;  ///< of the first case; the others follow
};

/// Runs the cases one after the other, up to the first failure: `run_case` takes the seed of a
/// case.
template <class RunCase>
void run_cases(const CaseArguments& arguments, RunCase run_case) {
  std::printf("%llu cases from seed %llu\n", static_cast<unsigned long long>(arguments.case_count),
              static_cast<unsigned long long>(arguments.first_seed));
  for (std::uint64_t i = 0; i < arguments.case_count; ++i) {
    const std::uint64_t seed = arguments.first_seed + i;
    ASSERT_NO_FATAL_FAILURE(run_case(seed)) << "seed " << seed;
    ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed;
  }
}

/// Runs all tests of the program, after `--cases=N` and `--seed=N` have changed `arguments` and
/// GoogleTest has taken what is its own. Returns the exit status: 2 for an argument that nobody
/// knows.
inline int run_tests_of_cases(int argc, char** argv, CaseArguments& arguments) {
  const auto is_read = [](std::string_view argument, std::string_view flag, std::uint64_t& value) {
    if (!argument.starts_with(flag)) return false;
    value = std::strtoull(argument.data() + flag.size(), nullptr, 10);
    return true;
  };
  ::testing::InitGoogleTest(&argc, argv);
  for (int i = 1; i < argc; ++i) {
    if (is_read(argv[i], "--cases=", arguments.case_count)) continue;
    if (is_read(argv[i], "--seed=", arguments.first_seed)) continue;
    std::fprintf(stderr, "unknown argument %s\n", argv[i]);
    return 2;
  }
  return RUN_ALL_TESTS();
}

}  // namespace quorix::testing
