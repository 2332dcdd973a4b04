#include "sequence/file.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "record_reading.h"
#include "temporary_folder.h"

namespace quorix {
namespace {

using testing::CScriptedFile;
using testing::CTemporaryFolder;
using testing::end_of_input;
using testing::in_pieces;
using testing::read_error;
using testing::read_of;

/// All characters up to the end.
std::string read_to_end(CFile& file) {
  std::string text;
  for (int character = file.getchar(); !file.is_at_end(); character = file.getchar()) {
    text += static_cast<char>(character);
  }
  return text;
}

TEST(File, is_good_and_on_line_1_when_it_has_been_opened) {
  const CTemporaryFolder folder;
  CFile file;
  file.open(folder.file_of("text", "AC\nG"));
  EXPECT_EQ(file.state(), CFile::kGood);
  EXPECT_EQ(file.line_number(), 1U);
  EXPECT_EQ(read_to_end(file), "AC\nG");
  EXPECT_EQ(file.line_number(), 2U);
}

TEST(File, is_at_its_end_without_the_fail_flag_when_it_cannot_be_opened) {
  const CTemporaryFolder folder;
  CFile file;
  file.open(folder.path_of("missing"));
  EXPECT_EQ(file.state(), CFile::kEnd);

  CFile other;
  other.open(std::unique_ptr<CByteSource>());
  EXPECT_EQ(other.state(), CFile::kEnd);
}

TEST(File, gives_nothing_before_it_is_opened) {
  CFile file;
  EXPECT_TRUE(file.is_at_end());
  EXPECT_EQ(file.getchar(), 0);
  EXPECT_TRUE(file.is_at_end());
}

TEST(File, of_a_directory_has_an_error_at_its_first_character) {
  const CTemporaryFolder folder;
  CFile file;
  file.open(folder.path());
  EXPECT_EQ(file.state(), CFile::kGood);
  EXPECT_EQ(file.getchar(), 0);
  EXPECT_EQ(file.state(), CFile::kEnd);
}

TEST(File, has_flags_of_1_2_and_4) {
  EXPECT_EQ(CFile::kFail, 1);
  EXPECT_EQ(CFile::kGood, 2);
  EXPECT_EQ(CFile::kEnd, 4);
}

TEST(File, tells_a_clean_end_from_a_format_error) {
  CFile file;
  file.set_state(2);
  EXPECT_FALSE(file.is_at_end() || file.has_ended_cleanly() || file.has_format_error());
  file.set_state(5);
  EXPECT_TRUE(file.is_at_end() && file.has_ended_cleanly());
  EXPECT_FALSE(file.has_format_error());
  file.set_state(4);
  EXPECT_TRUE(file.is_at_end() && file.has_format_error());
  EXPECT_FALSE(file.has_ended_cleanly());
}

TEST(File, delivers_every_byte_value_as_0_to_255_and_folds_the_carriage_return_alone) {
  std::string bytes;
  for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
  CScriptedFile file(in_pieces(bytes, 1000));
  for (int value = 0; value < 256; ++value) {
    EXPECT_EQ(file.getchar(), value == '\r' ? '\n' : value);
  }
  EXPECT_EQ(file.state(), CFile::kGood);
  EXPECT_EQ(file.line_number(), 3U);
}

TEST(File, gives_0_at_the_end_with_fail_and_end_set_and_good_cleared) {
  CScriptedFile file({read_of("A")});
  EXPECT_EQ(file.getchar(), 'A');
  EXPECT_EQ(file.state(), 2);
  EXPECT_EQ(file.getchar(), 0);
  EXPECT_EQ(file.state(), 5);
  EXPECT_EQ(file.getchar(), 0);
  EXPECT_EQ(file.state(), 5);
}

TEST(File, counts_cr_lf_a_lone_cr_and_a_lone_lf_as_one_line_end_each) {
  struct Case {
    std::string_view bytes;
    std::string_view folded;
    unsigned lines;
  };
  for (const Case& c :
       {Case{"A\nB", "A\nB", 2}, Case{"A\rB", "A\nB", 2}, Case{"A\r\nB", "A\nB", 2},
        Case{"A\r\nB\rC\nD", "A\nB\nC\nD", 4}, Case{"\n\n", "\n\n", 3}, Case{"\r\r", "\n\n", 3},
        Case{"\n\r", "\n\n", 3}, Case{"\r\n\r\n", "\n\n", 3}, Case{"\r\r\n", "\n\n", 3},
        Case{"\r\n\n", "\n\n", 3}, Case{"A\r", "A\n", 2}, Case{"A\r\n", "A\n", 2}}) {
    for (const std::size_t piece_length : testing::kPieceLengths) {
      CScriptedFile file(in_pieces(c.bytes, piece_length));
      std::string folded;
      while (true) {
        const int character = file.getchar();
        if (character != 0) folded += static_cast<char>(character);
        if (file.is_at_end()) break;
      }
      EXPECT_EQ(folded, c.folded);
      EXPECT_EQ(file.line_number(), c.lines) << ::testing::PrintToString(c.bytes);
    }
  }
}

TEST(File, steps_back_over_the_last_character) {
  CScriptedFile file({read_of("ACG")});
  file.getchar();
  file.getchar();
  file.ungetchar();
  EXPECT_EQ(file.getchar(), 'C');
  EXPECT_EQ(file.getchar(), 'G');
  EXPECT_EQ(file.state(), CFile::kGood);
}

TEST(File, is_on_the_line_before_after_a_step_back_over_any_line_end) {
  for (const std::string_view bytes : {"A\nC", "A\rC", "A\r\nC"}) {
    CScriptedFile file({read_of(bytes)});
    EXPECT_EQ(file.getchar(), 'A');
    EXPECT_EQ(file.getchar(), '\n');
    EXPECT_EQ(file.line_number(), 2U);
    file.ungetchar();
    EXPECT_EQ(file.line_number(), 1U);
    EXPECT_EQ(file.getchar(), '\n');
    EXPECT_EQ(file.line_number(), 2U);
    EXPECT_EQ(file.getchar(), 'C');
    file.ungetchar();
    EXPECT_EQ(file.line_number(), 2U);
  }
}

TEST(File, goes_bad_on_a_step_back_before_its_first_character) {
  CScriptedFile file({read_of("ACG")});
  file.ungetchar();
  EXPECT_EQ(file.state(), CFile::kEnd);
}

TEST(File, steps_back_at_its_end_too_but_counts_no_lines_there) {
  CScriptedFile file({read_of("A\n")});
  EXPECT_EQ(read_to_end(file), "A\n");
  file.ungetchar();
  EXPECT_EQ(file.line_number(), 2U);
  EXPECT_EQ(file.getchar(), '\n');
  EXPECT_EQ(file.line_number(), 2U);
  EXPECT_EQ(file.state(), 5);
}

TEST(File, stays_at_its_end_even_if_the_device_gives_more) {
  CScriptedFile file({read_of("A"), end_of_input(), read_of("C")});
  EXPECT_EQ(read_to_end(file), "A");
  for (const int state : {5, 1}) {  // as it is, and as a reader leaves it after a cut-off header
    file.set_state(static_cast<std::uint8_t>(state));
    EXPECT_EQ(file.getchar(), 0);
    EXPECT_EQ(file.state(), 5);
  }
}

TEST(File, has_the_end_flag_alone_after_a_failed_read_and_never_recovers) {
  CScriptedFile file({read_of("A"), read_error(), read_of("C"), end_of_input()});
  EXPECT_EQ(read_to_end(file), "A");
  EXPECT_EQ(file.state(), 4);
  for (const int state : {4, 0, 2}) {
    file.set_state(static_cast<std::uint8_t>(state));
    EXPECT_EQ(file.getchar(), 0);
    EXPECT_EQ(file.state(), 4);
  }
}

TEST(File, tells_why_the_device_failed_until_it_is_closed) {
  CScriptedFile file({read_of("A"), read_error("Input/output error"), end_of_input()});
  EXPECT_EQ(file.read_failure_reason(), "");
  file.getchar();
  EXPECT_EQ(file.read_failure_reason(), "");
  file.getchar();
  EXPECT_EQ(file.read_failure_reason(), "Input/output error");
  file.getchar();
  EXPECT_EQ(file.read_failure_reason(), "Input/output error");
  file.close();
  EXPECT_EQ(file.read_failure_reason(), "");
}

TEST(File, has_no_reason_of_a_failure_where_only_the_format_is_wrong) {
  CScriptedFile file({read_of("A"), read_of("C")});
  file.set_state(CFile::kEnd);
  EXPECT_EQ(file.read_failure_reason(), "");
}

TEST(File, starts_anew_when_it_is_opened_again) {
  CScriptedFile file({read_of("A\n"), read_error()});
  EXPECT_EQ(read_to_end(file), "A\n");
  file.open(std::make_unique<testing::CScriptedSource>(in_pieces("CG", 1)));
  EXPECT_EQ(file.state(), CFile::kGood);
  EXPECT_EQ(file.line_number(), 1U);
  EXPECT_EQ(read_to_end(file), "CG");
  EXPECT_EQ(file.state(), 5);
}

TEST(File, shows_what_is_buffered_and_takes_as_much_of_it_as_asked_for) {
  CScriptedFile file({read_of("ACGT\r\nA"), read_of("C")});
  EXPECT_EQ(file.unread(), "");  // nothing is read for it
  EXPECT_EQ(file.getchar(), 'A');
  EXPECT_EQ(file.unread(), "CGT\r\nA");
  file.skip(2);
  EXPECT_EQ(file.unread(), "T\r\nA");
  file.ungetchar();
  EXPECT_EQ(file.unread(), "GT\r\nA");
  file.skip(2);
  EXPECT_EQ(file.line_number(), 1U);
  EXPECT_EQ(file.getchar(), '\n');
  EXPECT_EQ(file.line_number(), 2U);
  EXPECT_EQ(file.unread(), "A");
  file.skip(1);
  EXPECT_EQ(file.unread(), "");
  EXPECT_EQ(file.getchar(), 'C');
  EXPECT_EQ(file.state(), CFile::kGood);
}

TEST(File, shows_nothing_once_it_is_at_its_end) {
  CScriptedFile file({read_of("ACGT")});
  EXPECT_EQ(file.getchar(), 'A');
  file.set_state(CFile::kEnd);
  EXPECT_EQ(file.unread(), "");
  file.set_state(CFile::kFail | CFile::kEnd);
  EXPECT_EQ(file.unread(), "");
  file.set_state(CFile::kGood);
  EXPECT_EQ(file.unread(), "CGT");
}

TEST(File, keeps_its_state_when_it_is_closed_and_gives_no_more_blocks) {
  CScriptedFile file({read_of("AC"), read_of("GT")});
  EXPECT_EQ(file.getchar(), 'A');
  file.close();
  EXPECT_EQ(file.state(), CFile::kGood);
  EXPECT_EQ(read_to_end(file), "C");
}

}  // namespace
}  // namespace quorix
