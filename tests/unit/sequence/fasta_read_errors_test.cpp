// A device that fails, and one that goes on after its end.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "record_reading.h"

namespace quorix {
namespace {

using testing::CScriptedFile;
using testing::end_of_input;
using testing::expect_records;
using testing::kCleanEnd;
using testing::kFormatError;
using testing::kMoreFollows;
using testing::read_error;
using testing::read_of;
using testing::read_record;
using testing::ReadRecord;
using testing::ReadScript;

TEST(FastaReadError, before_the_first_byte_is_a_format_error_at_line_1) {
  expect_records("", {{"", "", kFormatError, 1}}, read_error());
}

TEST(FastaReadError, in_white_space_or_a_comment_is_a_format_error_at_that_line) {
  expect_records("\n \n", {{"", "", kFormatError, 3}}, read_error());
  expect_records("# no", {{"", "", kFormatError, 1}}, read_error());
  expect_records("# note\n", {{"", "", kFormatError, 2}}, read_error());
}

TEST(FastaReadError, in_a_header_is_a_format_error_and_not_the_last_record) {
  expect_records(">", {{"", "", kFormatError, 1}}, read_error());
  expect_records(">na", {{"na", "", kFormatError, 1}}, read_error());
  expect_records(">one\nAC\n>tw", {{"one", "AC", kMoreFollows, 3}, {"tw", "", kFormatError, 3}},
                 read_error());
}

TEST(FastaReadError, after_a_header_is_a_format_error_at_the_next_line) {
  expect_records(">one\n", {{"one", "", kFormatError, 2}}, read_error());
}

TEST(FastaReadError, in_a_sequence_line_is_a_format_error_at_that_line) {
  expect_records(">one\nAC\nG", {{"one", "ACG", kFormatError, 3}}, read_error());
}

TEST(FastaReadError, after_a_sequence_line_is_a_format_error_at_the_next_line) {
  expect_records(">one\nAC\n", {{"one", "AC", kFormatError, 3}}, read_error());
}

TEST(FastaReadError, just_after_a_cr_is_a_format_error_at_the_next_line) {
  expect_records(">one\r", {{"one", "", kFormatError, 2}}, read_error());
  expect_records(">one\r\nAC\r", {{"one", "AC", kFormatError, 3}}, read_error());
  expect_records("# note\r", {{"", "", kFormatError, 2}}, read_error());
  expect_records(">\r", {{"", "", kFormatError, 2}}, read_error());
}

/// Expects that the record after the failure or the end is never read.
void expect_nothing_after(const ReadScript& script, int last_state) {
  CScriptedFile file(script);
  CSequence_Mol record;
  ReadRecord last = read_record(record, file);
  while (last.state == kMoreFollows) last = read_record(record, file);
  EXPECT_EQ(last.state, last_state);
  for (int attempt = 0; attempt < 3; ++attempt) {
    const ReadRecord after = read_record(record, file);
    EXPECT_EQ(after.name + after.bases, "");
    EXPECT_NE(after.state, kMoreFollows);
  }
}

constexpr std::string_view kCutOffTexts[] = {"",       ">",        ">one",       ">one\r",
                                             ">one\n", ">one\nAC", ">one\nAC\n", ">one\nAC\r",
                                             "# no",   ">one\n>tw"};

TEST(FastaReadError, is_final) {
  for (const std::string_view text : kCutOffTexts) {
    SCOPED_TRACE(::testing::PrintToString(text));
    ReadScript script = testing::in_pieces(text, 3, read_error());
    script.push_back(read_of("AC\n>next\nG\n"));
    expect_nothing_after(script, kFormatError);
  }
}

TEST(FastaReadError, does_not_turn_into_a_clean_end_when_it_is_asked_again) {
  CScriptedFile file({read_of(">one\nAC\nG"), read_error(), end_of_input()});
  CSequence_Mol record;
  for (int attempt = 0; attempt < 3; ++attempt) {
    EXPECT_EQ(read_record(record, file).state, kFormatError);
  }
}

TEST(FastaEnd, is_final) {
  for (const std::string_view text : kCutOffTexts) {
    SCOPED_TRACE(::testing::PrintToString(text));
    const bool has_header = text.starts_with('>');
    ReadScript script = testing::in_pieces(text, 3, end_of_input());
    script.push_back(read_of("AC\n>next\nG\n"));
    expect_nothing_after(script, has_header ? kCleanEnd : kFormatError);
  }
}

}  // namespace
}  // namespace quorix
