// The order of repeat lists, as the sort of the list itself makes it.

#include "search/modes/sat_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <string>
#include <vector>

#include "support/random_dna.h"

namespace quorix {
namespace {

using testing::draw_between;
using testing::draw_chance;
using testing::RandomEngine;

/// Repeats of one text, in any order.
class CRepeats {
 public:
  /// Stretches of ascending starts, hardly ever broken if `disorder_percent` is low.
  CRepeats(RandomEngine& engine, std::size_t count, std::size_t disorder_percent)
      : text_(kTextLength, 'A'), records_(count) {
    std::size_t start = 0;
    for (Csat& record : records_) {
      start = draw_chance(engine, disorder_percent)
                  ? draw_between(engine, 0, kTextLength - kLongest)
                  : std::min(start + draw_between(engine, 0, 2), kTextLength - kLongest);
      record.start = text_.data() + start;
      record.end = record.start + draw_between(engine, 1, kLongest);
      list.push_back(&record);
    }
  }

  std::list<Csat*> list;

 private:
  static constexpr std::size_t kTextLength = 200;
  static constexpr std::size_t kLongest = 3;

  std::string text_;
  std::vector<Csat> records_;
};

TEST(SortByPosition, sorts_like_a_stable_sort_of_the_list) {
  RandomEngine engine(1);
  for (std::size_t count = 0; count < 300; ++count) {
    for (const std::size_t disorder_percent : {0U, 2U, 30U, 100U}) {
      CRepeats repeats(engine, count, disorder_percent);
      std::list<Csat*> expected = repeats.list;
      expected.sort(lessThan_sat);
      sort_by_position(repeats.list);
      ASSERT_EQ(repeats.list, expected) << count << " repeats";
    }
  }
}

TEST(SortByPosition, leaves_equal_repeats_in_their_order) {
  RandomEngine engine(1);
  CRepeats repeats(engine, 50, 100);
  for (Csat* const repeat : repeats.list) {
    repeat->start = repeats.list.front()->start;
    repeat->end = repeats.list.front()->end;
  }
  const std::list<Csat*> expected = repeats.list;
  sort_by_position(repeats.list);
  EXPECT_EQ(repeats.list, expected);
}

}  // namespace
}  // namespace quorix
