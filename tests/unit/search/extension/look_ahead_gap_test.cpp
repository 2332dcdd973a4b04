// A look-ahead remembers the runs of N's that it has walked over. What it remembers must not show:
// one that has been everywhere gives the same values as a fresh one.

#include <cstddef>
#include <cstdint>
#include <string>

#include "search/extension/direction.h"
#include "search/extension/look_ahead.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using LookAheadGap = testing::CSearchSettings;
using testing::CBases;

constexpr std::int64_t kUnitLength = 3;

/// Asks `seasoned` and a fresh look-ahead from every edge in every phase, for one limit.
template <class Direction>
void compare_from_all_edges(CLookAhead& seasoned, const CBases& bases, const char* first_edge,
                            const char* limit) {
  const char* const unit_begin = bases.begin();
  const LookAheadContext context{unit_begin, unit_begin + kUnitLength, kUnitLength, limit};
  for (const char* edge = first_edge; !Direction::is_at_limit(edge, limit);
       edge = Direction::edge_beyond(edge)) {
    for (std::int64_t phase = 0; phase < kUnitLength; ++phase) {
      const LookAheadState from{edge, unit_begin + phase, 4, 4, 1};
      CLookAhead fresh;
      ASSERT_EQ(seasoned.highest_score<Direction>(from, context),
                fresh.highest_score<Direction>(from, context))
          << edge - unit_begin << " " << phase;
    }
  }
}

TEST_F(LookAheadGap, a_look_ahead_that_has_been_everywhere_sees_what_a_fresh_one_sees) {
  global_mismatch_score = global_indel_score = -2;
  const CBases bases("ACGACGNNNNNACGTACGANNGACGNNNNNNNNCGACGATCGN");
  CLookAhead seasoned;
  for (int round = 0; round < 2; ++round) {
    for (int unread = 0; unread < 30; unread += 3) {
      compare_from_all_edges<Rightward>(seasoned, bases, bases.begin(), bases.end() - unread);
      compare_from_all_edges<Leftward>(seasoned, bases, bases.end(), bases.before() + unread);
    }
  }
}

// Three to the right of the N's the unit is where it was; the walk may begin anywhere in them.
TEST_F(LookAheadGap, a_jump_over_Ns_keeps_the_phase_of_the_unit) {
  for (std::size_t gap_length = 1; gap_length <= 10; ++gap_length) {
    const std::string gap(gap_length, 'N');
    const std::string after = std::string("ACGACGACG").substr(gap_length % 3, 6);
    const CBases bases("ACG" + gap + after);
    const LookAheadContext context{bases.begin(), bases.begin() + 3, kUnitLength, bases.end()};
    CLookAhead look_ahead;
    const LookAheadState from{bases.begin() + 3, bases.begin(), 0, 0, 1};
    EXPECT_EQ(look_ahead.highest_score<Rightward>(from, context), 6) << gap_length;
  }
}

}  // namespace
}  // namespace quorix
