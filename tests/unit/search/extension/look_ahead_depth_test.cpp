// How many edits a look-ahead may make. The level of the first of them comes with the call; it is
// an 8-bit count that is compared for equality with the recursion depth.

#include <cstdint>
#include <string>
#include <string_view>

#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;
using testing::CSearchedSequence;
using testing::repeated;

// Score of the start, and what a text of `climb_beyond` gives after its last mismatch.
constexpr int kScore = 7;
constexpr int kClimb = 20;

class LookAheadDepth : public testing::CSearchSettings {
 protected:
  LookAheadDepth() { search_units_of(2); }

  /// AC, then `mismatch_count` times a mismatch that its six matches make up for, then matches that
  /// a look-ahead reaches only if it gets past all mismatches. The other edits lead nowhere,
  /// since the base after the G does not fit them.
  static std::string climb_beyond(std::size_t mismatch_count) {
    return "AC" +
           repeated(
               "GCACACA"
               "TACACAC",
               mismatch_count / 2) +
           (mismatch_count % 2 == 0 ? repeated("AC", kClimb / 2)
                                    : "GCACACA" + repeated("CA", kClimb / 2));
  }

  /// The value from after the AC on, seen from `level` edits.
  static int value(std::size_t mismatch_count, std::uint8_t level) {
    const std::string text = climb_beyond(mismatch_count);
    CSearchedSequence any("A");
    const CBases bases(text);
    const Csat seed = bases.unit_copy(0, 2);
    const int forward = any.search.extend_imperfect_forward_leap_ahead(
        seed.end, seed.unit_pos_right, seed.unit_begin, seed.unit_end, kScore, 2, level,
        bases.end(), kScore);

    const CBases mirrored(std::string(text.rbegin(), text.rend()));
    const Csat mirrored_seed = mirrored.unit_copy(text.size() - 2, 2);
    EXPECT_EQ(any.search.extend_imperfect_backward_leap_ahead(
                  mirrored_seed.start, mirrored_seed.unit_pos_left, mirrored_seed.unit_begin,
                  mirrored_seed.unit_end, kScore, 2, level, mirrored.before(), kScore),
              forward);
    return forward;
  }

  static constexpr int kTop = kScore + kClimb;
};

TEST_F(LookAheadDepth, of_1_is_a_single_walk) {
  global_maximum_recursion_depth = 1;
  EXPECT_EQ(value(0, 1), kTop);
  EXPECT_EQ(value(1, 1), kScore);
}

TEST_F(LookAheadDepth, of_2_is_one_edit_after_the_first) {
  global_maximum_recursion_depth = 2;
  EXPECT_EQ(value(1, 1), kTop);
  EXPECT_EQ(value(2, 1), kScore);
}

TEST_F(LookAheadDepth, of_5_is_four_edits_after_the_first) {
  global_maximum_recursion_depth = 5;
  EXPECT_EQ(value(4, 1), kTop);
  EXPECT_EQ(value(5, 1), kScore);
}

TEST_F(LookAheadDepth, counts_from_the_level_of_the_call) {
  global_maximum_recursion_depth = 5;
  EXPECT_EQ(value(1, 4), kTop);
  EXPECT_EQ(value(2, 4), kScore);
  EXPECT_EQ(value(0, 5), kTop);
  EXPECT_EQ(value(1, 5), kScore);
  EXPECT_EQ(value(5, 0), kTop);
  EXPECT_EQ(value(6, 0), kScore);
}

TEST_F(LookAheadDepth, is_met_again_only_after_256_edits_by_a_level_beyond_it) {
  global_maximum_recursion_depth = 5;
  EXPECT_EQ(value(255, 6), kTop);
  EXPECT_EQ(value(256, 6), kScore);
}

TEST_F(LookAheadDepth, of_255_is_254_edits_after_the_first) {
  global_maximum_recursion_depth = 255;
  EXPECT_EQ(value(254, 1), kTop);
  EXPECT_EQ(value(255, 1), kScore);
}

TEST_F(LookAheadDepth, above_255_has_no_limit) {
  for (const int depth : {256, 257, 300, 2147483647}) {
    global_maximum_recursion_depth = depth;
    EXPECT_EQ(value(255, 1), kTop) << depth;
    EXPECT_EQ(value(300, 1), kTop) << depth;
    EXPECT_EQ(value(601, 1), kTop) << depth;
  }
}

// A function that calls itself for every edit would need some hundred megabytes of stack here.
TEST_F(LookAheadDepth, above_255_does_not_overflow_the_stack) {
  global_maximum_recursion_depth = 300;
  EXPECT_EQ(value(1'000'000, 1), kTop);
}

}  // namespace
}  // namespace quorix
