// How many edits a look-ahead may make. The level of the first of them comes with the call; it is
// an 8-bit count that is compared for equality with the recursion depth.

#include <cstddef>
#include <cstdint>
#include <string>

#include "unit/search/look_ahead_value.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

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
    return "AC" + repeated("GCACACATACACAC", mismatch_count / 2) +
           (mismatch_count % 2 == 0 ? repeated("AC", kClimb / 2)
                                    : "GCACACA" + repeated("CA", kClimb / 2));
  }

  /// The value from after the AC on, seen from `level` edits.
  static int value(std::size_t mismatch_count, std::uint8_t level) {
    return testing::look_ahead_value(climb_beyond(mismatch_count), 2, {kScore, kScore, level});
  }

  static constexpr int kTop = kScore + kClimb;
};

TEST_F(LookAheadDepth, limits_the_edits_beyond_the_level_of_the_call) {
  struct Case {
    int depth;
    std::uint8_t level;
    std::size_t max_mismatches;
  };
  const Case cases[] = {
      {1, 1, 0},      // no edit after the first
      {2, 1, 1},      // one
      {5, 1, 4},      // four
      {255, 1, 254},  // 254
      {5, 4, 1},      // counted from the level of the call
      {5, 5, 0},      // which may be the depth itself
      {5, 0, 5},      // or zero
      {5, 6, 255},    // A level beyond the depth meets it again after 256 edits.
  };
  for (const auto& [depth, level, max_mismatches] : cases) {
    SCOPED_TRACE("depth " + std::to_string(depth) + " level " + std::to_string(level));
    global_maximum_recursion_depth = depth;
    EXPECT_EQ(value(max_mismatches, level), kTop);
    EXPECT_EQ(value(max_mismatches + 1, level), kScore);
  }
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
