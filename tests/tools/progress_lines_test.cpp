// The lines of records that are searched at once, in the order of the records.

#include "tools/search/progress_lines.h"

#include <gtest/gtest.h>

#include "console/run_clock.h"
#include "support/captured_process.h"
#include "support/default_settings.h"
#include "support/fake_clock.h"

namespace quorix::testing {
namespace {

class ProgressLines : public CDefaultSettings {
 protected:
  ProgressLines() {
    set_current_time(5000);
    time_analysis_started = 5000;
    update_report_time();
  }

  std::mutex lock;
  const std::string first_name = "one";
  const std::string second_name = "two";
  tools::CProgressLines first{lock, 1, first_name};
  tools::CProgressLines second{lock, 2, second_name};
};

TEST_F(ProgressLines, of_a_later_record_wait_for_those_before_it) {
  EXPECT_EQ(messages_of([&] {
              first.become_first();
              second.begin_part("  second, part 1\n");
              first.begin_part("  first, part 1\n");
              second.begin_part("  second, part 2\n");
              second.become_first();
              second.begin_part("  second, part 3\n");
            }),
            "00.00.00 - #   1 -    1bp - one\n"
            "  first, part 1\n"
            "00.00.00 - #   2 -    1bp - two\n"
            "  second, part 1\n"
            "  second, part 2\n"
            "  second, part 3\n");
}

TEST_F(ProgressLines, are_due_once_in_59_seconds_for_the_first_record_alone) {
  EXPECT_EQ(messages_of([&] {
              first.become_first();
              first.pass(2);
              set_current_time(5059);
              first.pass(3);
              set_current_time(5060);
              second.pass(4);
              first.pass(5);
              first.pass(6);
              set_current_time(5120);
              second.become_first();
              second.pass(7);
            }),
            "00.00.00 - #   1 -    1bp - one\n"
            "00.01.00 - #   1 -    5bp - one\n"
            "00.02.00 - #   2 -    1bp - two\n");
}

}  // namespace
}  // namespace quorix::testing
