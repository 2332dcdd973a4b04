// Bases beyond an edge against a unit on many diagonals: each bit is compared with a plain count.

#include "search/bits/match_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "search/extension/direction.h"
#include "support/filter/plain_match_rows.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;
using testing::draw_between;
using testing::draw_letters;
using testing::RandomEngine;
using testing::repeated;

/// `text` and `unit` are in the order in which they lie.
template <class Direction>
void expect_plain_rows(const std::string& text, const std::string& unit, std::int64_t phase) {
  const CBases bases(text);
  const CBases characters(unit);
  ASSERT_EQ(testing::fault_of_match_window<Direction>(bases.begin(), text, characters.begin(), unit,
                                                      phase),
            "");
}

TEST(MatchWindow, shows_every_match_of_every_diagonal) {
  RandomEngine engine(1);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = draw_letters(engine, draw_between(engine, 1, 60), "ACGT");
    const std::string unit = draw_letters(engine, draw_between(engine, 1, 70), "ACGT");
    const auto phase = static_cast<std::int64_t>(draw_between(engine, 0, unit.size() - 1));
    SCOPED_TRACE(text + " " + unit);
    expect_plain_rows<Rightward>(text, unit, phase);
    expect_plain_rows<Leftward>(text, unit, phase);
    if (HasFatalFailure()) return;
  }
}

TEST(MatchWindow, ends_before_the_first_N) {
  for (std::size_t first_N = 0; first_N < 50; ++first_N) {
    std::string text(first_N + 66, 'C');
    text.replace(0, first_N + 6, repeated("A", first_N) + "NACGTN");
    expect_plain_rows<Rightward>(text, "AC", 0);
    std::reverse(text.begin(), text.end());
    expect_plain_rows<Leftward>(text, "CA", 1);
  }
}

TEST(MatchWindow, holds_nothing_if_the_unit_has_an_N) {
  const CBases bases("ACGTACGT");
  const CBases unit("ANC");
  CMatchWindow window;
  window.read<Rightward>(bases.begin(), bases.end(), unit.begin(), unit.begin(), unit.end());
  EXPECT_EQ(window.size(), 0);
}

TEST(MatchWindow, holds_nothing_once_cleared) {
  const CBases bases("ACGTACGT");
  CMatchWindow window;
  EXPECT_EQ(window.size(), 0);
  window.read<Rightward>(bases.begin(), bases.end(), bases.begin(), bases.begin(), bases.at(4));
  EXPECT_EQ(window.size(), 8);
  window.clear();
  EXPECT_EQ(window.size(), 0);
}

}  // namespace
}  // namespace quorix
