// Extensions over hundreds of edits, against the plain engine: records that are one array from end
// to end, in which each seed follows the paths of others.
//
//   quorix_long_extension_test --cases=1000 --seed=1

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "support/case_arguments.h"
#include "support/engine_comparison.h"

namespace quorix::testing {
namespace {

CaseArguments arguments{200, 1};

/// Extensions of so many edits meet far more sites than the uncached ones.
constexpr std::uint64_t kManyEdits = 60;

std::uint64_t repeats_of_many_edits = 0;

void add_to_tally(std::string_view report) {
  std::uint64_t edits = 0;
  for (std::size_t i = 0; i < report.size(); ++i) {
    if (report.substr(i, 2) == "),") ++edits;
    if (report[i] == '\n') {
      if (edits >= kManyEdits) ++repeats_of_many_edits;
      edits = 0;
    }
  }
}

/// A word in which a short and a long piece follow each other without a period.
std::string draw_word(RandomEngine& engine, std::size_t length) {
  const std::string letters = draw_letters(engine, 2, "ACGT");
  std::string last = letters.substr(0, 1);
  std::string word = last + draw_letters(engine, draw_between(engine, 1, 3), letters);
  while (word.size() < length) {
    std::string next = word + last;
    last = std::move(word);
    word = std::move(next);
  }
  return word.substr(0, length);
}

/// An array in which an extension gains about as much from edit to edit as the edit costs.
std::string draw_wandering_array(RandomEngine& engine, std::size_t length) {
  const std::size_t unit_length = draw_between(engine, 1, 5);
  const std::string unit = draw_letters(engine, unit_length, "ACGT");
  const std::size_t mean_run = draw_between(engine, 3, 7);
  std::string bases;
  std::size_t phase = 0;
  while (bases.size() < length) {
    const std::size_t run = draw_between(engine, mean_run - 2, mean_run + 2);
    for (std::size_t i = 0; i < run; ++i) bases += unit[phase++ % unit.size()];
    if (draw_chance(engine, 75)) bases += draw_letters(engine, 1, "ACGT");
    if (draw_chance(engine, 70)) ++phase;
  }
  return bases;
}

std::string draw_broken_array(RandomEngine& engine, std::size_t length) {
  const std::size_t kind = draw_between(engine, 0, 3);
  if (kind == 0) return draw_wandering_array(engine, length);
  if (kind == 1) return draw_word(engine, length);
  // One by one, so that the order of the draws does not depend on the compiler.
  const std::size_t longest_unit = draw_between(engine, 1, 9);
  const std::size_t divergence_percent = draw_between(engine, 4, 25);
  return draw_array(engine, length, longest_unit, divergence_percent);
}

/// One array, or a word that is nearly one, at times between some other bases.
std::string draw_long_array(RandomEngine& engine) {
  std::string bases = draw_broken_array(engine, draw_between(engine, 300, 1100));
  if (draw_chance(engine, 30)) {
    bases.insert(0, draw_letters(engine, draw_between(engine, 1, 40), "ACGT"));
    bases += draw_letters(engine, draw_between(engine, 1, 40), "ACGT");
  }
  return bases;
}

/// Cheap and expensive edits, and look-aheads as deep as the plain engine can bear.
Options draw_extension_options(RandomEngine& engine) {
  const auto number = [&](std::size_t first, std::size_t last) {
    return std::to_string(draw_between(engine, first, last));
  };
  const std::size_t longest_unit = draw_between(engine, 1, 9);
  Options options{"-r", number(1, 2),
                  "-m", "-" + number(2, 7),
                  "-g", "-" + number(2, 7),
                  "-s", number(2, 30),
                  "-u", number(longest_unit < 3 ? 1 : longest_unit - 2, longest_unit),
                  "-U", std::to_string(longest_unit)};
  if (draw_chance(engine, 40)) options.insert(options.end(), {"-M", "extendExact"});
  if (draw_chance(engine, 30)) options.insert(options.end(), {"-R", number(1, 400)});
  if (draw_chance(engine, 20)) options.insert(options.end(), {"-N", number(0, 5)});
  if (draw_chance(engine, 10)) options.emplace_back("--NsAsMissense");
  if (draw_chance(engine, 50)) options.emplace_back("--dontRemoveMostlyOverlapping");
  return options;
}

// Its scores stay below the safe one, from which an edit holds for all of them.
TEST(LongExtension, applies_edits_chosen_at_low_scores_to_these_alone) {
  silence_standard_error();
  const Options options{"-r", "3",  "-m", "-4",          "-g",
                        "-4", "-s", "10", "-u",          "2",
                        "-U", "2",  "-M", "extendExact", "--dontRemoveMostlyOverlapping"};
  ASSERT_TRUE(apply_options(options));
  const NamedBases record{
      "low scores",
      "CTCTCTCTCTTCGTCTCTGTCGCTCTATTTCTCTCTCTCTTCTCCTCTCCTCTCCTCTCTCTCTCTTTCTCTTCTCGTCC"
      "TCTCCCCTCCTTCTCTTCTCTTCTCATCTCTCTCGCTCCTCTTCGTCTTCTCTCTCTCTTCCTCTCTCTCTCCCTCTTCT"
      "CTCTCTTCTGTCCTCTCTCTCTCTCTCTCTCTCTGTCTATCTGCTACTCTGTTCTCTCTTTCCTCGCTCTTTCTCCTCTA"
      "CTCTATGCTCTTCCCACTCACTCTCGTCTATCTCTCTCCCCTCTTCTGCTCTATCTCGCCTCTCCTCTCTATCTCTGTCT"
      "CTGCTCGTCTCACTCGCTCCTCTCTGTCGCTCTCTCTTCTTTCTCTCTACCCTCTTATCTCCGCTATCGTCTACTGTATC"
      "TCGCTCTGTCTCCCTCGTCTCTCTACTCTCTGTCTCCTCCTCTCCTCTTTCTATTCTCCTCCCTGTCTCTCGCTCTCTCC"
      "TCTACTCCTCTCTTCTCTCTCCTCTTCTCTCTCATCTCTCACACTCTACTCGCCCTCTCTCTCCCTCTCTCTCTCTTTCT"
      "ATCTACTCTCTCCTCTCTCTCTCTTCATCTCTCTCTTCTCTTCTCGCTCTCCTCTCTCTCTCGCTCTATCTCGCTCTTCT"
      "CTCTCTGTACTCTCTCTCTC"};
  EXPECT_TRUE(compare_engines(record).is_equal()) << describe_difference(record, options);
}

TEST(LongExtension, program_and_plain_engine_agree) {
  silence_standard_error();
  for (std::uint64_t seed = arguments.first_seed;
       seed < arguments.first_seed + arguments.case_count; ++seed) {
    RandomEngine engine(seed);
    const Options options = draw_extension_options(engine);
    ASSERT_TRUE(apply_options(options)) << joined(options);
    const NamedBases record{"seed " + std::to_string(seed), draw_long_array(engine)};
    const Comparison comparison = compare_engines(record);
    ASSERT_TRUE(comparison.is_equal()) << describe_difference(record, options);
    add_to_tally(comparison.program.report);
  }
  std::printf("%llu cases from seed %llu, %llu repeats of at least %llu edits\n",
              static_cast<unsigned long long>(arguments.case_count),
              static_cast<unsigned long long>(arguments.first_seed),
              static_cast<unsigned long long>(repeats_of_many_edits),
              static_cast<unsigned long long>(kManyEdits));
  EXPECT_GT(repeats_of_many_edits, arguments.case_count);
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  return quorix::testing::run_tests_of_cases(argc, argv, quorix::testing::arguments);
}
