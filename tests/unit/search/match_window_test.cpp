// Bases beyond an edge against a unit at many drifts: each bit is held against a plain count.

#include "search/match_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "search/direction.h"
#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;
using testing::draw_between;
using testing::draw_letters;
using testing::RandomEngine;
using testing::repeated;

/// The unit character that base `offset` has to match at `drift`, if the first one is at `phase`.
char character_at(const std::string& unit, std::int64_t phase, std::int64_t offset,
                  std::ptrdiff_t drift) {
  const auto length = static_cast<std::int64_t>(unit.size());
  const std::int64_t index = (phase + offset - drift) % length;
  return unit[static_cast<std::size_t>(index < 0 ? index + length : index)];
}

/// `text` and `unit` are in the order in which they are read.
template <class Direction>
void expect_plain_rows(std::string text, std::string unit, std::int64_t phase) {
  const std::string read_text = text;
  const std::string read_unit = unit;
  if (Direction::kIndex == Leftward::kIndex) {
    std::reverse(text.begin(), text.end());
    std::reverse(unit.begin(), unit.end());
  }
  const CBases bases(text);
  const CBases characters(unit);
  const auto length = static_cast<std::int64_t>(unit.size());
  const bool is_rightward = Direction::kIndex == Rightward::kIndex;
  CMatchWindow window;
  window.read<Direction>(is_rightward ? bases.begin() : bases.end(),
                         is_rightward ? bases.end() : bases.before(),
                         characters.begin() + (is_rightward ? phase : length - 1 - phase),
                         characters.begin(), characters.end());
  const std::int64_t size =
      std::min(CMatchWindow::kMostBases,
               static_cast<std::int64_t>(std::min(read_text.find('N'), read_text.size())));
  ASSERT_EQ(window.size(), size);
  if (size == 0) return;
  for (std::ptrdiff_t drift = -CMatchWindow::kMostDrift; drift <= CMatchWindow::kMostDrift;
       ++drift) {
    std::uint64_t expected = 0;
    for (std::int64_t i = 0; i < size; ++i) {
      const bool is_match =
          read_text[static_cast<std::size_t>(i)] == character_at(read_unit, phase, i, drift);
      expected |= static_cast<std::uint64_t>(is_match) << static_cast<unsigned>(i);
    }
    ASSERT_EQ(window.row(drift), expected) << "drift " << drift;
  }
}

TEST(MatchWindow, tells_every_match_of_every_drift) {
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

TEST(MatchWindow, ends_in_front_of_the_first_N) {
  for (std::size_t first_N = 0; first_N < 50; ++first_N) {
    std::string text(first_N + 66, 'C');
    text.replace(0, first_N + 6, repeated("A", first_N) + "NACGTN");
    expect_plain_rows<Rightward>(text, "AC", 0);
    expect_plain_rows<Leftward>(text, "AC", 1);
  }
}

TEST(MatchWindow, holds_nothing_if_the_unit_holds_an_N) {
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
