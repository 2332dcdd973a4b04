#include "console/run_clock.h"

#include <gtest/gtest.h>

#include "support/fake_clock.h"

namespace quorix {
namespace {

using testing::set_current_time;

/// What `time_next_status_report` holds before any test runs.
class CTimeAtLoad : public ::testing::Environment {
 public:
  void SetUp() override {
    if (!is_known_) time_ = time_next_status_report;
    is_known_ = true;
  }
  [[nodiscard]] std::time_t time() const { return time_; }

 private:
  bool is_known_ = false;
  std::time_t time_ = -1;
};

const auto* const kTimeAtLoad =
    static_cast<CTimeAtLoad*>(::testing::AddGlobalTestEnvironment(new CTimeAtLoad));

TEST(RunClock, is_set_to_the_current_time_before_main) {
  // What the clock shows until a test sets it.
  EXPECT_EQ(kTimeAtLoad->time(), 1000);
}

TEST(RunClock, puts_the_next_report_off_to_59_seconds_from_now) {
  set_current_time(5000);
  update_report_time();
  EXPECT_EQ(time_next_status_report, 5059);
}

TEST(RunClock, is_not_due_before_its_time) {
  time_next_status_report = 5059;
  for (const std::time_t now : {0, 5000, 5058}) {
    set_current_time(now);
    EXPECT_FALSE(check_report_status()) << now;
    EXPECT_EQ(time_next_status_report, 5059) << now;
  }
}

TEST(RunClock, is_not_due_at_its_time_but_strictly_after_it) {
  time_next_status_report = 5059;
  set_current_time(5059);
  EXPECT_FALSE(check_report_status());
  EXPECT_EQ(time_next_status_report, 5059);

  set_current_time(5060);
  EXPECT_TRUE(check_report_status());
}

TEST(RunClock, counts_59_seconds_from_the_check_that_was_due) {
  time_next_status_report = 5059;
  set_current_time(5500);
  EXPECT_TRUE(check_report_status());
  EXPECT_EQ(time_next_status_report, 5559);
  EXPECT_FALSE(check_report_status());
}

TEST(RunClock, gives_one_report_in_59_seconds_however_often_it_is_asked) {
  set_current_time(10000);
  update_report_time();
  int due_count = 0;
  // From second 1 to 180: due at 60, 120 and 180.
  for (std::time_t second = 1; second <= 180; ++second) {
    set_current_time(10000 + second);
    for (int i = 0; i < 5; ++i) due_count += check_report_status() ? 1 : 0;
  }
  EXPECT_EQ(due_count, 3);
}

}  // namespace
}  // namespace quorix
