// Letters that are copied in groups: what one letter means may not depend on where it stands.

#include "sequence/base_letters.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace quorix {
namespace {

/// More than two groups of whatever size.
constexpr std::size_t kLongest = 80;
constexpr char kUntouched = '~';

/// Letters of bases in either case, in which every neighbourhood differs a little.
std::string letters_of_length(std::size_t length) {
  std::string letters;
  for (std::size_t i = 0; i < length; ++i) letters += "ACGTNacgtn"[(i * i / 3 + i) % 10];
  return letters;
}

/// The bases up to the first letter that stands for none, one by one.
std::string bases_of(const std::string& letters) {
  std::string bases;
  for (const char letter : letters) {
    const char base = base_of(static_cast<unsigned char>(letter));
    if (base == kDroppedLetter || base == kNoLetter) break;
    bases += base;
  }
  return bases;
}

/// Expects that `letters` are copied as they are one by one, and that nothing after is written.
void expect_copied(const std::string& letters) {
  const std::string expected = bases_of(letters);
  std::string bases(letters.size() + 1, kUntouched);
  ASSERT_EQ(copy_bases(letters.data(), letters.size(), bases.data()), expected.size())
      << ::testing::PrintToString(letters);
  ASSERT_EQ(bases.substr(0, expected.size()), expected);
  ASSERT_EQ(bases.back(), kUntouched);
}

TEST(BaseLetters, stand_for_a_base_or_are_dropped_or_not_allowed) {
  EXPECT_EQ(base_of('g'), 'G');
  EXPECT_EQ(base_of('U'), 'T');
  EXPECT_EQ(base_of('y'), 'N');
  EXPECT_EQ(base_of('*'), kDroppedLetter);
  EXPECT_EQ(base_of('\r'), kDroppedLetter);
  EXPECT_EQ(base_of('1'), kNoLetter);
  EXPECT_EQ(base_of(0), kNoLetter);
  EXPECT_EQ(base_of(255), kNoLetter);
}

TEST(BaseLetters, are_copied_in_upper_case_at_every_length) {
  for (std::size_t length = 0; length <= kLongest; ++length) {
    ASSERT_EQ(bases_of(letters_of_length(length)).size(), length);
    ASSERT_NO_FATAL_FAILURE(expect_copied(letters_of_length(length)));
  }
}

TEST(BaseLetters, of_every_value_mean_the_same_at_every_place) {
  for (const std::size_t length : {15U, 16U, 17U, 40U}) {
    for (std::size_t place = 0; place < length; ++place) {
      for (int value = 0; value < 256; ++value) {
        std::string letters = letters_of_length(length);
        letters[place] = static_cast<char>(value);
        ASSERT_NO_FATAL_FAILURE(expect_copied(letters));
      }
    }
  }
}

TEST(BaseLetters, are_copied_up_to_the_first_of_two_odd_ones) {
  for (std::size_t length = 2; length <= kLongest; ++length) {
    for (std::size_t first = 0; first < length; ++first) {
      for (const std::size_t second : {first + 1, first + 7, first + 16, length - 1}) {
        for (const char kind : {'U', 'r', '-', '\r', '>', '\xC1'}) {
          std::string letters = letters_of_length(length);
          letters[first] = kind;
          if (second < length) letters[second] = ' ';
          ASSERT_NO_FATAL_FAILURE(expect_copied(letters));
        }
      }
    }
  }
}

}  // namespace
}  // namespace quorix
