// Runs the real program many times and lets one thing go wrong in each run.
//
//   quorix_fault_test --program=FILE --careless-program=FILE [--failing-memory=FILE]
//                     [--least-points=COUNT] [--seed=NUMBER] [--brief] [GoogleTest's own options]

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "faults/fault_runs.h"
#include "faults/point_log.h"

namespace quorix::testing {
namespace {

/// The table of all points, and whether they were as many as was asked for.
class CPointCheck : public ::testing::Environment {
 public:
  void TearDown() override {
    const std::size_t point_count = print_points();
    if (::testing::GTEST_FLAG(filter) != "*") return;
    EXPECT_GE(point_count, fault_settings.min_points) << "fewer points than were asked for";
  }
};

/// Returns the text after `name` if the word begins with it.
bool take_option(std::string_view word, std::string_view name, std::string& value) {
  if (!word.starts_with(name)) return false;
  value = word.substr(name.size());
  return true;
}

/// The same for a path, which has to hold in every folder.
bool take_path(std::string_view word, std::string_view name, std::string& value) {
  if (!take_option(word, name, value)) return false;
  value = std::filesystem::absolute(value).string();
  return true;
}

bool read_option(std::string_view word) {
  std::string number;
  if (take_path(word, "--program=", fault_settings.program) ||
      take_path(word, "--careless-program=", fault_settings.careless_program) ||
      take_path(word, "--failing-memory=", fault_settings.failing_memory)) {
    return true;
  }
  if (take_option(word, "--least-points=", number)) {
    fault_settings.min_points = std::stoul(number);
    return true;
  }
  if (take_option(word, "--seed=", number)) {
    fault_settings.seed = std::stoull(number);
    return true;
  }
  if (word != "--brief") return false;
  fault_settings.is_brief = true;
  return true;
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  for (int i = 1; i < argc; ++i) {
    if (!quorix::testing::read_option(argv[i])) {
      std::fprintf(stderr, "unknown option: %s\n", argv[i]);
      return EXIT_FAILURE;
    }
  }
  ::testing::AddGlobalTestEnvironment(new quorix::testing::CPointCheck);
  return RUN_ALL_TESTS();
}
