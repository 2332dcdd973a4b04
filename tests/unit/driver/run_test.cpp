// Runs that end well, and those that end before they open a file.

#include "driver/run.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "console/run_clock.h"
#include "settings/settings.h"
#include "support/fake_clock.h"
#include "support/head_texts.h"
#include "unit/driver/run_folder.h"
#include "unit/driver/run_texts.h"

namespace quorix {
namespace {

using WholeRun = testing::CInRunFolder;

using testing::ProcessResult;

constexpr const char* kFiveCopies =
    ">chr 1\n"
    "sequence length: 10\n"
    "    dinucleotide         1 :        10 |     10 bp |     10 BP |      8 pt | 100.000 % |"
    "   0 mis |   0 ins |   0 del |   0 N |  unit AC\n"
    "Missense: \n"
    "ACACACACAC\n"
    "||||||||||\n"
    "ACACACACAC\n"
    "# Analysis of sequence \"chr 1\" completed.\n";

TEST_F(WholeRun, writes_heads_blocks_and_closing_texts_in_order) {
  folder_.write("in.fa", ">chr 1\nACACACACAC\n");
  const ProcessResult result = folder_.run({"in.fa"});
  EXPECT_EQ(result.status, 0);

  const std::string parameters =
      "Results computed with:\n"
      "   Quorix, version 3.3.2b\n" +
      testing::default_parameters("in.fa");
  EXPECT_EQ(result.err, testing::kBanner + parameters +
                            "\n\nSearch progress:\n\nTime     - SeqNr - PatLen - Seq-Name\n" +
                            std::string(72, '-') + "\n00.00.00 - #   1 -    1bp - chr 1\n" +
                            testing::kGoodBye);
  EXPECT_EQ(result.out, testing::with_prefix("# ", parameters + testing::kFirstSevenColumns +
                                                       testing::kLastFiveColumns) +
                            kFiveCopies + testing::kSuccessMark);
}

TEST_F(WholeRun, writes_the_report_into_the_second_file) {
  folder_.write("in.fa", ">chr 1\nACACACACAC\n");
  folder_.write("report.txt", "a report of an earlier run");
  const ProcessResult result = folder_.run({"in.fa", "report.txt"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(testing::contains(result.err, "\nOutput file name:                   report.txt\n"));

  const std::string report = folder_.text("report.txt");
  EXPECT_EQ(report.rfind("# Results computed with:\n", 0), 0U);
  EXPECT_TRUE(testing::contains(report, "\n# Output file name:                   report.txt\n"));
  EXPECT_EQ(testing::blocks_of(report), std::string(kFiveCopies) + testing::kSuccessMark);
}

TEST_F(WholeRun, hands_on_the_head_and_each_block_before_it_tells_of_the_next_record) {
  folder_.write("in.fa", ">a\nACGTTGCACC\n>b\nACGTTGCACC\n");
  const ProcessResult result = folder_.run_after(
      [] {
        if (::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) std::abort();
      },
      {"in.fa"});
  const std::string in_order = "00.00.00 - #   1 -    1bp - a\n" + testing::empty_block("a") +
                               "00.00.00 - #   2 -    1bp - b\n" + testing::empty_block("b");
  EXPECT_EQ(testing::blocks_of(result.err).substr(0, in_order.size()), in_order);
}

TEST_F(WholeRun, begins_the_lines_of_the_head_with_a_comment_sign_in_the_report_alone) {
  folder_.write("in.fa", ">a\nACGTTGCACC\n");
  const ProcessResult result = folder_.run({"in.fa"});
  const std::string head = result.out.substr(0, result.out.find(">a\n"));
  ASSERT_FALSE(head.empty());
  for (std::size_t line = 0; line < head.size(); line = head.find('\n', line) + 1) {
    EXPECT_EQ(head.substr(line, 2), "# ");
  }
  EXPECT_FALSE(testing::contains(result.err, "# Results"));
  EXPECT_FALSE(testing::contains(result.err, "Columns in lines"));
}

TEST_F(WholeRun, counts_time_from_its_own_start) {
  folder_.write("in.fa", ">a\nACGTTGCACC\n");
  time_analysis_started = 12;
  testing::set_current_time(7777);
  EXPECT_EQ(testing::progress_of(folder_.run({"in.fa"}).err),
            "00.00.00 - #   1 -    1bp - a\n" + std::string(testing::kGoodBye));
}

TEST_F(WholeRun, searches_in_the_mode_that_is_asked_for) {
  // Exact: 1 to 10 and 12 to 22; extended over the G: 1 to 22 (one mismatch of 22 bases).
  folder_.write("in.fa", ">a\nACACACACACGCACACACACAC\n");
  const std::string head = ">a\nsequence length: 22\n";
  const std::string end =
      "# Analysis of sequence \"a\" completed.\n" + std::string(testing::kSuccessMark);
  const std::string whole = "dinucleotide 1 : 22 -- length 22 score 13 perfection 95 unit AC\n";
  const auto run = [&](const char* mode) {
    return folder_.run({"in.fa", "-M", mode, "--outputFormat", "2", "--printRepeatSeqMode", "0"});
  };
  EXPECT_EQ(testing::blocks_of(run("exact").out),
            head +
                "dinucleotide 1 : 10 -- length 10 score 8 perfection 100 unit AC\n"
                "dinucleotide 12 : 22 -- length 11 score 9 perfection 100 unit AC\n" +
                end);
  EXPECT_EQ(testing::blocks_of(run("imperfect").out), head + whole + end);

  const ProcessResult extended = run("extendExact");
  EXPECT_EQ(testing::blocks_of(extended.out), head + whole + end);
  EXPECT_EQ(testing::progress_of(extended.err),
            "00.00.00 - #   1 -    1bp - a\n"
            "  Searching for exact repeats.\n"
            "  Extend exact to imperfect repeats.\n" +
                std::string(testing::kGoodBye));
}

TEST_F(WholeRun, prints_percent_signs_of_all_names_as_they_stand) {
  folder_.write("100%s.fa", ">chr%n 5%%\nACGTTGCACC\n");
  const ProcessResult result = folder_.run({"100%s.fa", "%d%%.txt"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(testing::contains(result.err, "\nInput file name:                    100%s.fa\n"));
  EXPECT_TRUE(testing::contains(result.err, "\nOutput file name:                   %d%%.txt\n"));
  EXPECT_TRUE(testing::contains(result.err, "bp - chr%n 5%%\n"));
  EXPECT_EQ(testing::blocks_of(folder_.text("%d%%.txt")),
            testing::empty_block("chr%n 5%%") + testing::kSuccessMark);
}

TEST_F(WholeRun, tells_of_a_record_without_bases_and_of_a_lone_header_sign) {
  folder_.write("in.fa", ">empty\n>");
  const ProcessResult result = folder_.run({"in.fa"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(testing::blocks_of(result.out),
            ">empty\nsequence length: 0\n# Analysis of sequence \"empty\" completed.\n"
            ">\nsequence length: 0\n# Analysis of sequence \"\" completed.\n" +
                std::string(testing::kSuccessMark));
}

TEST_F(WholeRun, ends_also_when_the_largest_unit_length_is_huge) {
  folder_.write("in.fa", ">chr 1\nACACACACAC\n");
  const ProcessResult result = folder_.run({"in.fa", "-U", "4294967295"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(testing::blocks_of(result.out), std::string(kFiveCopies) + testing::kSuccessMark);
}

TEST_F(WholeRun, finds_no_unit_without_a_base) {
  folder_.write("in.fa", ">chr 1\nACACACACAC\n");
  const ProcessResult result = folder_.run({"in.fa", "-u", "0"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(testing::blocks_of(result.out), std::string(kFiveCopies) + testing::kSuccessMark);
}

TEST_F(WholeRun, reads_a_file_whose_name_begins_with_a_dash_after_two_dashes) {
  folder_.write("-in.fa", ">chr 1\nACACACACAC\n");
  const ProcessResult result = folder_.run({"--", "-in.fa", "--report"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(testing::blocks_of(folder_.text("--report")),
            std::string(kFiveCopies) + testing::kSuccessMark);
}

TEST_F(WholeRun, without_arguments_greets_and_asks_for_a_file) {
  const ProcessResult result = folder_.run({});
  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, std::string(testing::kBanner) +
                            "Error: No input file has been specified. Type quorix --help for more "
                            "information.\n\n\n");
}

TEST_F(WholeRun, refuses_a_setting_before_it_opens_a_file) {
  const ProcessResult result = folder_.run({"-m", "-1", "missing.fa", "report.txt"});
  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.err, std::string(testing::kBanner) +
                            "Sorry, the mismatch score must be smaller or equal to -2.\n\n\n");
  EXPECT_FALSE(folder_.has("report.txt"));
}

TEST_F(WholeRun, refuses_a_mode_code_with_its_own_status) {
  const ProcessResult result = folder_.run({"--outputFormat", "3", "missing.fa", "report.txt"});
  EXPECT_EQ(result.status, 254);
  EXPECT_EQ(result.err,
            std::string(testing::kBanner) +
                "Sorry, a problem occured when parsing the command line options. An outputFormat "
                "with a value of 3 is unknown.\n\n" +
                testing::aborted_with(-2));
  EXPECT_FALSE(folder_.has("report.txt"));
}

TEST_F(WholeRun, greets_before_help_version_and_a_malformed_command_line) {
  EXPECT_EQ(folder_.run({"--help"}).err, testing::kBanner);
  EXPECT_EQ(folder_.run({"--help"}).status, 0);
  EXPECT_EQ(folder_.run({"--version"}).err, testing::kBanner);
  EXPECT_EQ(folder_.run({"--version"}).status, 0);

  folder_.write("in.fa", ">a\nACGTTGCACC\n");
  const ProcessResult malformed = folder_.run({"--foo", "in.fa", "report.txt"});
  EXPECT_EQ(malformed.status, 1);
  EXPECT_EQ(
      testing::messages_after_banner(malformed.err).rfind("PARSE ERROR: Argument: --foo\n", 0), 0U);
  EXPECT_FALSE(folder_.has("report.txt"));
}

}  // namespace
}  // namespace quorix
