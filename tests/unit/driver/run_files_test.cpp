#include "driver/run_files.h"

#include <gtest/gtest.h>

#include <string>

#include "console/exit_status.h"
#include "settings/settings.h"
#include "support/captured_process.h"
#include "unit/driver/run_folder.h"

namespace quorix {
namespace {

class CRunFilesOpening : public testing::CInRunFolder {
 protected:
  /// Opens the files that the settings name. Returns "0", or code and message.
  std::string opened() {
    int code = 0;
    const std::string messages =
        testing::messages_of([&] { code = open_input_and_report(files_); });
    return std::to_string(code) + (messages.empty() ? "" : " ") + messages;
  }

  RunFiles files_;
};

using RunFilesOpening = CRunFilesOpening;

TEST_F(RunFilesOpening, opens_input_and_report) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_output_filename = folder_.write("report.txt", "old");
  EXPECT_EQ(opened(), "0");
  EXPECT_EQ(files_.input.getchar(), '>');
  EXPECT_EQ(files_.input.line_number(), 1U);
  EXPECT_EQ(files_.report.name(), folder_.path("report.txt"));
  EXPECT_EQ(folder_.text("report.txt"), "");
  EXPECT_EQ(files_.masked.stream(), nullptr);
}

TEST_F(RunFilesOpening, takes_standard_output_where_no_report_is_named) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  EXPECT_EQ(opened(), "0");
  EXPECT_NE(files_.report.stream(), nullptr);
  EXPECT_EQ(files_.report.name(), "standard output");
}

TEST_F(RunFilesOpening, names_an_input_that_does_not_exist) {
  global_input_filename = folder_.path("100%%s.fa");
  EXPECT_EQ(opened(), "-101 Sorry! The input file \n   \"" + folder_.path("100%%s.fa") +
                          "\"\ncould not be opened. I guess it does not exist.\n"
                          "\nAnalysis has been aborted due to errors. Error number: -101\n\n");
}

TEST_F(RunFilesOpening, names_an_empty_input_name_as_it_is) {
  EXPECT_EQ(opened(),
            "-101 Sorry! The input file \n   \"\"\n"
            "could not be opened. I guess it does not exist.\n"
            "Name one input file and, after it, at most one report file. Of more names none is "
            "taken.\n"
            "\nAnalysis has been aborted due to errors. Error number: -101\n\n");
}

TEST_F(RunFilesOpening, names_a_report_that_cannot_be_opened) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_output_filename = folder_.path("no folder/100%%s.txt");
  EXPECT_EQ(opened(), "-102 Sorry! Failed to open file\n   \"" +
                          folder_.path("no folder/100%%s.txt") +
                          "\"\nas output file.\n"
                          "\nAnalysis has been aborted due to errors. Error number: -102\n\n");
}

TEST_F(RunFilesOpening, looks_at_the_input_before_the_report) {
  global_input_filename = folder_.path("missing.fa");
  global_output_filename = folder_.path("no folder/report.txt");
  const std::string messages = opened();
  EXPECT_EQ(messages.substr(0, 5), "-101 ");
  EXPECT_FALSE(testing::contains(messages, "report.txt"));
}

TEST_F(RunFilesOpening, leaves_an_old_report_alone_when_the_input_is_missing) {
  global_input_filename = folder_.path("missing.fa");
  global_output_filename = folder_.write("report.txt", "old");
  EXPECT_EQ(opened().substr(0, 5), "-101 ");
  EXPECT_EQ(folder_.text("report.txt"), "old");
}

TEST_F(RunFilesOpening, refuses_a_report_that_would_replace_sequences) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_output_filename = folder_.write("100%%s.fa", ">b\nACGT\n");
  EXPECT_EQ(opened(), "-102 Sorry! Failed to open file\n   \"" + folder_.path("100%%s.fa") +
                          "\"\nas output file.\n"
                          "It begins with '>', as a file of sequences does. Remove it first if the "
                          "report may replace it.\n"
                          "\nAnalysis has been aborted due to errors. Error number: -102\n\n");
  EXPECT_EQ(folder_.text("100%%s.fa"), ">b\nACGT\n");
}

TEST_F(RunFilesOpening, refuses_a_report_that_would_replace_a_gzip_file) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_output_filename = folder_.write("b.fa.gz", "\x1f\x8b");
  EXPECT_EQ(opened(), "-102 Sorry! Failed to open file\n   \"" + folder_.path("b.fa.gz") +
                          "\"\nas output file.\n"
                          "It begins as a gzip file does, and may hold sequences. Remove it first "
                          "if the report may replace it.\n"
                          "\nAnalysis has been aborted due to errors. Error number: -102\n\n");
  EXPECT_EQ(folder_.text("b.fa.gz"), "\x1f\x8b");
}

constexpr const char* kIsInUse =
    "\"\nas output file.\nIt is locked: another run is writing to it.\n"
    "\nAnalysis has been aborted due to errors. Error number: -102\n\n";

TEST_F(RunFilesOpening, refuses_a_report_that_another_run_writes) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_output_filename = folder_.write("report.txt", "old");
  COutputFile other;
  ASSERT_EQ(other.claim_name(global_output_filename, Missing::kLeave), Claim::kHeld);
  EXPECT_EQ(opened(), "-102 Sorry! Failed to open file\n   \"" + global_output_filename + kIsInUse);
  EXPECT_EQ(folder_.text("report.txt"), "old");
}

TEST_F(RunFilesOpening, refuses_a_masked_copy_that_another_run_writes_before_anything_is_emptied) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_mask_repeats = true;
  folder_.write("in.fa.masked", "old copy");
  COutputFile other;
  ASSERT_EQ(other.claim_name(masked_filename(), Missing::kLeave), Claim::kHeld);
  for (const char* const report : {"report.txt", "new.txt"}) {
    RunFiles files;
    global_output_filename = folder_.path(report);
    if (std::string(report) == "report.txt") folder_.write(report, "old report");
    EXPECT_EQ(
        testing::messages_of([&] { EXPECT_EQ(open_input_and_report(files), kOutputNotOpened); }),
        "Sorry! Failed to open file\n   \"" + masked_filename() + kIsInUse);
  }
  EXPECT_EQ(folder_.text("in.fa.masked"), "old copy");
  EXPECT_EQ(folder_.text("report.txt"), "old report");
  EXPECT_FALSE(folder_.has("new.txt"));
}

TEST_F(RunFilesOpening, locks_the_masked_copy_and_empties_it_later) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_mask_repeats = true;
  folder_.write("in.fa.masked", "old copy");
  EXPECT_EQ(opened(), "0");
  EXPECT_EQ(folder_.text("in.fa.masked"), "old copy");
  EXPECT_EQ(COutputFile().claim_name(masked_filename(), Missing::kLeave), Claim::kInUse);
  open_masked_copy(files_);
  EXPECT_NE(files_.masked.stream(), nullptr);
  EXPECT_EQ(folder_.text("in.fa.masked"), "");
}

TEST_F(RunFilesOpening, makes_no_masked_copy_where_the_report_cannot_be_opened) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  global_mask_repeats = true;
  global_output_filename = folder_.path("no folder/report.txt");
  EXPECT_EQ(opened().substr(0, 5), "-102 ");
  EXPECT_FALSE(folder_.has("in.fa.masked"));
}

TEST_F(RunFilesOpening, calls_the_masked_copy_after_the_input) {
  global_input_filename = "genomes/chr1.fa";
  global_output_filename = "report.txt";
  EXPECT_EQ(masked_filename(), "genomes/chr1.fa.masked");
}

TEST_F(RunFilesOpening, creates_the_masked_copy) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  folder_.write("in.fa.masked", "old");
  open_masked_copy(files_);
  EXPECT_NE(files_.masked.stream(), nullptr);
  EXPECT_EQ(files_.masked.name(), folder_.path("in.fa.masked"));
  EXPECT_EQ(folder_.text("in.fa.masked"), "");
}

TEST_F(RunFilesOpening, says_nothing_when_the_masked_copy_cannot_be_created) {
  global_input_filename = folder_.write("in.fa", ">a\nACGT\n");
  folder_.make_folder("in.fa.masked");
  EXPECT_EQ(testing::messages_of([&] { open_masked_copy(files_); }), "");
  EXPECT_EQ(files_.masked.stream(), nullptr);
  EXPECT_EQ(files_.masked.name(), folder_.path("in.fa.masked"));
}

TEST(RunFilesRefusal, adds_a_line_that_says_why) {
  int code = 0;
  EXPECT_EQ(testing::messages_of(
                [&] { code = refuse_output_file("50%%.txt", "It is 50%% full.", -103); }),
            "Sorry! Failed to open file\n   \"50%%.txt\"\nas output file.\nIt is 50%% full.\n"
            "\nAnalysis has been aborted due to errors. Error number: -103\n\n");
  EXPECT_EQ(code, -103);
}

TEST(RunFilesRefusal, adds_no_line_where_there_is_nothing_to_say) {
  int code = 0;
  EXPECT_EQ(testing::messages_of([&] { code = refuse_output_file("report.txt", "", -102); }),
            "Sorry! Failed to open file\n   \"report.txt\"\nas output file.\n"
            "\nAnalysis has been aborted due to errors. Error number: -102\n\n");
  EXPECT_EQ(code, -102);
}

TEST(RunFilesRefusal, of_a_failed_write_names_the_file_and_the_reason) {
  COutputFile full;
  ASSERT_TRUE(full.open("/dev/full"));
  std::fputs("line\n", full.stream());
  EXPECT_FALSE(full.flush());
  int code = 0;
  EXPECT_EQ(testing::messages_of([&] { code = end_on_write_error(full); }),
            "Sorry! Failed to write to file\n   \"/dev/full\"\nNo space left on device\n"
            "\nAnalysis has been aborted due to errors. Error number: -103\n\n");
  EXPECT_EQ(code, -103);
}

}  // namespace
}  // namespace quorix
