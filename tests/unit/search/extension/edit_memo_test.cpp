// What is remembered of an edit, and for which stops it holds.

#include "search/extension/edit_memo.h"

#include <gtest/gtest.h>

#include <string>

#include "unit/search/work_in_words.h"

namespace quorix {
namespace {

using testing::in_words;

constexpr char kText[] = "ACGTACGTACGTACGT";

std::uint64_t code(const std::string& unit, std::size_t phase, bool is_rightward) {
  return CEditMemo::code_of(unit.data() + phase, unit.data(), unit.data() + unit.size(),
                            is_rightward);
}

EditSite site(std::size_t edge, std::uint64_t unit_code, std::int64_t score) {
  return {kText + edge, kText + 16, unit_code, score};
}

TEST(EditMemoCode, is_the_same_for_all_turns_of_a_unit_with_the_same_character_next) {
  for (const bool is_rightward : {false, true}) {
    EXPECT_EQ(code("ACGGT", 2, is_rightward), code("GGTAC", 0, is_rightward));
    EXPECT_EQ(code("ACGGT", 4, is_rightward), code("TACGG", 0, is_rightward));
    EXPECT_NE(code("ACGGT", 2, is_rightward), code("ACGGT", 3, is_rightward));
  }
}

TEST(EditMemoCode, tells_bases_lengths_and_directions_apart) {
  EXPECT_NE(code("ACG", 0, true), code("ACT", 0, true));
  EXPECT_NE(code("A", 0, true), code("AA", 0, true));
  EXPECT_NE(code("AA", 0, true), code("AA", 0, false));
  const std::string longest(CEditMemo::kLongestUnit, 'G');
  std::string other = longest;
  other[0] = 'C';
  EXPECT_NE(code(longest, 0, true), code(other, 0, true));
  EXPECT_NE(code(longest, 0, true), code(longest, 0, false));
}

TEST(EditMemo, knows_nothing_at_first) {
  CEditMemo memo;
  EXPECT_EQ(memo.find(site(3, 7, 1)), '\0');
}

TEST(EditMemo, gives_back_what_was_kept_for_that_very_stop_alone) {
  CEditMemo memo;
  memo.keep(site(3, 7, 1), 'I');
  EXPECT_EQ(memo.find(site(3, 7, 1)), 'I');
  EXPECT_EQ(memo.find(site(4, 7, 1)), '\0');
  EXPECT_EQ(memo.find(site(3, 8, 1)), '\0');
  EXPECT_EQ(memo.find(site(3, 7, 2)), '\0');
  EXPECT_EQ(memo.find({kText + 3, kText + 15, 7, 1}), '\0');
}

TEST(EditMemo, keeps_the_last_choice_of_a_stop) {
  CEditMemo memo;
  memo.keep(site(3, 7, 1), 'I');
  memo.keep(site(3, 7, 1), 'D');
  EXPECT_EQ(memo.find(site(3, 7, 1)), 'D');
}

TEST(EditMemo, forgets_few_of_as_many_stops_as_it_has_room_for) {
  for (const std::uint64_t count : {30U, 100U, 500U, 2000U, 8000U}) {
    CEditMemo memo;
    for (std::uint64_t i = 0; i < count; ++i) memo.keep(site(i % 16, i, 0), 'I');
    std::uint64_t known = 0;
    for (std::uint64_t i = 0; i < count; ++i) known += memo.find(site(i % 16, i, 0)) == 'I' ? 1 : 0;
    EXPECT_GT(known, count / 2) << count;
  }
}

TEST(EditMemo, never_gives_the_choice_of_another_stop_when_it_is_full) {
  CEditMemo memo;
  constexpr std::uint64_t kMany = 100'000;
  const auto kind_of = [](std::uint64_t i) { return "MID"[i % 3]; };
  for (std::uint64_t i = 0; i < kMany; ++i) memo.keep(site(i % 16, i, 0), kind_of(i));
  std::uint64_t known = 0;
  for (std::uint64_t i = 0; i < kMany; ++i) {
    const char kind = memo.find(site(i % 16, i, 0));
    if (kind == '\0') continue;
    ++known;
    EXPECT_EQ(kind, kind_of(i));
  }
  EXPECT_GT(known, 1000U);
}

// The counts were read off the memo: they show where it forgets more, or moves more.
TEST(EditMemo, finds_and_moves_as_many_as_its_places_allow_for) {
  CEditMemo memo;
  for (std::uint64_t i = 0; i < 30'000; ++i) {
    memo.keep(site(i % 16, i / 5, static_cast<std::int64_t>(i % 7)), 'I');
    (void)memo.find(site(i / 2 % 16, i / 10, static_cast<std::int64_t>(i / 2 % 7)));
    if (i == 1000) {
      EXPECT_EQ(in_words(memo.work()), "memo: hits 895, misses 106, stored 1001, moved 537\n");
    }
  }
  EXPECT_EQ(in_words(memo.work()), "memo: hits 17878, misses 12122, stored 30000, moved 2123\n");
}

TEST(EditMemo, forgets_everything_when_it_is_cleared) {
  CEditMemo memo;
  memo.keep(site(3, 7, 1), 'I');
  memo.clear();
  EXPECT_EQ(memo.find(site(3, 7, 1)), '\0');
}

}  // namespace
}  // namespace quorix
