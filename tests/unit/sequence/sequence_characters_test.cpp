// What each of the 256 byte values means, by the place where it stands.

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "record_reading.h"

namespace quorix {
namespace {

using testing::kCleanEnd;
using testing::kFormatError;
using testing::kMoreFollows;
using testing::read_records;
using testing::ReadRecord;
using Records = std::vector<ReadRecord>;

/// The meaning of every byte value in a sequence line, in rows of 16: a base, '.' for a character
/// that is dropped, '/' for a line end and '!' for one that is not allowed.
constexpr std::array<std::string_view, 16> kMeanings = {
    "!!!!!!!!!./../!!",  // tab, line feed, vertical tab, form feed and carriage return
    "!!!!!!!!!!!!!!!!",  //
    ".!!!!!!!!!.!!.!!",  // blank, '*' and '-'
    "!!!!!!!!!!!!!!!!",  // 0123456789:;<=>?
    "!ANCN!!GN!!N!NN!",  // @ABCDEFGHIJKLMNO
    "!!NNTTNNNN!!!!!!",  // PQRSTUVWXYZ[\]^_
    "!ANCN!!GN!!N!NN!",  // `abcdefghijklmno
    "!!NNTTNNNN!!!!!!",  // pqrstuvwxyz{|}~ and delete
    "!!!!!!!!!!!!!!!!", "!!!!!!!!!!!!!!!!", "!!!!!!!!!!!!!!!!", "!!!!!!!!!!!!!!!!",
    "!!!!!!!!!!!!!!!!", "!!!!!!!!!!!!!!!!", "!!!!!!!!!!!!!!!!", "!!!!!!!!!!!!!!!!",
};

/// The records of ">s", a line feed, the bases `before`, the character and the base G, where that
/// character has the meaning `meaning`.
Records records_with(char meaning, const std::string& before) {
  switch (meaning) {
    case '!':
      return {{"s", before, kFormatError, 2}};
    case '/':
      return {{"s", before + "G", kCleanEnd, 3}};
    case '.':
      return {{"s", before + "G", kCleanEnd, 2}};
    default:
      return {{"s", before + meaning + "G", kCleanEnd, 2}};
  }
}

TEST(FastaCharacters, mean_what_the_table_says_inside_a_sequence_line) {
  for (unsigned value = 0; value < 256; ++value) {
    const std::string text = ">s\nAC" + std::string(1, static_cast<char>(value)) + "G";
    EXPECT_EQ(read_records(text), records_with(kMeanings[value / 16][value % 16], "AC"))
        << "value " << value;
  }
}

TEST(FastaCharacters, mean_the_same_at_the_beginning_of_a_sequence_line_but_for_the_sign) {
  for (unsigned value = 0; value < 256; ++value) {
    const std::string text = ">s\n" + std::string(1, static_cast<char>(value)) + "G";
    Records expected = records_with(kMeanings[value / 16][value % 16], "");
    if (value == '>') expected = {{"s", "", kMoreFollows, 2}, {"G", "", kCleanEnd, 2}};
    EXPECT_EQ(read_records(text), expected) << "value " << value;
  }
}

TEST(FastaCharacters, mean_the_same_as_the_last_byte_of_the_file) {
  for (unsigned value = 0; value < 256; ++value) {
    const char meaning = kMeanings[value / 16][value % 16];
    Records expected = {{"s", "AC", kCleanEnd, 2}};
    if (meaning == '!') {
      expected[0].state = kFormatError;
    } else if (meaning == '/') {
      expected[0].line_number = 3;
    } else if (meaning != '.') {
      expected[0].bases += meaning;
    }
    EXPECT_EQ(read_records(">s\nAC" + std::string(1, static_cast<char>(value))), expected)
        << "value " << value;
  }
}

TEST(FastaCharacters, may_come_before_the_first_header_only_as_white_space_or_a_comment) {
  for (unsigned value = 0; value < 256; ++value) {
    const std::string text = std::string(1, static_cast<char>(value)) + ">s\n>t\nAC";
    Records expected = {{"", "", kFormatError, 1}};
    if (value == '\t' || value == '\v' || value == '\f' || value == ' ') {
      expected = {{"s", "", kMoreFollows, 2}, {"t", "AC", kCleanEnd, 3}};
    } else if (value == '\n' || value == '\r') {
      expected = {{"s", "", kMoreFollows, 3}, {"t", "AC", kCleanEnd, 4}};
    } else if (value == '#') {  // takes the first header's line
      expected = {{"t", "AC", kCleanEnd, 3}};
    } else if (value == '>') {
      expected = {{">s", "", kMoreFollows, 2}, {"t", "AC", kCleanEnd, 3}};
    }
    EXPECT_EQ(read_records(text), expected) << "value " << value;
  }
}

}  // namespace
}  // namespace quorix
