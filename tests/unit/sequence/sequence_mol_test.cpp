#include "sequence/sequence_mol.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "record_reading.h"

namespace quorix {
namespace {

using testing::CScriptedFile;
using testing::expect_records;
using testing::in_pieces;
using testing::kCleanEnd;
using testing::kFormatError;
using testing::kMoreFollows;
using testing::read_of;
using testing::read_record;
using testing::ReadRecord;

TEST(SequenceMol, is_nameless_empty_dna_with_room_for_10000000_bases_at_first) {
  const CSequence_Mol record;
  EXPECT_EQ(record.name, "");
  EXPECT_EQ(record.sequence.size(), 0U);
  EXPECT_EQ(record.sequence.capacity(), 10'000'001U);
  EXPECT_EQ(record.seq_type, 0);
}

TEST(FastaReader, joins_the_lines_of_a_record_and_tells_whether_more_follows) {
  expect_records(">one\nACGT\nAC\n>two\nGG\n>three\nT\n", {{"one", "ACGTAC", kMoreFollows, 4},
                                                           {"two", "GG", kMoreFollows, 6},
                                                           {"three", "T", kCleanEnd, 8}});
}

TEST(FastaReader, stores_lower_case_bases_in_upper_case_and_reads_u_as_t) {
  expect_records(">s\nacgu\n", {{"s", "ACGT", kCleanEnd, 3}});
  expect_records(">s\nACGU\n", {{"s", "ACGT", kCleanEnd, 3}});
}

TEST(FastaReader, reads_ambiguity_codes_as_n) {
  expect_records(">s\nryk\n", {{"s", "NNN", kCleanEnd, 3}});
  expect_records(">s\nXRYKMSWBDHVN\n", {{"s", "NNNNNNNNNNNN", kCleanEnd, 3}});
}

TEST(FastaReader, drops_gaps_stars_and_white_space_in_a_sequence_line) {
  expect_records(">s\n-A-C*G *\t T \v\f*\n  \nA\n", {{"s", "ACGTA", kCleanEnd, 5}});
}

TEST(FastaReader, stops_at_a_digit_in_a_sequence_line_with_a_format_error_at_that_line) {
  expect_records(">s\nACGT\nAC1GT\nAC\n>t\nA\n", {{"s", "ACGTAC", kFormatError, 3}});
  expect_records(">s\n1ACGT\n", {{"s", "", kFormatError, 2}});
}

TEST(FastaReader, keeps_a_format_error_that_is_the_last_byte_and_has_no_line_end_after_it) {
  expect_records(">s\nACGT\nAC1", {{"s", "ACGTAC", kFormatError, 3}});
  expect_records(">s\nAC\n>t\n!", {{"s", "AC", kMoreFollows, 3}, {"t", "", kFormatError, 4}});
}

TEST(FastaReader, gives_an_empty_record_for_a_header_followed_directly_by_another) {
  expect_records(
      ">a\n>b\n>c\nAC\n",
      {{"a", "", kMoreFollows, 2}, {"b", "", kMoreFollows, 3}, {"c", "AC", kCleanEnd, 5}});
}

TEST(FastaReader, gives_an_empty_record_for_a_header_on_the_last_line_without_a_line_end) {
  expect_records(">only", {{"only", "", kCleanEnd, 1}});
  expect_records(">a\nAC\n>last", {{"a", "AC", kMoreFollows, 3}, {"last", "", kCleanEnd, 3}});
}

TEST(FastaReader, gives_an_empty_record_for_a_header_on_the_last_line_with_a_line_end) {
  expect_records(">only\n", {{"only", "", kCleanEnd, 2}});
}

TEST(FastaReader, gives_an_empty_nameless_record_for_a_lone_sign_at_the_end) {
  expect_records(">", {{"", "", kCleanEnd, 1}});
  expect_records(">a\nAC\n>", {{"a", "AC", kMoreFollows, 3}, {"", "", kCleanEnd, 3}});
}

TEST(FastaReader, takes_an_empty_name) {
  expect_records(">\nAC\n>\n>\nG\n",
                 {{"", "AC", kMoreFollows, 3}, {"", "", kMoreFollows, 4}, {"", "G", kCleanEnd, 6}});
}

TEST(FastaReader, keeps_everything_after_the_sign_as_the_name) {
  expect_records("> chr 1 \t>x#y \nAC\n", {{" chr 1 \t>x#y ", "AC", kCleanEnd, 3}});
  expect_records(">50%d%n\nAC\n", {{"50%d%n", "AC", kCleanEnd, 3}});
}

TEST(FastaReader, keeps_control_characters_and_bytes_from_128_on_in_a_name) {
  std::string name;
  for (int value = 0; value < 256; ++value) {
    if (value != '\n' && value != '\r') name += static_cast<char>(value);
  }
  expect_records(">" + name + "\nAC\n", {{name, "AC", kCleanEnd, 3}});
}

TEST(FastaReader, takes_a_last_sequence_line_without_a_line_end) {
  expect_records(">s\nACGT\nAC", {{"s", "ACGTAC", kCleanEnd, 3}});
}

TEST(FastaReader, takes_blank_lines_among_and_after_the_bases) {
  expect_records(">s\n\nAC\n\n\nGT\n\n", {{"s", "ACGT", kCleanEnd, 8}});
  expect_records(">s\nAC\n\n>t\nG\n", {{"s", "AC", kMoreFollows, 4}, {"t", "G", kCleanEnd, 6}});
}

TEST(FastaReader, knows_a_header_by_the_first_character_of_its_line_alone) {
  expect_records(">s\nAC>t\nG\n", {{"s", "AC", kFormatError, 2}});
  expect_records(">s\nAC\n >t\nG\n", {{"s", "AC", kFormatError, 3}});
}

TEST(FastaReader, skips_comment_lines_before_the_first_header) {
  expect_records("#one\n#\n# three >x\n>s\nAC\n", {{"s", "AC", kCleanEnd, 6}});
}

TEST(FastaReader, skips_white_space_before_and_among_the_first_comments_and_the_first_header) {
  expect_records(" \n\t\v\f # one\n\n  # two\n \n  >s\nAC\n", {{"s", "AC", kCleanEnd, 8}});
}

TEST(FastaReader, takes_a_comment_line_after_a_header_for_a_bad_sequence_line) {
  expect_records(">s\n#AC\n", {{"s", "", kFormatError, 2}});
  expect_records(">s\nAC\n# note\n>t\nG\n", {{"s", "AC", kFormatError, 3}});
}

TEST(FastaReader, finds_a_format_error_where_no_header_comes_first) {
  expect_records("ACGT\n", {{"", "", kFormatError, 1}});
  expect_records("\n# comment\nACGT\n>s\nAC\n", {{"", "", kFormatError, 3}});
  expect_records(";>s\nAC\n", {{"", "", kFormatError, 1}});
}

TEST(FastaReader, finds_a_format_error_at_line_1_of_an_empty_file) {
  expect_records("", {{"", "", kFormatError, 1}});
}

TEST(FastaReader, finds_a_format_error_where_a_file_of_blank_lines_or_comments_ends) {
  expect_records(" ", {{"", "", kFormatError, 1}});
  expect_records("\n\n \n", {{"", "", kFormatError, 4}});
  expect_records("# comment", {{"", "", kFormatError, 1}});
  expect_records("# comment\n", {{"", "", kFormatError, 2}});
  expect_records("\n#\n\n\t", {{"", "", kFormatError, 4}});
}

TEST(FastaReader, stays_in_error_when_it_is_asked_to_read_on) {
  for (const std::string_view text : {">s\nA1\n>t\nG\n", ">s\nA1>t\nG\n", "x>t\nG\n"}) {
    CScriptedFile file(in_pieces(text, 1));
    CSequence_Mol record;
    EXPECT_EQ(read_record(record, file).state, kFormatError);
    const ReadRecord second = read_record(record, file);
    EXPECT_EQ(second.name + second.bases, "");
    EXPECT_EQ(second.state, kFormatError);
  }
}

TEST(FastaReader, replaces_name_and_bases_of_a_used_record_and_keeps_its_block) {
  CScriptedFile file({read_of(">long name\nACGTACGT\n>b\nTT\n>c\n")});
  CSequence_Mol record;
  const char* const block = record.sequence.data();
  EXPECT_EQ(read_record(record, file), (ReadRecord{"long name", "ACGTACGT", kMoreFollows, 3}));
  EXPECT_EQ(read_record(record, file), (ReadRecord{"b", "TT", kMoreFollows, 5}));
  EXPECT_EQ(read_record(record, file), (ReadRecord{"c", "", kCleanEnd, 6}));
  EXPECT_EQ(record.sequence.data(), block);
  EXPECT_EQ(record.sequence.capacity(), 10'000'001U);
}

TEST(FastaReader, empties_a_used_record_also_when_nothing_can_be_read) {
  CSequence_Mol record;
  record.name = "used";
  record.sequence.push_back('A');
  CScriptedFile file({read_of("no header")});
  EXPECT_EQ(read_record(record, file), (ReadRecord{"", "", kFormatError, 1}));
}

TEST(FastaReader, doubles_the_block_for_more_bases_than_it_holds_and_keeps_it_from_then_on) {
  // One base more than the 10000001 bytes that are reserved, in lines of 100000.
  constexpr std::size_t kBaseCount = 10'000'002;
  std::string bases;
  std::string text = ">long\n";
  while (bases.size() < kBaseCount) {
    std::string line;
    while (line.size() < 100'000) line += "ACGTTGCAAC";
    line.resize(std::min(line.size(), kBaseCount - bases.size()));
    bases += line;
    text += line + "\n";
  }
  CScriptedFile file(in_pieces(text + ">short\nAC\n", 1'000'000));
  CSequence_Mol record;
  record.readFastaSequence(file);
  ASSERT_EQ(record.sequence.size(), kBaseCount);
  EXPECT_EQ(record.sequence.capacity(), 20'000'002U);
  EXPECT_EQ(std::memcmp(record.sequence.data(), bases.data(), kBaseCount), 0);
  EXPECT_EQ(read_record(record, file), (ReadRecord{"short", "AC", kCleanEnd, 105}));
  EXPECT_EQ(record.sequence.capacity(), 20'000'002U);
}

TEST(FastaReader, appends_one_line_at_a_time_and_takes_its_line_feed) {
  CScriptedFile file({read_of("AC\n\ngt")});
  CSequence_Mol record;
  record.getLineOfDNA(file);
  EXPECT_STREQ(record.sequence.c_str(), "AC");
  EXPECT_EQ(file.line_number(), 2U);
  record.getLineOfDNA(file);
  EXPECT_STREQ(record.sequence.c_str(), "AC");
  EXPECT_EQ(file.line_number(), 3U);
  EXPECT_EQ(file.state(), kMoreFollows);
  record.getLineOfDNA(file);
  EXPECT_STREQ(record.sequence.c_str(), "ACGT");
  EXPECT_EQ(file.state(), kCleanEnd);
}

TEST(FastaReader, says_for_each_line_that_another_kind_of_sequence_is_not_implemented) {
  for (const int kind : {1, -1}) {
    CScriptedFile file({read_of(">p\nMKV1\n\n>q\nLLE")});
    CSequence_Mol record;
    record.seq_type = kind;
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(read_record(record, file), (ReadRecord{"p", "", kMoreFollows, 4}));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Not implemented.\nNot implemented.\n");
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(read_record(record, file), (ReadRecord{"q", "", kCleanEnd, 5}));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Not implemented.\n");
    EXPECT_EQ(record.seq_type, kind);
  }
}

}  // namespace
}  // namespace quorix
