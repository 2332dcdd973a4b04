// Good files that something has happened to, from a seed that is printed; some are compressed after
// that, which must change nothing. Each run has to end quickly, with the status, the line and the
// records that the plain reader finds.
//
//   quorix_spoiled_input_test --cases=100000 --seed=1

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/time.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "driver/run.h"
#include "hostile/spoiled_fasta.h"
#include "reference/plain_fasta.h"
#include "support/case_arguments.h"
#include "unit/driver/run_folder.h"

namespace quorix::testing {
namespace {

/// Seconds of the processor that a run may take. Sanitizers make it ten times slower.
constexpr double kLongest = QUORIX_SLOW_BUILD ? 10 : 1;

CaseArguments arguments{1000, 1};

struct Tally {
  std::uint64_t good = 0;
  std::uint64_t refused = 0;
  std::uint64_t records = 0;
  std::uint64_t repeats = 0;
  double longest_processor = 0;
  double longest_wall = 0;
  std::uint64_t longest_seed = 0;
} tally;

double seconds_of_children() {
  rusage usage{};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

ProcessResult run_in(const CRunFolder& folder, const std::vector<const char*>& options) {
  return run_in_child([&] {
    const rlimit most{static_cast<rlim_t>(kLongest) * 5, static_cast<rlim_t>(kLongest) * 5};
    if (::setrlimit(RLIMIT_CPU, &most) != 0 || ::chdir(folder.path("").c_str()) != 0) std::abort();
    ::alarm(120);
    std::vector<const char*> words{"quorix"};
    words.insert(words.end(), options.begin(), options.end());
    words.push_back("in.fa");
    return quorix::run(static_cast<int>(words.size()), words.data());
  });
}

/// Names and lengths of the records, as the first two lines of their blocks in a report.
std::vector<std::string> told_records(const std::string& report) {
  std::vector<std::string> records;
  for (std::size_t found = report.find("\n>"); found != std::string::npos;
       found = report.find("\n>", found + 1)) {
    const std::size_t second = report.find('\n', found + 1);
    const std::size_t end = report.find('\n', second + 1);
    records.push_back(report.substr(found + 2, end - found - 2));
  }
  return records;
}

std::vector<std::string> expected_records(const reference::FastaText& fasta) {
  std::vector<std::string> records;
  for (const auto& [name, bases] : fasta.records) {
    records.push_back(name.c_str() + ("\nsequence length: " + std::to_string(bases.size())));
  }
  return records;
}

void check(const ProcessResult& result, const reference::FastaText& expected) {
  ASSERT_EQ(result.status, expected.error_line == 0 ? 0 : 231) << result.err;
  ASSERT_EQ(told_records(result.out), expected_records(expected));
  if (expected.error_line == 0) {
    EXPECT_TRUE(result.out.ends_with("\n## Finished successfully. ##\n"));
    EXPECT_TRUE(result.err.ends_with("\nQuorix says goodbye.\n\n"));
  } else {
    EXPECT_FALSE(result.out.ends_with("\n## Finished successfully. ##\n"));
    const std::string line = "\nFile position: line " + std::to_string(expected.error_line) + "\n";
    EXPECT_TRUE(result.err.ends_with(line)) << result.err;
  }
}

std::uint64_t count_of(std::string_view text, std::string_view word) {
  std::uint64_t count = 0;
  for (std::size_t found = text.find(word); found != std::string_view::npos;
       found = text.find(word, found + word.size())) {
    ++count;
  }
  return count;
}

/// One case a seed. The input stays in the folder of a test that has failed.
void run_case(std::uint64_t seed, const CRunFolder& folder) {
  static const std::vector<std::vector<const char*>> kOptions = {
      {},
      {"-M", "exact"},
      {"-M", "extendExact"},
      {"-U", "20", "--outputFormat", "0"},
      {"--maskX", "--outputFormat", "2", "--printRepeatSeqMode", "0"},
      {"-s", "4", "-N", "0", "-f", "5"},
      {"--NsAsMissense", "-D", "-r", "2", "--printRepeatSeqMode", "1"}};
  RandomEngine engine(seed);
  const std::string text = spoil(engine, draw_fasta(engine));
  const auto& options = kOptions[draw_between(engine, 0, kOptions.size() - 1)];
  folder.write("in.fa", draw_chance(engine, 25) ? compress(engine, text) : text);

  const double processor_start = seconds_of_children();
  const auto wall_start = std::chrono::steady_clock::now();
  const ProcessResult result = run_in(folder, options);
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - wall_start;
  const double processor = seconds_of_children() - processor_start;

  const reference::FastaText expected = reference::read_fasta(text);
  ASSERT_NO_FATAL_FAILURE(check(result, expected));
  ASSERT_LT(processor, kLongest);
  ++(expected.error_line == 0 ? tally.good : tally.refused);
  tally.records += expected.records.size();
  tally.repeats += count_of(result.out, " unit ") - 1;  // the head has the word once
  tally.longest_wall = std::max(tally.longest_wall, wall.count());
  if (processor > tally.longest_processor) {
    tally.longest_processor = processor;
    tally.longest_seed = seed;
  }
}

TEST(SpoiledInput, ends_as_the_plain_reader_says) {
  const CRunFolder folder;
  ASSERT_NO_FATAL_FAILURE(
      run_cases(arguments, [&](std::uint64_t seed) { run_case(seed, folder); }));
  std::printf("%llu with status 0, %llu with status 231, %llu records, %llu repeats\n",
              static_cast<unsigned long long>(tally.good),
              static_cast<unsigned long long>(tally.refused),
              static_cast<unsigned long long>(tally.records),
              static_cast<unsigned long long>(tally.repeats));
  std::printf("longest: %.3f s of the processor (seed %llu), %.3f s of wall time\n",
              tally.longest_processor, static_cast<unsigned long long>(tally.longest_seed),
              tally.longest_wall);
  EXPECT_GT(tally.good, arguments.case_count / 5);
  EXPECT_GT(tally.refused, arguments.case_count / 5);
  EXPECT_GT(tally.records, arguments.case_count / 2);
  EXPECT_GT(tally.repeats, arguments.case_count / 2);
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  return quorix::testing::run_tests_of_cases(argc, argv, quorix::testing::arguments);
}
