// The judge of all other tests here, on outcomes with one thing wrong with them.

#include "faults/verdict.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include "faults/point_log.h"

namespace quorix::testing {
namespace {

constexpr const char* kAborted =
    "\nAnalysis has been aborted due to errors. Error number: -103\n\n";
constexpr const char* kSuccessTold = "\nAnalysis finished successfully.\n\n";

Outcome undisturbed() {
  Outcome outcome;
  outcome.status = 0;
  outcome.messages = std::string("banner\n") + kSuccessTold;
  outcome.report = std::string("head\n>a\nblock\n") + kSuccessMark;
  outcome.masked = ">a\nXX\n";
  return outcome;
}

Expectation failed_write() {
  return {.statuses = {{153, failed_write_text("report", ENOSPC)}}};
}

/// A failed write of the report's block, in due form.
Outcome failed() {
  Outcome outcome;
  outcome.status = 153;
  outcome.messages = "banner\n" + failed_write_text("report", ENOSPC) + kAborted;
  outcome.report = "head\n";
  return outcome;
}

std::string verdict_on(const Outcome& outcome, const Expectation& expectation) {
  return find_fault(outcome, undisturbed(), expectation);
}

TEST(Verdict, accepts_what_is_as_it_should_be) {
  EXPECT_EQ(verdict_on(undisturbed(), {.statuses = {{0, ""}}}), "");
  EXPECT_EQ(verdict_on(failed(), failed_write()), "");
}

TEST(Verdict, knows_the_statuses_that_are_allowed) {
  EXPECT_EQ(verdict_on(undisturbed(), failed_write()), "status 0 is not allowed");
  EXPECT_EQ(verdict_on(failed(), {.statuses = {{0, ""}}}), "status 153 is not allowed");
  EXPECT_EQ(verdict_on(failed(), {.statuses = {{152, ""}, {154, ""}}}),
            "status 153 is not allowed");
}

TEST(Verdict, knows_the_signals_that_are_allowed) {
  Outcome outcome = failed();
  outcome.status = -1;
  outcome.signal = SIGSEGV;
  Expectation expectation = failed_write();
  EXPECT_EQ(verdict_on(outcome, expectation), "ended by signal 11");
  expectation.signals = {SIGPIPE};
  EXPECT_EQ(verdict_on(outcome, expectation), "ended by signal 11");
  expectation.signals = {SIGPIPE, SIGSEGV};
  EXPECT_EQ(verdict_on(outcome, expectation), "");
  outcome.report = "head\nblock";
  EXPECT_EQ(verdict_on(outcome, expectation),
            "an output is not the beginning of the undisturbed one");
}

TEST(Verdict, holds_every_output_of_a_success_against_the_undisturbed_one) {
  const Expectation expectation{.statuses = {{0, ""}}};
  Outcome outcome = undisturbed();
  outcome.output = "stray";
  EXPECT_EQ(verdict_on(outcome, expectation), "status 0 with another standard output");
  outcome = undisturbed();
  outcome.report.erase(7, 1);
  EXPECT_EQ(verdict_on(outcome, expectation), "status 0 with another report");
  outcome = undisturbed();
  outcome.masked += 'X';
  EXPECT_EQ(verdict_on(outcome, expectation), "status 0 with another masked copy");
}

TEST(Verdict, asks_for_the_message_of_a_failure) {
  Outcome outcome = failed();
  outcome.messages = "banner\n" + failed_write_text("report", EIO) + kAborted;
  EXPECT_EQ(verdict_on(outcome, failed_write()), "the message is missing");
  outcome.messages = "banner\n" + failed_write_text("report", ENOSPC);
  EXPECT_EQ(verdict_on(outcome, failed_write()), "the closing text is missing");
  outcome.messages = kAborted + failed_write_text("report", ENOSPC);
  EXPECT_EQ(verdict_on(outcome, failed_write()), "the closing text is missing");

  Expectation expectation = failed_write();
  expectation.has_no_messages = true;
  EXPECT_EQ(verdict_on(outcome, expectation), "");
}

TEST(Verdict, finds_a_success_that_is_reported_of_a_failure) {
  Outcome outcome = failed();
  outcome.messages += kSuccessTold;
  EXPECT_EQ(verdict_on(outcome, failed_write()), "success is reported after the message");
  outcome.messages =
      "banner\n" + std::string(kSuccessTold) + failed_write_text("report", ENOSPC) + kAborted;
  EXPECT_EQ(verdict_on(outcome, failed_write()), "success is reported of a run that has failed");
  Expectation expectation = failed_write();
  expectation.is_at_the_end = true;
  EXPECT_EQ(verdict_on(outcome, expectation), "");
}

TEST(Verdict, finds_a_mark_of_success_after_a_failure) {
  Outcome outcome = failed();
  outcome.report = undisturbed().report;
  EXPECT_EQ(verdict_on(outcome, failed_write()), "a mark of success after a failure");
  Expectation expectation = failed_write();
  expectation.is_at_the_end = true;
  EXPECT_EQ(verdict_on(outcome, expectation), "");
  outcome.report = std::string("head\n") + kSuccessMark;
  EXPECT_EQ(verdict_on(outcome, expectation), "a mark of success in a report that is not whole");
}

TEST(Verdict, finds_a_hole_unless_one_is_allowed) {
  Outcome outcome = failed();
  outcome.report = ">a\nblock\n";
  EXPECT_EQ(verdict_on(outcome, failed_write()),
            "an output is not the beginning of the undisturbed one");
  Expectation expectation = failed_write();
  expectation.may_have_holes = true;
  EXPECT_EQ(verdict_on(outcome, expectation), "");
  outcome = failed();
  outcome.masked = ">b\n";
  EXPECT_EQ(verdict_on(outcome, failed_write()),
            "an output is not the beginning of the undisturbed one");
}

TEST(Verdict, knows_a_run_whose_edits_could_not_grow) {
  Outcome outcome = failed();
  outcome.status = 0;
  outcome.messages = "banner\n";
  outcome.output = "Program aborded due to failed realloc!\n";
  Expectation expectation{.statuses = {{0, ""}}};
  EXPECT_EQ(verdict_on(outcome, expectation), "status 0 with another standard output");
  expectation.may_lack_edits = true;
  EXPECT_EQ(verdict_on(outcome, expectation), "");
  outcome.messages = kSuccessTold;
  EXPECT_EQ(verdict_on(outcome, expectation), "success is reported without all edits");
  outcome.report = undisturbed().report;
  EXPECT_EQ(verdict_on(outcome, expectation), "a mark of success without all edits");
  outcome.report = "block\n";
  outcome.messages = "banner\n";
  EXPECT_EQ(verdict_on(outcome, expectation),
            "an output without all edits is not the beginning of the undisturbed one");
}

TEST(PointLog, counts_points_and_keeps_findings) {
  CPointLog log("none");
  log.judge("first", failed(), undisturbed(), failed_write());
  log.judge("second", undisturbed(), undisturbed(), failed_write());
  EXPECT_EQ(log.point_count(), 2U);
  ASSERT_EQ(log.findings().size(), 1U);
  EXPECT_EQ(log.findings().front().find("second: status 0 is not allowed (status 0)"), 0U);
}

}  // namespace
}  // namespace quorix::testing
