// The last words of a run.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "console/console_texts.h"
#include "console/exit_status.h"
#include "support/captured_process.h"
#include "support/memory_stream.h"

namespace quorix {
namespace {

using testing::messages_of;

std::string closing_messages_of(int code) {
  return messages_of([=] { good_bye_on_error(code); });
}

TEST(GoodBye, marks_the_report_and_takes_leave_on_standard_error) {
  std::string report;
  const std::string messages = messages_of([&] { report = testing::printed_by(good_bye); });
  EXPECT_EQ(report, "## Finished successfully. ##\n");
  EXPECT_EQ(messages, "\nAnalysis finished successfully.\n\nQuorix says goodbye.\n\n");
}

TEST(GoodBye, comes_after_the_mark_where_both_go_to_one_stream) {
  EXPECT_EQ(messages_of([] { good_bye(stderr); }),
            "## Finished successfully. ##\n\nAnalysis finished successfully.\n\n"
            "Quorix says goodbye.\n\n");
}

TEST(GoodByeOnError, names_codes_below_minus_one) {
  EXPECT_EQ(closing_messages_of(-7),
            "\nAnalysis has been aborted due to errors. Error number: -7\n\n");
  EXPECT_EQ(closing_messages_of(-2),
            "\nAnalysis has been aborted due to errors. Error number: -2\n\n");
  EXPECT_EQ(closing_messages_of(std::numeric_limits<int>::min()),
            "\nAnalysis has been aborted due to errors. Error number: -2147483648\n\n");
}

TEST(GoodByeOnError, ends_with_an_empty_line_after_minus_one) {
  EXPECT_EQ(closing_messages_of(-1), "\n\n");
}

TEST(GoodByeOnError, is_silent_after_zero) {
  EXPECT_EQ(closing_messages_of(0), "");
}

TEST(GoodByeOnError, tells_of_a_stop_by_the_user_after_positive_codes) {
  for (const int code : {1, 2, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(closing_messages_of(code), "\nAnalysis has been stopped by the user.\n\n") << code;
  }
}

TEST(ExitCode, is_what_scripts_see_in_its_low_eight_bits) {
  const auto status = [](ExitCode code) { return code & 0xff; };
  EXPECT_EQ(status(kSuccess), 0);
  EXPECT_EQ(status(kInvalidSetting), 255);
  EXPECT_EQ(status(kUnknownMode), 254);
  EXPECT_EQ(status(kInputReadError), 231);
  EXPECT_EQ(status(kInputNotOpened), 155);
  EXPECT_EQ(status(kOutputNotOpened), 154);
  EXPECT_EQ(status(kOutputWriteError), 153);
  EXPECT_EQ(status(kNoMemory), 152);
}

}  // namespace
}  // namespace quorix
