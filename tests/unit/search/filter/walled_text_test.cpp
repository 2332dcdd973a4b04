// Runs of N's that no extension enters become walls; nothing else changes.

#include "search/filter/walled_text.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "search/bits/base_planes.h"

namespace quorix::testing {
namespace {

/// A text with walls, in letters: '#' is one.
struct Walled {
  std::string letters;
  bool is_copy;
  bool has_Ns;
};

Walled walled(const std::string& text, std::optional<std::int64_t> max_Ns_in_a_row) {
  const CBasePlanes planes(text.data(), text.size());
  const CWalledText result(text.data(), planes.bits_of_Ns(), max_Ns_in_a_row);
  std::string letters(result.begin(), text.size());
  for (char& letter : letters) {
    if (letter == kWallLetter) letter = '#';
  }
  return {letters, result.begin() != text.data(), result.has_Ns()};
}

TEST(WalledText, turns_runs_that_are_too_long_into_walls) {
  const Walled text = walled("ACNNGTNNNCANNNNNNT", 2);
  EXPECT_EQ(text.letters, "ACNNGT###CA######T");
  EXPECT_TRUE(text.is_copy);
  EXPECT_TRUE(text.has_Ns);
}

TEST(WalledText, has_walls_at_both_ends) {
  const Walled text = walled("NNACGTNN", 1);
  EXPECT_EQ(text.letters, "##ACGT##");
  EXPECT_FALSE(text.has_Ns);
}

TEST(WalledText, may_be_one_wall) {
  EXPECT_EQ(walled("NNNNN", 4).letters, "#####");
}

TEST(WalledText, has_walls_across_words) {
  const std::string text = std::string(60, 'A') + std::string(200, 'N') + std::string(60, 'C');
  EXPECT_EQ(walled(text, 199).letters,
            std::string(60, 'A') + std::string(200, '#') + std::string(60, 'C'));
  EXPECT_FALSE(walled(text, 200).is_copy);
}

TEST(WalledText, is_the_text_itself_without_walls) {
  for (const std::optional<std::int64_t> max_Ns_in_a_row :
       {std::optional<std::int64_t>(3), {std::numeric_limits<std::int64_t>::max()}, {}}) {
    const Walled text = walled("ACNNNGT", max_Ns_in_a_row);
    EXPECT_EQ(text.letters, "ACNNNGT");
    EXPECT_FALSE(text.is_copy);
    EXPECT_TRUE(text.has_Ns);
  }
  EXPECT_FALSE(walled("ACGT", 1).has_Ns);
  EXPECT_FALSE(walled("", 1).is_copy);
}

}  // namespace
}  // namespace quorix::testing
