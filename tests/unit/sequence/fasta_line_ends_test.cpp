#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "record_reading.h"

namespace quorix {
namespace {

using testing::expect_records;
using testing::in_pieces;
using testing::kCleanEnd;
using testing::kFormatError;
using testing::kMoreFollows;
using testing::kPieceLengths;
using testing::read_records;
using testing::ReadRecord;
using Records = std::vector<ReadRecord>;

/// `text` with each line feed replaced.
std::string with_line_ends(std::string_view text, std::string_view line_end) {
  std::string replaced;
  for (const char character : text) {
    if (character == '\n') {
      replaced += line_end;
    } else {
      replaced += character;
    }
  }
  return replaced;
}

TEST(FastaLineEnds, read_the_same_as_crlf_as_lone_cr_and_as_lf_and_count_once_each) {
  const std::string_view text = "# note\n\n>one\nAC\n\nGT\n>two\n>three\nA\n\n";
  const Records expected = {{"one", "ACGT", kMoreFollows, 7},
                            {"two", "", kMoreFollows, 8},
                            {"three", "A", kCleanEnd, 11}};
  for (const std::string_view line_end : {"\n", "\r\n", "\r"}) {
    expect_records(with_line_ends(text, line_end), expected);
  }
}

TEST(FastaLineEnds, give_the_line_of_a_format_error_as_crlf_as_lone_cr_and_as_lf) {
  for (const std::string_view line_end : {"\n", "\r\n", "\r"}) {
    expect_records(with_line_ends(">one\nAC\n\nG7\nAC\n", line_end),
                   {{"one", "ACG", kFormatError, 4}});
    expect_records(with_line_ends("\n\nAC\n", line_end), {{"", "", kFormatError, 3}});
  }
}

TEST(FastaLineEnds, may_be_mixed) {
  expect_records(">one\rAC\r\nGT\n\r>two\n\r\nA\r\rC\r\n",
                 {{"one", "ACGT", kMoreFollows, 5}, {"two", "AC", kCleanEnd, 10}});
}

TEST(FastaLineEnds, may_be_missing_or_a_lone_cr_at_the_end_of_the_file) {
  expect_records(">one\r", {{"one", "", kCleanEnd, 2}});
  expect_records(">\r", {{"", "", kCleanEnd, 2}});
  expect_records(">one\rAC\r", {{"one", "AC", kCleanEnd, 3}});
  expect_records(">one\rAC", {{"one", "AC", kCleanEnd, 2}});
  expect_records(">one\rAC\r\r", {{"one", "AC", kCleanEnd, 4}});
  expect_records("#note\r", {{"", "", kFormatError, 2}});
}

TEST(FastaLineEnds, may_stand_where_a_block_ends) {
  // The line end begins some bytes before, at or after the end of the first full block.
  for (const std::string_view line_end : {"\n", "\r\n", "\r"}) {
    for (std::size_t start = 999'998; start <= 1'000'001; ++start) {
      const std::string bases(start - 3, 'A');
      const std::string text = ">s\n" + bases + std::string(line_end) + "C" +
                               std::string(line_end) + ">t" + std::string(line_end) + "7";
      const Records records = read_records(in_pieces(text, 1'000'000));
      ASSERT_EQ(records.size(), 2U);
      EXPECT_TRUE(records[0] == (ReadRecord{"s", bases + "C", kMoreFollows, 4}));
      EXPECT_EQ(records[1], (ReadRecord{"t", "", kFormatError, 5}));
    }
  }
}

TEST(FastaReader, does_not_depend_on_the_pieces_that_the_input_comes_in) {
  constexpr unsigned kSeed = 4242;
  constexpr std::string_view kCharacters = "AACCGGTTNacgtnuRY-* \n\n\n\n\r\r\r>>#9";
  std::mt19937 random(kSeed);
  for (int round = 0; round < 150; ++round) {
    std::string text = random() % 4 == 0 ? "" : ">";
    for (std::size_t length = random() % 200; length > 0; --length) {
      text += kCharacters[random() % kCharacters.size()];
    }
    const Records whole = read_records(text);
    for (const std::size_t piece_length : kPieceLengths) {
      ASSERT_EQ(read_records(in_pieces(text, piece_length)), whole)
          << "seed " << kSeed << ", pieces of " << piece_length << ": "
          << ::testing::PrintToString(text);
    }
  }
}

TEST(FastaReader, takes_uneven_short_reads) {
  using testing::read_of;
  EXPECT_EQ(read_records({read_of(">"), read_of("one two"), read_of("\r"), read_of("\nA"),
                          read_of("CG\r\n\r"), read_of("T"), read_of("\n>"), read_of("x")}),
            (Records{{"one two", "ACGT", kMoreFollows, 5}, {"x", "", kCleanEnd, 5}}));
}

TEST(FastaReader, reads_a_record_of_several_blocks_in_any_pieces) {
  std::string bases;
  std::string text = ">long\n";
  for (std::size_t line = 0; line < 30'000; ++line) {
    const std::string line_bases = std::string(line % 90, 'A') + "CGT";
    bases += line_bases;
    text += line_bases + (line % 3 == 0 ? "\n" : line % 3 == 1 ? "\r\n" : "\r");
  }
  ASSERT_GT(text.size(), 1'400'000U);
  for (const std::size_t piece_length : {7U, 4096U, 1'000'000U}) {
    const Records records = read_records(in_pieces(text, piece_length));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_TRUE(records[0] == (ReadRecord{"long", bases, kCleanEnd, 30'002}));
  }
}

}  // namespace
}  // namespace quorix
