#include "driver/record_analysis.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "console/run_clock.h"
#include "settings/settings.h"
#include "support/captured_process.h"
#include "support/default_settings.h"
#include "support/fake_clock.h"
#include "support/memory_stream.h"
#include "support/test_record.h"

namespace quorix {
namespace {

/// Reports one plain line for each repeat.
class CRecordAnalysis : public testing::CDefaultSettings {
 protected:
  CRecordAnalysis() {
    global_print_sat_mode = kFormatSputnik;
    global_print_sat_seq_mode = kPrintNoSequence;
    testing::set_current_time(30000);
    time_analysis_started = 30000;
  }

  /// Analyses a record of these bases as number 7 and returns its report.
  std::string report_of(std::string_view bases, bool is_masked = false) {
    std::string report;
    messages_ = testing::messages_of([&] {
      report = testing::printed_by([&](std::FILE* stream) {
        testing::set_record(record_, "chr7", bases);
        analyse_record(7, record_, stream, is_masked);
      });
    });
    return report;
  }

  /// The bases that the analysis left.
  [[nodiscard]] std::string bases() const {
    return {record_.sequence.data(), record_.sequence.size()};
  }

  /// What the analysis wrote to standard error.
  [[nodiscard]] const std::string& messages() const { return messages_; }

 private:
  CSequence_Mol record_;
  std::string messages_;
};

using RecordAnalysis = CRecordAnalysis;

// Eleven copies of AC with one A (position 11) made G. Exact: 1 to 10 scores 10 - 2, and 12 to 22,
// which begins with C, scores 11 - 2. Over the mismatch: 21 matches - 2 for the first unit - 6.
constexpr std::string_view kOneMismatch = "ACACACACACGCACACACACAC";

// Nine copies of ACG with the bases 7, 14 and 21 made T: runs of 6, 6, 6 and 6 bases, of which each
// scores 6 - 3. With mismatches of -2 the whole scores 24 matches - 3 for the first unit - 6.
constexpr std::string_view kShortRuns = "ACGACGTCGACGATGACGACTACGACG";

TEST_F(RecordAnalysis, finds_exact_repeats_in_the_exact_mode) {
  global_search_mode = kSearchExact;
  EXPECT_EQ(report_of(kOneMismatch),
            ">chr7\n"
            "sequence length: 22\n"
            "dinucleotide 1 : 10 -- length 10 score 8 perfection 100 unit AC\n"
            "dinucleotide 12 : 22 -- length 11 score 9 perfection 100 unit AC\n"
            "# Analysis of sequence \"chr7\" completed.\n");
}

TEST_F(RecordAnalysis, extends_exact_repeats_in_the_extending_mode) {
  global_search_mode = kSearchExtendExact;
  // 21 of 22 bases match: 95.45 %.
  EXPECT_EQ(report_of(kOneMismatch),
            ">chr7\n"
            "sequence length: 22\n"
            "dinucleotide 1 : 22 -- length 22 score 13 perfection 95 unit AC\n"
            "# Analysis of sequence \"chr7\" completed.\n");
}

TEST_F(RecordAnalysis, needs_exact_seeds_in_the_extending_mode_alone) {
  global_min_unit_length = global_max_unit_length = 3;
  global_mismatch_score = -2;
  const std::string nothing =
      ">chr7\nsequence length: 27\n# Analysis of sequence \"chr7\" completed.\n";
  global_search_mode = kSearchExact;
  EXPECT_EQ(report_of(kShortRuns), nothing);
  global_search_mode = kSearchExtendExact;
  EXPECT_EQ(report_of(kShortRuns), nothing);

  // 24 of 27 bases match: 88.89 %.
  const std::string one =
      ">chr7\n"
      "sequence length: 27\n"
      "trinucleotide 1 : 27 -- length 27 score 15 perfection 89 unit ACG\n"
      "# Analysis of sequence \"chr7\" completed.\n";
  global_search_mode = kSearchImperfect;
  EXPECT_EQ(report_of(kShortRuns), one);
  global_search_mode = 3;
  EXPECT_EQ(report_of(kShortRuns), one);
}

TEST_F(RecordAnalysis, removes_overlapping_repeats_unless_told_otherwise) {
  global_search_mode = kSearchExtendExact;
  const std::string one_repeat =
      "dinucleotide 1 : 22 -- length 22 score 13 perfection 95 unit AC\n";
  const std::string report = report_of(kOneMismatch);
  const std::size_t first = report.find(one_repeat);
  ASSERT_NE(first, std::string::npos);
  EXPECT_EQ(report.find(one_repeat, first + 1), std::string::npos);

  // Each exact part is a seed that extends into the whole.
  global_remove_mostly_hidden = false;
  EXPECT_NE(report_of(kOneMismatch).find(one_repeat + one_repeat), std::string::npos);
}

TEST_F(RecordAnalysis, writes_a_progress_line_with_the_smallest_unit_length) {
  global_min_unit_length = 4;
  report_of("ACGT");
  EXPECT_EQ(messages(), "00.00.00 - #   7 -    4bp - chr7\n");
}

TEST_F(RecordAnalysis, puts_the_next_progress_line_off) {
  time_next_status_report = 0;
  testing::set_current_time(30100);
  report_of(kOneMismatch);
  EXPECT_EQ(time_next_status_report, 30159);
  // Put off before the search, which would else have written a line of its own.
  EXPECT_EQ(messages(), "00.01.40 - #   7 -    1bp - chr7\n");
}

TEST_F(RecordAnalysis, changes_no_base_unless_it_masks) {
  report_of(kOneMismatch);
  EXPECT_EQ(bases(), kOneMismatch);
}

TEST_F(RecordAnalysis, masks_every_base_of_a_repeat_from_its_first_to_its_last) {
  global_search_mode = kSearchExact;
  report_of(kOneMismatch, true);
  EXPECT_EQ(bases(), "XXXXXXXXXXGXXXXXXXXXXX");
  global_search_mode = kSearchImperfect;
  report_of(kOneMismatch, true);
  EXPECT_EQ(bases(), "XXXXXXXXXXXXXXXXXXXXXX");
}

TEST_F(RecordAnalysis, masks_no_base_beside_a_repeat) {
  global_search_mode = kSearchExact;
  report_of("GTACACACACACTG", true);
  EXPECT_EQ(bases(), "GTXXXXXXXXXXTG");
}

TEST_F(RecordAnalysis, masks_repeats_of_a_reducible_unit_although_they_are_not_reported) {
  // ATATAT... with units of 4 only: the unit ATAT tells nothing new, so no line is printed.
  global_search_mode = kSearchExact;
  global_min_unit_length = global_max_unit_length = 4;
  EXPECT_EQ(report_of("GATATATATATATG", true),
            ">chr7\nsequence length: 14\n# Analysis of sequence \"chr7\" completed.\n");
  EXPECT_EQ(bases(), "GXXXXXXXXXXXXG");
}

TEST_F(RecordAnalysis, reports_before_it_masks) {
  global_search_mode = kSearchExact;
  global_print_sat_seq_mode = kPrintSequence;
  global_flanking = 2;
  EXPECT_EQ(report_of("GTACACACACACTG", true),
            ">chr7\n"
            "sequence length: 14\n"
            "dinucleotide 3 : 12 -- length 10 score 8 perfection 100 unit AC\n"
            "GT:ACACACACAC:TG\n"
            "# Analysis of sequence \"chr7\" completed.\n");
}

TEST_F(RecordAnalysis, tells_of_an_empty_record_too) {
  for (const int mode : {kSearchExact, kSearchExtendExact, kSearchImperfect}) {
    global_search_mode = mode;
    EXPECT_EQ(report_of("", true),
              ">chr7\nsequence length: 0\n# Analysis of sequence \"chr7\" completed.\n");
    EXPECT_EQ(bases(), "");
  }
}

TEST_F(RecordAnalysis, tells_of_a_record_without_repeats) {
  EXPECT_EQ(report_of("ACGTTGCA"),
            ">chr7\nsequence length: 8\n# Analysis of sequence \"chr7\" completed.\n");
}

}  // namespace
}  // namespace quorix
