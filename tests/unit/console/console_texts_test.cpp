// Messages, banner and progress lines.

#include "console/console_texts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "console/run_clock.h"
#include "support/captured_process.h"
#include "support/default_settings.h"
#include "support/fake_clock.h"
#include "support/head_texts.h"
#include "support/memory_stream.h"

namespace quorix {
namespace {

using Banner = testing::CDefaultSettings;
using CreatorMessage = testing::CDefaultSettings;
using Message = testing::CDefaultSettings;
using testing::messages_of;
using testing::printed_by;

TEST_F(Message, is_one_to_four_pieces_with_nothing_between_them) {
  EXPECT_EQ(printed_by([](std::FILE* out) { general_PrintMessage(out, "one"); }), "one");
  EXPECT_EQ(printed_by([](std::FILE* out) { general_PrintMessage(out, "one", "two"); }), "onetwo");
  EXPECT_EQ(printed_by([](std::FILE* out) { general_PrintMessage(out, "a", "b", "c"); }), "abc");
  EXPECT_EQ(printed_by([](std::FILE* out) { general_PrintMessage(out, "a", "b", "c", "d\n"); }),
            "abcd\n");
}

TEST_F(Message, is_the_same_on_standard_error) {
  EXPECT_EQ(messages_of([] { general_PrintMessage(stderr, "one"); }), "one");
  EXPECT_EQ(messages_of([] { general_PrintMessage(stderr, "one", "two"); }), "onetwo");
  EXPECT_EQ(messages_of([] { general_PrintMessage(stderr, "a", "b", "c"); }), "abc");
  EXPECT_EQ(messages_of([] { general_PrintMessage(stderr, "a%%", "b", "", "d\n"); }), "a%bd\n");
}

TEST_F(Message, can_be_handed_to_another_stream_straight) {
  EXPECT_EQ(printed_by([](std::FILE* out) { PrintMessage(out, "one"); }), "one");
  EXPECT_EQ(printed_by([](std::FILE* out) { PrintMessage(out, "one", "two"); }), "onetwo");
  EXPECT_EQ(printed_by([](std::FILE* out) { PrintMessage(out, "a", "%%", "c"); }), "a%c");
  EXPECT_EQ(printed_by([](std::FILE* out) { PrintMessage(out, "a", "b", "c", "d"); }), "abcd");
}

TEST_F(Message, prints_two_percent_signs_as_one) {
  const auto print = [](const char* piece) {
    return printed_by([&](std::FILE* out) { general_PrintMessage(out, piece); });
  };
  EXPECT_EQ(print(" %%\n"), " %\n");
  EXPECT_EQ(print("%%%%"), "%%");
  EXPECT_EQ(print("50%% of 100%%"), "50% of 100%");
}

TEST_F(Message, prints_all_else_as_it_stands) {
  const auto print = [](const char* piece) {
    return printed_by([&](std::FILE* out) { general_PrintMessage(out, piece); });
  };
  EXPECT_EQ(print("%"), "%");
  EXPECT_EQ(print("%s%n%d"), "%s%n%d");
  EXPECT_EQ(print("100%"), "100%");
  EXPECT_EQ(print("\\n\t\x80\xff"), "\\n\t\x80\xff");
}

TEST_F(Message, does_not_join_percent_signs_of_two_pieces) {
  EXPECT_EQ(printed_by([](std::FILE* out) { general_PrintMessage(out, "5%", "%6"); }), "5%%6");
}

TEST_F(Message, prints_outside_text_with_doubled_signs_as_it_stands) {
  for (const std::string text : {"", "plain", "%", "100%%s", "%%%"}) {
    EXPECT_EQ(
        printed_by([&](std::FILE* out) { general_PrintMessage(out, double_percent_signs(text)); }),
        text);
  }
  EXPECT_EQ(double_percent_signs("a%b%%"), "a%%b%%%%");
}

TEST_F(Message, may_be_longer_than_any_block) {
  for (const std::size_t length : {4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U, 100'000U}) {
    const std::string name(length, 'n');
    EXPECT_EQ(printed_by([&](std::FILE* out) { general_PrintMessage(out, name, "%%", name, "%"); }),
              name + "%" + name + "%");
  }
}

TEST_F(Banner, welcomes_and_warns) {
  EXPECT_EQ(printed_by([](std::FILE* out) { quorix_welcome(out); }), testing::kBanner);
}

TEST_F(CreatorMessage, begins_both_lines_with_the_prefix) {
  EXPECT_EQ(printed_by([](std::FILE* out) { creator_message(out, ""); }),
            "Results computed with:\n   Quorix, version 3.3.2b\n");
  EXPECT_EQ(printed_by([](std::FILE* out) { creator_message(out, "# "); }),
            "# Results computed with:\n#    Quorix, version 3.3.2b\n");
}

TEST(ProgressHead, ends_in_72_hyphens) {
  EXPECT_EQ(messages_of([] { print_progress_head(); }),
            "\n\nSearch progress:\n\nTime     - SeqNr - PatLen - Seq-Name\n" +
                std::string(72, '-') + "\n");
}

/// The progress line after `seconds`.
std::string progress_line(std::time_t seconds, std::uint64_t number = 1, const char* name = "chr1",
                          std::uint64_t unit_length = 1) {
  time_analysis_started = 20000;
  testing::set_current_time(20000 + seconds);
  return messages_of([&] { report_status(number, name, unit_length, 'r'); });
}

TEST(ProgressLine, tells_hours_minutes_and_seconds) {
  EXPECT_EQ(progress_line(0), "00.00.00 - #   1 -    1bp - chr1\n");
  EXPECT_EQ(progress_line(59), "00.00.59 - #   1 -    1bp - chr1\n");
  EXPECT_EQ(progress_line(60), "00.01.00 - #   1 -    1bp - chr1\n");
  EXPECT_EQ(progress_line(3599), "00.59.59 - #   1 -    1bp - chr1\n");
  EXPECT_EQ(progress_line(3725), "01.02.05 - #   1 -    1bp - chr1\n");
}

TEST(ProgressLine, goes_on_after_99_hours) {
  EXPECT_EQ(progress_line(359999), "99.59.59 - #   1 -    1bp - chr1\n");
  EXPECT_EQ(progress_line(360000), "100.00.00 - #   1 -    1bp - chr1\n");
}

TEST(ProgressLine, aligns_numbers_to_the_right) {
  EXPECT_EQ(progress_line(0, 5, "chr1", 12), "00.00.00 - #   5 -   12bp - chr1\n");
  EXPECT_EQ(progress_line(0, 123, "chr1", 1234), "00.00.00 - # 123 - 1234bp - chr1\n");
}

TEST(ProgressLine, grows_with_numbers_that_are_wider_than_their_columns) {
  EXPECT_EQ(progress_line(0, 1000, "chr1", 12345), "00.00.00 - # 1000 - 12345bp - chr1\n");
  EXPECT_EQ(progress_line(0, 4294967296, "chr1", 4294967295),
            "00.00.00 - # 4294967296 - 4294967295bp - chr1\n");
}

TEST(ProgressLine, cuts_a_name_after_70_characters) {
  const std::string head = "00.00.00 - #   1 -    1bp - ";
  const std::string name = std::string(69, 'x') + "yz" + std::string(29, 'w');
  ASSERT_EQ(name.size(), 100U);
  EXPECT_EQ(progress_line(0, 1, name.c_str()), head + std::string(69, 'x') + "y\n");
  EXPECT_EQ(progress_line(0, 1, name.substr(0, 70).c_str()), head + std::string(69, 'x') + "y\n");
}

TEST(ProgressLine, may_have_no_name) {
  EXPECT_EQ(progress_line(0, 1, ""), "00.00.00 - #   1 -    1bp - \n");
}

TEST(ProgressLine, prints_percent_signs_of_a_name_as_they_stand) {
  EXPECT_EQ(progress_line(0, 1, "100%s %%n %"), "00.00.00 - #   1 -    1bp - 100%s %%n %\n");
}

TEST(ProgressLine, does_not_show_its_mode_letter) {
  time_analysis_started = 20000;
  testing::set_current_time(20000);
  EXPECT_EQ(messages_of([] { report_status(1, "a", 1, 'r'); }),
            messages_of([] { report_status(1, "a", 1, 'x'); }));
}

}  // namespace
}  // namespace quorix
