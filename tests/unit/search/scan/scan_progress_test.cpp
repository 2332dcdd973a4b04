// Progress lines from inside a search. They reach standard error one by one, and each arrival moves
// the clock, so a test sees at which bases a scan looks at it.

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <string>

#include "console/run_clock.h"
#include "search/scan/scan_progress.h"
#include "support/fake_clock.h"
#include "support/memory_stream.h"
#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CRecordedStandardError;
using testing::CSearchedSequence;
using testing::printed_by;
using testing::repeated;
using testing::set_current_time;

constexpr std::time_t kStart = 5000;

class Progress : public testing::CSearchSettings {
 protected:
  Progress() { start_clock(); }
  ~Progress() override {
    set_current_time(kClockAtRest);
    time_next_status_report = kClockAtRest;
    time_analysis_started = 0;
  }

  /// A line is due at once.
  void start_clock() {
    now_ = kStart;
    set_current_time(now_);
    time_analysis_started = kStart;
    time_next_status_report = kStart - 1;
  }

  /// Lets the given time pass with every line that is written.
  auto pass(std::time_t seconds) {
    return [this, seconds] {
      now_ += seconds;
      set_current_time(now_);
    };
  }

  /// A text without runs of one to three bases, so that every base is looked at.
  static std::string bases_of(std::size_t length) {
    return repeated("ACGT", length / 4 + 1).substr(0, length);
  }

  /// The progress lines of a search over unit lengths 1 to 3, a minute after each other.
  template <class Search>
  std::string progress_of(std::size_t length, const Search& search) {
    search_units_from_to(1, 3);
    start_clock();
    CSearchedSequence sequence(bases_of(length), "chrM", 7);
    const CRecordedStandardError standard_error(pass(60));
    search(sequence.search);
    return standard_error.received();
  }

 private:
  static constexpr std::time_t kClockAtRest = 1000;
  std::time_t now_ = kStart;
};

void search_exact(CSearchController& search) {
  search.exact_search_2();
}

void search_imperfect(CSearchController& search) {
  search.complete_imperfect_search(nullptr);
}

TEST_F(Progress, shows_time_sequence_unit_length_and_name_at_every_256th_base) {
  const char* const expected =
      "00.00.00 - #   7 -    1bp - chrM\n"
      "00.01.00 - #   7 -    1bp - chrM\n"
      "00.02.00 - #   7 -    1bp - chrM\n"
      "00.03.00 - #   7 -    2bp - chrM\n"
      "00.04.00 - #   7 -    2bp - chrM\n"
      "00.05.00 - #   7 -    2bp - chrM\n"
      "00.06.00 - #   7 -    3bp - chrM\n"
      "00.07.00 - #   7 -    3bp - chrM\n"
      "00.08.00 - #   7 -    3bp - chrM\n";
  EXPECT_EQ(progress_of(600, search_exact), expected);
  EXPECT_EQ(progress_of(600, search_imperfect), expected);
}

// A unit of one base is tried at 512 of 514 bases, one of two is not.
TEST_F(Progress, is_asked_for_at_bases_that_may_start_a_unit_only) {
  const char* const expected =
      "00.00.00 - #   7 -    1bp - chrM\n"
      "00.01.00 - #   7 -    1bp - chrM\n"
      "00.02.00 - #   7 -    1bp - chrM\n"
      "00.03.00 - #   7 -    2bp - chrM\n"
      "00.04.00 - #   7 -    2bp - chrM\n"
      "00.05.00 - #   7 -    3bp - chrM\n"
      "00.06.00 - #   7 -    3bp - chrM\n";
  EXPECT_EQ(progress_of(514, search_exact), expected);
  EXPECT_EQ(progress_of(514, search_imperfect), expected);
}

TEST_F(Progress, comes_once_in_more_than_59_seconds) {
  search_units_of(2);
  for (const auto search : {search_exact, search_imperfect}) {
    for (const auto& [seconds, line_count] : {std::pair(0, 1), {59, 1}, {60, 3}}) {
      start_clock();
      CSearchedSequence sequence(bases_of(600));
      int arrival_count = 0;
      const CRecordedStandardError standard_error([&, advance = pass(seconds)] {
        ++arrival_count;
        advance();
      });
      search(sequence.search);
      EXPECT_EQ(arrival_count, line_count) << seconds;
    }
  }
}

TEST_F(Progress, is_silent_while_no_line_is_due) {
  search_units_of(2);
  for (const auto search : {search_exact, search_imperfect}) {
    update_report_time();
    CSearchedSequence sequence(bases_of(600));
    const CRecordedStandardError standard_error(pass(60));
    search(sequence.search);
    EXPECT_EQ(standard_error.received(), "");
  }
}

// The last base that may seed a unit of one is base 255 of 257, and of two that of 258.
TEST_F(Progress, is_not_asked_for_after_the_last_base_that_may_seed) {
  const auto lines_of = [&](std::size_t length, const auto& search) {
    const std::string lines = progress_of(length, search);
    return std::count(lines.begin(), lines.end(), '\n');
  };
  EXPECT_EQ(lines_of(257, search_exact), 3);
  EXPECT_EQ(lines_of(257, search_imperfect), 3);
  EXPECT_EQ(lines_of(258, search_exact), 4);
  EXPECT_EQ(lines_of(258, search_imperfect), 4);
  EXPECT_EQ(lines_of(259, search_exact), 5);
  EXPECT_EQ(lines_of(259, search_imperfect), 5);
}

// Base 0 is an N, so the first base at which the clock is looked at is 256.
TEST_F(Progress, skips_Ns_with_units_of_one_base) {
  search_units_of(1);
  for (const auto search : {search_exact, search_imperfect}) {
    for (const auto& [length, is_told] : {std::pair(257, false), {258, true}}) {
      start_clock();
      CSearchedSequence sequence("N" + bases_of(static_cast<std::size_t>(length) - 1), "chr1");
      const CRecordedStandardError standard_error;
      search(sequence.search);
      EXPECT_EQ(standard_error.received(), is_told ? "00.00.00 - #   1 -    1bp - chr1\n" : "")
          << length;
    }
  }
}

TEST_F(Progress, is_not_asked_for_inside_an_exact_run_of_one_base_that_was_found) {
  search_units_of(1);
  const CRecordedStandardError standard_error(pass(60));
  CSearchedSequence sequence(std::string(600, 'A'), "chr1");
  sequence.search.exact_search_2();
  EXPECT_EQ(standard_error.received(), "00.00.00 - #   1 -    1bp - chr1\n");
}

TEST_F(Progress, comes_from_both_scans_inside_found_repeats_too) {
  search_units_of(2);
  for (const auto search : {search_exact, search_imperfect}) {
    start_clock();
    const CRecordedStandardError standard_error(pass(60));
    CSearchedSequence sequence(repeated("AC", 150), "chr1");
    search(sequence.search);
    EXPECT_EQ(standard_error.received(),
              "00.00.00 - #   1 -    2bp - chr1\n00.01.00 - #   1 -    2bp - chr1\n");
  }
}

TEST_F(Progress, comes_between_the_two_messages_of_extend_exact) {
  search_units_of(2);
  const CRecordedStandardError standard_error;
  CSearchedSequence sequence("ACGTTG", "chr1");
  sequence.search.search_exact_and_extend_to_imperfect_repeats();
  EXPECT_EQ(standard_error.received(),
            "  Searching for exact repeats.\n"
            "00.00.00 - #   1 -    2bp - chr1\n"
            "  Extend exact to imperfect repeats.\n");
}

TEST_F(Progress, does_not_come_from_the_scans_that_the_driver_does_not_call) {
  const CRecordedStandardError standard_error(pass(60));
  CSearchedSequence sequence(bases_of(600));
  sequence.search.exact_search();
  printed_by([&](std::FILE* out) { sequence.search.simple_imperfect_search(out); });
  EXPECT_EQ(standard_error.received(), "");
}

TEST_F(Progress, has_no_line_for_units_of_no_bases) {
  for (const auto search : {search_exact, search_imperfect}) {
    search_units_from_to(0, 1);
    start_clock();
    CSearchedSequence sequence(bases_of(100), "chr1");
    const CRecordedStandardError standard_error(pass(60));
    search(sequence.search);
    EXPECT_EQ(standard_error.received(), "00.00.00 - #   1 -    1bp - chr1\n");
  }
}

TEST_F(Progress, looks_at_the_clock_where_a_scan_goes_on_at_a_256th_base) {
  const std::string name = "chr1";
  const SequenceLabel label{1, name};
  const CRecordedStandardError standard_error;
  CScanProgress progress(label, 3);
  progress.skip_to(512);
  progress.pass(511);
  EXPECT_EQ(standard_error.received(), "");
  progress.pass(512);
  EXPECT_EQ(standard_error.received(), "00.00.00 - #   1 -    3bp - chr1\n");
}

TEST_F(Progress, does_not_look_at_the_clock_again_before_the_next_256th_base) {
  const std::string name = "chr1";
  const SequenceLabel label{1, name};
  const CRecordedStandardError standard_error;
  CScanProgress progress(label, 3);
  update_report_time();
  progress.pass(300);
  start_clock();
  progress.pass(511);
  EXPECT_EQ(standard_error.received(), "");
  progress.pass(512);
  EXPECT_EQ(standard_error.received(), "00.00.00 - #   1 -    3bp - chr1\n");
}

}  // namespace
}  // namespace quorix
