// What bounds an extension over edits: the limit of the text, the floor under the score, the
// reduction limit, the recursion depth and the width of a score.

#include <cstdint>
#include <limits>
#include <string>

#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using ImperfectExtensionLimits = testing::CSearchSettings;
using testing::CBases;
using testing::CSearchedSequence;
using testing::extended_left;
using testing::extended_right;
using testing::in_words;
using testing::repeated;

constexpr int kMinInt = std::numeric_limits<int>::min();
constexpr int kMaxInt = std::numeric_limits<int>::max();

// 6 - 6 + 7 with the mismatch at 8, and 6 without it.
constexpr char kPaidMismatch[] = "ACACACACGCACACAC";
constexpr char kMismatchTaken[] = "[0,16) AC@0 score 7 mis 1 8M";
constexpr char kMismatchRefused[] = "[0,8) AC@0 score 6";

TEST_F(ImperfectExtensionLimits, take_no_base_at_the_limit_or_beyond) {
  const CBases bases("ACACACACGCACACACACAC");
  CSearchedSequence any("A");
  Csat right = bases.unit_copy(0, 2);
  any.search.extend_imperfect_forward(right, bases.at(17));
  EXPECT_EQ(in_words(right, bases.begin()), "[0,17) AC@0 score 8 mis 1 8M");
  Csat left = bases.unit_copy(18, 2);
  any.search.extend_imperfect_backward(left, bases.at(3));
  // Backwards nine matches come first, up to the G.
  EXPECT_EQ(in_words(left, bases.begin()), "[9,20) AC@18 score 9");
  left = bases.unit_copy(18, 2);
  any.search.extend_imperfect_backward(left, bases.at(0));
  EXPECT_EQ(in_words(left, bases.begin()), "[1,20) AC@18 score 10 mis 1 8M");
}

TEST_F(ImperfectExtensionLimits, let_a_unit_of_two_take_an_edit_above_a_score_of_4) {
  EXPECT_EQ(extended_right("ACACACGCACACACAC", 2), "[0,6) AC@0 score 4");
  EXPECT_EQ(extended_right("ACACACATACACACAC", 2), "[0,16) AC@0 score 7 mis 1 7M");
  EXPECT_EQ(extended_left("CACACACACGCACACA", 2), "[10,16) CA@14 score 4");
  EXPECT_EQ(extended_left("CACACACATACACACA", 2), "[0,16) CA@14 score 7 mis 1 8M");
}

TEST_F(ImperfectExtensionLimits, let_a_unit_of_six_take_an_edit_above_a_score_of_0) {
  EXPECT_EQ(extended_right("ACGTCATCGTCAACGTCA", 6), "[0,6) ACGTCA@0 score 0");
  EXPECT_EQ(extended_right("ACGTCAATGTCAACGTCA", 6), "[0,18) ACGTCA@0 score 5 mis 1 7M");
  EXPECT_EQ(extended_left("ACTGCAACTGTAACTGCA", 6), "[0,18) ACTGCA@12 score 5 mis 1 10M");
}

TEST_F(ImperfectExtensionLimits,
       make_extensions_exact_where_no_penalty_is_below_the_reduction_limit) {
  for (const int reduction : {kMinInt, -1, 0, 1, 5, 6}) {
    global_maximum_scorereduction = reduction;
    EXPECT_EQ(extended_right(kPaidMismatch, 2), kMismatchRefused) << reduction;
    EXPECT_EQ(extended_left("CACACACGCACACACA", 2), "[8,16) CA@14 score 6") << reduction;
  }
  for (const int reduction : {7, 8, 1000, kMaxInt}) {
    global_maximum_scorereduction = reduction;
    EXPECT_EQ(extended_right(kPaidMismatch, 2), kMismatchTaken) << reduction;
    EXPECT_EQ(extended_left("CACACACGCACACACA", 2), "[0,16) CA@14 score 7 mis 1 7M") << reduction;
  }
}

// After the mismatch at 8 the score is 4. With a reduction of 3 the one at 9 would leave 2, which
// is not above 6 - 3; with 5 it may, and eight matches pay for both.
TEST_F(ImperfectExtensionLimits, measure_the_reduction_from_the_best_score) {
  set_penalties(-2, -2);
  const std::string text = "ACACACACGTACACACAC";
  global_maximum_scorereduction = 3;
  EXPECT_EQ(extended_right(text, 2), "[0,8) AC@0 score 6");
  global_maximum_scorereduction = 4;
  EXPECT_EQ(extended_right(text, 2), "[0,8) AC@0 score 6");
  global_maximum_scorereduction = 5;
  EXPECT_EQ(extended_right(text, 2), "[0,18) AC@0 score 10 mis 2 8M 9M");
}

TEST_F(ImperfectExtensionLimits, do_not_overflow_with_the_lowest_penalties) {
  set_penalties(kMinInt, kMinInt);
  EXPECT_EQ(extended_right(kPaidMismatch, 2), kMismatchRefused);
  global_maximum_scorereduction = kMinInt;
  EXPECT_EQ(extended_right(kPaidMismatch, 2), kMismatchRefused);
}

TEST_F(ImperfectExtensionLimits, hold_each_penalty_against_the_floor_by_itself) {
  set_penalties(kMinInt, -6);
  EXPECT_EQ(extended_right(kPaidMismatch, 2), kMismatchRefused);
  EXPECT_EQ(extended_right("ACGACGACGTACGACGACG", 3), "[0,19) ACG@0 score 9 ins 1 9I");
  set_penalties(-6, kMinInt);
  EXPECT_EQ(extended_right(kPaidMismatch, 2), kMismatchTaken);
  EXPECT_EQ(extended_right("ACGACGACGTACGACGACG", 3), "[0,9) ACG@0 score 6");
}

TEST_F(ImperfectExtensionLimits, keep_the_score_at_the_highest_32_bit_number) {
  const CBases bases("ACACACTCACACAC");
  CSearchedSequence any("A");
  Csat sat = bases.unit_copy(0, 2);
  sat.score = kMaxInt - 2;
  any.search.extend_imperfect_forward(sat, bases.end());
  // At its highest with the second of four matches, and as high again at the end: an end of the
  // text gives back what only ties.
  EXPECT_EQ(in_words(sat, bases.begin()), "[0,6) AC@0 score 2147483647");
}

// After two matches comes A where G is expected. Depth 1 sees one run of matches after each edit:
// mismatch 0, insertion 1 over the G, deletion 1 over the A. The insertion is chosen; another one
// leads to 2 at the T, which only ties with the 2 at the beginning. Depth 2 sees that a mismatch
// after the deletion leads over ACG to 3.
TEST_F(ImperfectExtensionLimits, let_a_deeper_look_ahead_choose_another_edit) {
  set_penalties(-2, -2);
  for (const int depth : {2, 5, 255, 256, 300}) {
    global_maximum_recursion_depth = depth;
    EXPECT_EQ(extended_right("ACGACAGGACGTA", 3), "[0,11) ACG@0 score 3 mis 1 del 1 5D 6M")
        << depth;
    EXPECT_EQ(extended_left("ATGCAGGACAGCA", 3), "[2,13) GCA@10 score 3 mis 1 del 1 8D 6M")
        << depth;
  }
  global_maximum_recursion_depth = 1;
  EXPECT_EQ(extended_right("ACGACAGGACGTA", 3), "[0,5) ACG@0 score 2");
  EXPECT_EQ(extended_left("ATGCAGGACAGCA", 3), "[8,13) GCA@10 score 2");
}

// The level of the first edit is the record's own plus one, in 8 bits.
TEST_F(ImperfectExtensionLimits, count_the_depth_from_the_level_of_the_record) {
  set_penalties(-2, -2);
  const CBases bases("ACGACAGGACGTA");
  const auto extended_from_level = [&](std::uint8_t level) {
    CSearchedSequence any("A");
    Csat sat = bases.unit_copy(0, 3);
    sat.recursion_depth = level;
    any.search.extend_imperfect_forward(sat, bases.end());
    EXPECT_EQ(sat.recursion_depth, level);
    return in_words(sat, bases.begin());
  };
  global_maximum_recursion_depth = 3;
  EXPECT_EQ(extended_from_level(1), "[0,11) ACG@0 score 3 mis 1 del 1 5D 6M");
  EXPECT_EQ(extended_from_level(2), "[0,5) ACG@0 score 2");
  global_maximum_recursion_depth = 1;
  EXPECT_EQ(extended_from_level(255), "[0,11) ACG@0 score 3 mis 1 del 1 5D 6M");
  EXPECT_EQ(extended_from_level(0), "[0,5) ACG@0 score 2");
}

// Four hundred mismatches in a row, each made up for by its six matches: all of them are seen from
// the first one, though a level has only 256 values. The last matches pay for the whole.
TEST_F(ImperfectExtensionLimits, let_an_extension_pass_more_than_256_edits) {
  const std::string text = "ACACACACA" + repeated("TACACACGCACACA", 200) + repeated("CA", 5);
  for (const int depth : {1, 5, 255, 256, 300}) {
    global_maximum_recursion_depth = depth;
    const CBases bases(text);
    CSearchedSequence any("A");
    Csat sat = bases.unit_copy(0, 2);
    any.search.extend_imperfect_forward(sat, bases.end());
    EXPECT_EQ(sat.end, bases.end()) << depth;
    EXPECT_EQ(sat.score, 17) << depth;
    EXPECT_EQ(sat.mismatches, 400) << depth;
    EXPECT_EQ(sat.missense.size(), 400U) << depth;
    EXPECT_EQ(sat.missense[0].position, bases.at(9)) << depth;
    EXPECT_EQ(sat.missense[399].position, bases.at(9 + 399 * 7)) << depth;
  }
}

// Cached paths of extensions to the ends of the text lead beyond other limits.
TEST_F(ImperfectExtensionLimits, hold_along_an_array_with_cached_paths) {
  const std::string text = repeated("ACGTTACGTTACGAT", 200) + "ACGTTACGTT";
  CSearchedSequence sequence(text);
  const std::size_t length = text.size();
  for (int extension = 0; extension < 3; ++extension) {
    Csat sat;
    sat.init_from_unit(sequence.at(0), sequence.at(5));
    sequence.search.extend_imperfect_forward(sat, sequence.end());
    EXPECT_EQ(sat.end, sequence.end());
    sat.init_from_unit(sequence.at(0), sequence.at(5));
    sequence.search.extend_imperfect_forward(sat, sequence.at(length - 600));
    EXPECT_EQ(sat.end, sequence.at(length - 600));

    sat.init_from_unit(sequence.at(length - 5), sequence.end());
    sequence.search.extend_imperfect_backward(sat, sequence.at(0) - 1);
    EXPECT_EQ(sat.start, sequence.at(0));
    sat.init_from_unit(sequence.at(length - 5), sequence.end());
    sequence.search.extend_imperfect_backward(sat, sequence.at(599));
    EXPECT_EQ(sat.start, sequence.at(600));
  }
  EXPECT_GT(sequence.search.extender().extension_cache().paths().work().hits, 0U);
}

}  // namespace
}  // namespace quorix
