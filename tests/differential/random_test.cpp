// Random records with planted repeats under random settings, from a seed that is printed.
//
//   quorix_random_test --cases=100000 --seed=1

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "support/case_arguments.h"
#include "support/engine_comparison.h"

namespace quorix::testing {
namespace {

CaseArguments arguments{1000, 1};

/// What the cases have shown, so that a generator which no longer plants repeats is noticed.
struct Tally {
  std::uint64_t repeats = 0;
  std::uint64_t mismatches = 0;
  std::uint64_t insertions = 0;
  std::uint64_t deletions = 0;
  std::uint64_t masked_bases = 0;
} tally;

std::uint64_t count_of(std::string_view text, std::string_view word) {
  std::uint64_t count = 0;
  for (std::size_t found = text.find(word); found != std::string_view::npos;
       found = text.find(word, found + word.size())) {
    ++count;
  }
  return count;
}

void add_to_tally(const RunOutput& output) {
  tally.repeats += count_of(output.report, " unit ");
  tally.mismatches += count_of(output.report, ",M),");
  tally.insertions += count_of(output.report, ",I),");
  tally.deletions += count_of(output.report, ",D),");
  tally.masked_bases += count_of(output.masked, "X");
}

/// Runs both engines on a record of `bases`.
void run_record(std::uint64_t seed, const Options& options, const std::string& bases) {
  const NamedBases record{"seed " + std::to_string(seed), bases};
  const Comparison comparison = compare_engines(record);
  ASSERT_TRUE(comparison.is_equal()) << describe_difference(record, options);
  add_to_tally(comparison.program);
}

/// A record, or an array between two of them in whose copies edits of one kind are alike.
std::string draw_bases(RandomEngine& engine, std::size_t longest, std::size_t longest_unit) {
  if (longest < 30 || draw_chance(engine, 75)) return draw_record(engine, longest, longest_unit);
  const std::size_t unit_length = draw_between(engine, 1, longest_unit);
  const std::size_t array_length = draw_between(engine, longest / 3, longest - longest / 5);
  const std::size_t rest = (longest - array_length) / 2;
  return draw_record(engine, rest, longest_unit) +
         draw_array_edited_alike(engine, array_length, unit_length) +
         draw_record(engine, rest, longest_unit);
}

/// Most records are short, so that many settings are met; without a limit of the recursion both
/// engines try every combination of edits, which a dozen bases bear.
void run_short_case(std::uint64_t seed, RandomEngine& engine) {
  const bool is_unlimited = draw_chance(engine, 5);
  const Options options = draw_options(engine, is_unlimited);
  const std::size_t longest = is_unlimited ? 12 : draw_chance(engine, 85) ? 90 : 300;
  run_record(seed, options, draw_bases(engine, longest, draw_chance(engine, 70) ? 4 : 12));
}

/// Units and records beyond what one machine word or one byte holds, for the bounds that work with
/// those. Penalties are mostly high and the recursion is shallow: the plain engine tries all paths.
void run_long_case(std::uint64_t seed, RandomEngine& engine) {
  const Options options = draw_long_unit_options(engine);
  std::string bases = draw_bases(engine, 700, draw_chance(engine, 50) ? 60 : 12);
  const std::size_t room = 700 - std::min<std::size_t>(bases.size(), 700);
  if (room > 0 && draw_chance(engine, 60)) {  // copies enough for a long unit
    bases += draw_array(engine, draw_between(engine, 1, room), 60, draw_between(engine, 0, 6));
  }
  run_record(seed, options, bases);
}

/// One case a seed.
void run_case(std::uint64_t seed) {
  RandomEngine engine(seed);
  if (draw_chance(engine, 10)) {
    run_long_case(seed, engine);
  } else {
    run_short_case(seed, engine);
  }
}

TEST(Random, program_and_plain_engine_agree) {
  silence_standard_error();
  ASSERT_NO_FATAL_FAILURE(run_cases(arguments, run_case));
  std::printf("%llu repeats, %llu mismatches, %llu insertions, %llu deletions, %llu masked bases\n",
              static_cast<unsigned long long>(tally.repeats),
              static_cast<unsigned long long>(tally.mismatches),
              static_cast<unsigned long long>(tally.insertions),
              static_cast<unsigned long long>(tally.deletions),
              static_cast<unsigned long long>(tally.masked_bases));
  EXPECT_GT(tally.repeats, arguments.case_count / 2);
  EXPECT_GT(tally.masked_bases, arguments.case_count);
  for (const std::uint64_t edits : {tally.mismatches, tally.insertions, tally.deletions}) {
    EXPECT_GT(edits, arguments.case_count / 50);
  }
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  return quorix::testing::run_tests_of_cases(argc, argv, quorix::testing::arguments);
}
