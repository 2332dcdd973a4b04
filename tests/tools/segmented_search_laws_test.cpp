// Searches in segments find what the plain search finds, in its order, whatever the segments and
// the threads are.
//
//   quorix_segmented_search_test --cases=10000 --seed=1

#include <gtest/gtest.h>

#include <cstdio>

#include "support/case_arguments.h"
#include "support/engine_comparison.h"
#include "support/random_dna.h"
#include "support/random_options.h"
#include "tools/segmented_search.h"

namespace quorix::testing {
namespace {

CaseArguments arguments{600, 1};

/// What the cases have shown, so that cases which no longer reach over borders are noticed.
tools::CommitWork tally;

/// A few bases of two or three letters, where repeats end at all places of one another; arrays
/// whose copies are like their neighbours', so that repeats reach over several segments, or a
/// record of everything else. Some have long runs of N.
std::string draw_segmented_bases(RandomEngine& engine, std::size_t longest) {
  if (longest < 120) return draw_letters(engine, longest, draw_chance(engine, 50) ? "AC" : "ACG");
  if (draw_chance(engine, 40)) return draw_record(engine, longest, 12);
  std::string bases = draw_record(engine, longest / 8 + 1, 6);
  while (bases.size() < longest) {
    const std::size_t length = draw_between(engine, 1, longest / 2 + 1);
    bases += draw_chance(engine, 15) ? std::string(length / 4, 'N')
                                     : draw_array(engine, length, draw_chance(engine, 50) ? 4 : 20,
                                                  draw_chance(engine, 50) ? 3 : 12);
  }
  return bases;
}

/// Segments of a few bases for one thread, of a few words for several.
tools::SegmentLengths draw_lengths(RandomEngine& engine, std::size_t thread_count) {
  const bool is_alone = thread_count == 1;
  const std::uint64_t length = is_alone ? draw_between(engine, 1, 90) : 64;
  return {length, is_alone ? length : 64 * draw_between(engine, 1, 3), draw_between(engine, 1, 8),
          is_alone ? 1U : 64U, draw_between(engine, 1, 30)};
}

void run_segmented_case(std::uint64_t seed) {
  RandomEngine engine(seed);
  const bool has_long_units = draw_chance(engine, 30);
  const Options options =
      has_long_units ? draw_long_unit_options(engine) : draw_options(engine, false);
  const std::string bases =
      draw_segmented_bases(engine, draw_between(engine, 1, draw_chance(engine, 50) ? 119 : 900));
  const Words plain = plain_search(bases);
  for (const std::size_t thread_count : {std::size_t{1}, draw_between(engine, 1, 9)}) {
    const tools::SegmentLengths lengths = draw_lengths(engine, thread_count);
    ASSERT_EQ(segmented_search(bases, thread_count, lengths, tally), plain)
        << joined(options) << "\n"
        << thread_count << " threads, segments of " << lengths.min << " to " << lengths.max << "\n"
        << bases;
  }
}

TEST(SegmentedSearch, a_seed_right_after_a_repeat_of_another_segment_is_judged_again) {
  silence_standard_error();
  ASSERT_TRUE(apply_options({"-M", "exact", "-U", "4", "-s", "1", "-l", "2", "-D"}));
  // The segments meet at base 8. CG at 8 closes its bases at unit length 2. AAGA at 3 then closes
  // those up to base 7, and with it the only one that would let CGCA at 8 be tried.
  const std::string bases = "CCAAAGAACGCAGGAG";
  EXPECT_EQ(segmented_search(bases, 1, {8, 8, 1, 1, 1}, tally), plain_search(bases));
}

TEST(SegmentedSearch, a_seed_right_after_a_repeat_that_is_dropped_is_judged_again) {
  silence_standard_error();
  ASSERT_TRUE(apply_options({"-M", "imperfect", "-u", "2", "-U", "6", "-s", "1", "--minScore_b",
                             "0", "-l", "3", "-D", "-r", "1"}));
  const std::string bases = "ACCAAACCCAGACGAGGGAGGA";
  EXPECT_EQ(segmented_search(bases, 1, {9, 9, 1, 1, 1}, tally), plain_search(bases));
}

TEST(SegmentedSearch, finds_what_the_plain_search_finds) {
  silence_standard_error();
  ASSERT_NO_FATAL_FAILURE(run_cases(arguments, run_segmented_case));
  std::printf("%llu repeats, %llu second scans, %llu dropped, %llu found again\n",
              static_cast<unsigned long long>(tally.repeats),
              static_cast<unsigned long long>(tally.second_scans),
              static_cast<unsigned long long>(tally.dropped),
              static_cast<unsigned long long>(tally.found_again));
  EXPECT_GT(tally.repeats, 10 * arguments.case_count);
  EXPECT_GT(tally.second_scans, arguments.case_count);
  EXPECT_GT(tally.dropped, arguments.case_count);
  EXPECT_GT(tally.found_again, arguments.case_count / 10);
}

}  // namespace
}  // namespace quorix::testing

int main(int argc, char** argv) {
  return quorix::testing::run_tests_of_cases(argc, argv, quorix::testing::arguments);
}
