// The recurrence of the DP tables against its formula in plain numbers.

#include "search/filter/dp_cell.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

// Some processors have vectors only for functions that ask for them.
HWY_BEFORE_NAMESPACE();
namespace quorix::testing {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
namespace cell = quorix::HWY_NAMESPACE;

using Tag = hn::ScalableTag<std::uint8_t>;
using Vector = hn::Vec<Tag>;

Vector all_lanes(std::int64_t value) {
  return hn::Set(Tag(), static_cast<std::uint8_t>(value));
}

/// A base and the character that it is compared with.
struct Letters {
  char base;
  char character;
};

cell::ComparedLetters<Vector> compared(const Letters& letters, std::uint8_t neutral_letter) {
  const Vector base = all_lanes(letters.base);
  const Vector equal = hn::VecFromMask(Tag(), hn::Eq(base, all_lanes(letters.character)));
  return cell::compare_letters<true>(Tag(), base, equal, all_lanes(neutral_letter));
}

/// The formula, for values of 8 bits.
std::int64_t expected_value(std::int64_t previous, std::int64_t neighbour, const Letters& letters,
                            bool is_N_neutral, std::int64_t earned) {
  if (letters.base == 'N' && is_N_neutral) {
    // the previous value as it is
  } else if (letters.base == letters.character) {
    previous = std::min<std::int64_t>(previous + earned, 255);
  } else {
    previous -= 6;
  }
  return std::max<std::int64_t>({previous, neighbour - 4, 0});
}

TEST(DpCell, is_the_highest_of_the_previous_cell_and_both_neighbours) {
  const auto weights = cell::score_weights(Tag(), 6, 4);
  for (const Letters& letters : {Letters{'A', 'A'}, {'A', 'C'}, {'N', 'A'}, {'N', 'N'}}) {
    for (const bool is_N_neutral : {false, true}) {
      const auto how = compared(letters, is_N_neutral ? 'N' : cell::kNoNeutralLetter);
      for (std::int64_t previous = 0; previous < 256; ++previous) {
        for (const std::int64_t neighbour : {0, 1, 4, 5, 100, 254, 255}) {
          const Vector alive =
              cell::living_cell(all_lanes(previous), all_lanes(neighbour), how, weights);
          const Vector begun =
              cell::beginning_cell(all_lanes(previous), all_lanes(neighbour), how, weights);
          // A match does not wake a dead state, unless a path may begin there.
          EXPECT_EQ(hn::GetLane(alive), expected_value(previous, neighbour, letters, is_N_neutral,
                                                       previous == 0 ? 0 : 1))
              << letters.base << letters.character << previous << " " << neighbour;
          EXPECT_EQ(hn::GetLane(begun),
                    expected_value(previous, neighbour, letters, is_N_neutral, 1))
              << letters.base << letters.character << previous << " " << neighbour;
        }
      }
    }
  }
}

TEST(DpCell, knows_no_neutral_base_where_there_may_be_none) {
  const Vector base = all_lanes('N');
  const Vector unequal = hn::Zero(Tag());
  const auto letters = cell::compare_letters<false>(Tag(), base, unequal, base);
  EXPECT_EQ(hn::GetLane(letters.is_free), 0);
  EXPECT_EQ(hn::GetLane(letters.is_match), 0);
}

TEST(DpCell, cuts_points_off_at_the_highest_value) {
  EXPECT_EQ(cell::capped<std::uint8_t>(254), 254);
  EXPECT_EQ(cell::capped<std::uint8_t>(2147483648), 255);
  EXPECT_EQ(cell::capped<std::uint16_t>(65'534), 65'534);
  EXPECT_EQ(cell::capped<std::uint16_t>(2147483648), 65'535);
}

TEST(DpCell, reads_letters_as_values_of_any_width) {
  const char letters[] = "ACGTN";
  const hn::CappedTag<std::uint8_t, 1> byte;
  const hn::CappedTag<std::uint16_t, 1> word;
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(hn::GetLane(cell::load_letters(byte, letters + i)), letters[i]);
    EXPECT_EQ(hn::GetLane(cell::load_letters(word, letters + i)), letters[i]);
  }
}

}  // namespace
}  // namespace quorix::testing
HWY_AFTER_NAMESPACE();
