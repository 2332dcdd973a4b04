// Lines that are taken in stretches: where a stretch ends, because a block of input does, the line
// or the room for bases, nothing may be lost, doubled or counted wrongly.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "record_reading.h"

namespace quorix {
namespace {

using testing::CScriptedFile;
using testing::in_pieces;
using testing::kCleanEnd;
using testing::kFormatError;
using testing::kMoreFollows;
using testing::read_of;
using testing::read_records;
using testing::ReadRecord;
using Records = std::vector<ReadRecord>;

constexpr std::string_view kLineEnds[] = {"\n", "\r\n", "\r"};

/// Bases in which every neighbourhood differs a little.
std::string bases_of_length(std::size_t length) {
  std::string bases;
  for (std::size_t i = 0; i < length; ++i) bases += "ACGTN"[(i * i / 3 + i) % 5];
  return bases;
}

TEST(FastaStretches, of_lines_of_any_length_read_the_same_with_every_line_end_in_any_pieces) {
  std::vector<std::size_t> lengths;
  for (std::size_t length = 0; length <= 40; ++length) lengths.push_back(length);
  for (const std::size_t length : {511U, 512U, 513U, 1023U, 1024U, 1025U, 5000U}) {
    lengths.push_back(length);
  }
  for (const std::size_t length : lengths) {
    const std::string line = bases_of_length(length);
    for (const std::string_view end : kLineEnds) {
      std::string text = ">one";
      for (const std::string& part : {std::string(), line, line, std::string(">b"), line}) {
        text += part + std::string(end);
      }
      for (const std::size_t piece_length : {1U, 15U, 16U, 17U, 64U, 513U, 100'000U}) {
        const Records expected = {{"one", line + line, kMoreFollows, 4}, {"b", line, kCleanEnd, 6}};
        ASSERT_EQ(read_records(in_pieces(text, piece_length)), expected)
            << length << " bases, pieces of " << piece_length;
      }
    }
  }
}

/// The bases that are read of `bases` with `odd` before the base at `place`.
std::string bases_with_odd(const std::string& bases, std::size_t place, char odd) {
  if (odd == '-' || odd == '\r') return bases;
  return std::string(bases).insert(place, 1, odd == 'u' ? 'T' : 'N');
}

TEST(FastaStretches, take_an_odd_character_at_every_place_of_a_line_in_any_pieces) {
  for (std::size_t length = 1; length <= 40; ++length) {
    const std::string bases = bases_of_length(length);
    std::string text;
    Records expected;
    std::uint64_t line = 1;
    for (std::size_t place = 0; place < length; ++place) {
      for (const char odd : {'u', 'R', '-', '\r'}) {
        text += ">s\n" + std::string(bases).insert(place, 1, odd) + "\nGT\n";
        line += odd == '\r' ? 4 : 3;
        expected.push_back({"s", bases_with_odd(bases, place, odd) + "GT", kMoreFollows, line});
      }
    }
    expected.back().state = kCleanEnd;
    for (const std::size_t piece_length : {1U, 3U, 16U, 100U}) {
      ASSERT_EQ(read_records(in_pieces(text, piece_length)), expected)
          << length << " bases, pieces of " << piece_length;
    }
  }
}

TEST(FastaStretches, end_at_a_digit_at_every_place_of_a_line_in_any_pieces) {
  for (std::size_t length = 1; length <= 40; ++length) {
    const std::string bases = bases_of_length(length);
    for (std::size_t place = 0; place < length; ++place) {
      const std::string text = ">s\n" + std::string(bases).insert(place, 1, '7') + "\nGT\n";
      const Records expected = {{"s", bases.substr(0, place), kFormatError, 2}};
      for (const std::size_t piece_length : {1U, 3U, 16U, 100U}) {
        ASSERT_EQ(read_records(in_pieces(text, piece_length)), expected)
            << ::testing::PrintToString(text) << " in pieces of " << piece_length;
      }
    }
  }
}

TEST(FastaStretches, may_end_after_a_cr_whose_lf_comes_with_the_next_block) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string bases = bases_of_length(length);
    const ReadRecord expected = {"s", bases + "GT", kCleanEnd, 4};
    EXPECT_EQ(read_records({read_of(">s\n" + bases + "\r"), read_of("\nGT\r\n")}),
              Records{expected});
    EXPECT_EQ(read_records({read_of(">s\r"), read_of("\n" + bases + "\r"), read_of("GT\r")}),
              Records{expected});
  }
}

TEST(FastaStretches, of_a_line_longer_than_a_block_of_input_are_joined) {
  const std::string bases = bases_of_length(2'300'007);
  std::string letters = bases;
  letters.insert(1'500'000, "-\t");
  letters.insert(1'000'000, " ");
  const Records records = read_records(in_pieces(">s\n" + letters + "\n", 10'000'000));
  ASSERT_EQ(records.size(), 1U);
  EXPECT_TRUE(records[0] == (ReadRecord{"s", bases, kCleanEnd, 3}));
}

TEST(FastaStretches, of_a_name_are_joined_whatever_its_length) {
  for (const std::size_t length : {0U, 1U, 511U, 512U, 513U, 1024U, 3000U}) {
    std::string name(length, 'x');
    if (length > 0) name.back() = '\0';
    for (const std::string_view end : kLineEnds) {
      const std::string text = ">" + name + std::string(end) + "AC" + std::string(end) + ">t";
      for (const std::size_t piece_length : {1U, 7U, 512U, 100'000U}) {
        const Records expected = {{name, "AC", kMoreFollows, 3}, {"t", "", kCleanEnd, 3}};
        ASSERT_EQ(read_records(in_pieces(text, piece_length)), expected)
            << length << " characters, pieces of " << piece_length;
      }
    }
  }
}

TEST(FastaStretches, let_the_block_of_bases_grow_as_single_bases_do) {
  for (std::size_t length = 0; length <= 70; ++length) {
    for (const std::string_view odd : {"", "-", "U"}) {
      CSequence_Mol record;
      record.sequence = faststring();  // without a block
      faststring grown;
      CScriptedFile file(in_pieces(bases_of_length(length) + std::string(odd) + "\n", 1000));
      record.getLineOfDNA(file);
      const std::size_t base_count = length + (odd == "U" ? 1 : 0);
      for (std::size_t i = 0; i < base_count; ++i) grown.push_back('A');
      ASSERT_EQ(record.sequence.size(), base_count);
      ASSERT_EQ(record.sequence.capacity(), grown.capacity()) << base_count << " bases";
    }
  }
}

TEST(FastaStretches, do_not_let_a_full_block_grow_for_what_is_no_base) {
  for (const std::string_view rest : {"", "\n", "\r\n", "--\n", " *\r", "7"}) {
    CSequence_Mol record;
    record.sequence = faststring();
    CScriptedFile file(in_pieces(bases_of_length(32) + std::string(rest), 1000));
    record.getLineOfDNA(file);
    EXPECT_EQ(record.sequence.size(), 32U);
    EXPECT_EQ(record.sequence.capacity(), 32U) << ::testing::PrintToString(rest);
  }
}

}  // namespace
}  // namespace quorix
