// Outputs that take no more: a run never passes for finished when its report is not.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "driver/standard_descriptors.h"
#include "unit/driver/run_folder.h"
#include "unit/driver/run_texts.h"

namespace quorix {
namespace {

using testing::ProcessResult;

class CWriteFailure : public testing::CInRunFolder {
 protected:
  CWriteFailure() { folder_.write("in.fa", ">a\nACGTTGCACC\n>b\nACGTTGCACC\n"); }

  /// Runs with standard output going to `path`.
  ProcessResult run_with_output_to(const char* path) const {
    return folder_.run_after(
        [=] {
          const int descriptor = ::open(path, O_WRONLY);
          if (descriptor < 0 || ::dup2(descriptor, STDOUT_FILENO) < 0) std::abort();
        },
        {"in.fa"});
  }
};

using WriteFailure = CWriteFailure;

const std::string kFirstProgressLine = "00.00.00 - #   1 -    1bp - a\n";

std::string failed_to_write(const std::string& file, const std::string& reason) {
  return "Sorry! Failed to write to file\n   \"" + file + "\"\n" + reason + "\n" +
         testing::aborted_with(-103);
}

constexpr const char* kNoSpace = "No space left on device";

TEST_F(WriteFailure, of_the_report_ends_the_run_after_the_first_record) {
  const ProcessResult result = folder_.run({"in.fa", "/dev/full"});
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err),
            kFirstProgressLine + failed_to_write("/dev/full", kNoSpace));
}

TEST_F(WriteFailure, of_the_report_is_reported_also_when_no_record_is_in_the_range) {
  const ProcessResult result = folder_.run({"--lastSeq", "0", "in.fa", "/dev/full"});
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err), failed_to_write("/dev/full", kNoSpace));
}

TEST_F(WriteFailure, of_standard_output_names_it) {
  const ProcessResult result = run_with_output_to("/dev/full");
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err),
            kFirstProgressLine + failed_to_write("standard output", kNoSpace));
}

TEST_F(WriteFailure, of_the_masked_copy_names_it) {
  folder_.link("in.fa.masked", "/dev/full");
  const ProcessResult result = folder_.run({"--maskX", "in.fa", "report.txt"});
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err),
            kFirstProgressLine + failed_to_write("in.fa.masked", kNoSpace));
  EXPECT_EQ(testing::blocks_of(folder_.text("report.txt")), testing::empty_block("a"));
}

TEST_F(WriteFailure, prints_percent_signs_of_the_name_as_they_stand) {
  folder_.link("100%%s", "/dev/full");
  EXPECT_EQ(testing::progress_of(folder_.run({"in.fa", "100%%s"}).err),
            kFirstProgressLine + failed_to_write("100%%s", kNoSpace));
}

/// Lets files of this process grow to `length` bytes at the most.
void limit_files_to(std::size_t length) {
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = length;
  std::signal(SIGXFSZ, SIG_IGN);
  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) std::abort();
}

/// A record whose name makes the report longer than all that is written to standard error, since a
/// limit of file lengths is one of all files of a process.
const std::string kLongName(5000, 'n');

TEST_F(WriteFailure, in_the_middle_of_the_run_leaves_the_blocks_before_it) {
  folder_.write("in.fa", ">a\nACGTTGCACC\n>" + kLongName + "\nACGTTGCACC\n>c\nACGTTGCACC\n");
  const ProcessResult result =
      folder_.run_after([] { limit_files_to(6000); }, {"in.fa", "report.txt"});
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err), kFirstProgressLine + "00.00.00 - #   2 -    1bp - " +
                                                  std::string(70, 'n') + "\n" +
                                                  failed_to_write("report.txt", "File too large"));
  const std::string report = folder_.text("report.txt");
  EXPECT_EQ(report.size(), 6000U);
  EXPECT_TRUE(testing::contains(report, testing::empty_block("a")));
}

TEST_F(WriteFailure, of_the_mark_of_success_is_reported_after_the_closing_text) {
  folder_.write("in.fa", ">" + kLongName + "\nACGTTGCACC\n");
  ASSERT_EQ(folder_.run({"in.fa", "whole.txt"}).status, 0);
  const std::size_t length = folder_.text("whole.txt").size();

  // "whole.txt" is one byte shorter than the name of the second report, which stands in its head.
  const ProcessResult fits =
      folder_.run_after([=] { limit_files_to(length + 1); }, {"in.fa", "report.txt"});
  EXPECT_EQ(fits.status, 0);
  const ProcessResult result =
      folder_.run_after([=] { limit_files_to(length); }, {"in.fa", "report.txt"});
  EXPECT_EQ(result.status, 153);
  const std::string after_search =
      testing::text_after("bp - " + std::string(70, 'n') + "\n", result.err);
  EXPECT_EQ(after_search, testing::kGoodBye + failed_to_write("report.txt", "File too large"));
}

/// Makes standard output a pipe that nobody reads.
void break_standard_output() {
  int ends[2];
  if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0) std::abort();
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST_F(WriteFailure, to_a_broken_pipe_is_reported_where_the_signal_is_ignored) {
  const ProcessResult result = folder_.run_after(
      [] {
        std::signal(SIGPIPE, SIG_IGN);
        break_standard_output();
      },
      {"in.fa"});
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err),
            kFirstProgressLine + failed_to_write("standard output", "Broken pipe"));
}

TEST_F(WriteFailure, to_a_broken_pipe_ends_the_run_by_the_signal_by_default) {
  const ProcessResult result = folder_.run_after(
      [] {
        std::signal(SIGPIPE, SIG_DFL);
        break_standard_output();
      },
      {"in.fa"});
  EXPECT_EQ(result.status, 128 + SIGPIPE);
}

TEST_F(WriteFailure, to_a_standard_output_that_the_caller_closed_is_reported) {
  const ProcessResult result = folder_.run_after(
      [] {
        ::close(STDOUT_FILENO);
        fill_closed_standard_descriptors();
      },
      {"in.fa"});
  EXPECT_EQ(result.status, 153);
  EXPECT_EQ(testing::progress_of(result.err),
            kFirstProgressLine + failed_to_write("standard output", "Bad file descriptor"));
}

TEST_F(WriteFailure, is_none_when_all_descriptors_are_closed_and_the_report_is_a_file) {
  const ProcessResult result = folder_.run_after(
      [] {
        for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
          ::close(descriptor);
        }
        fill_closed_standard_descriptors();
      },
      {"in.fa", "report.txt"});
  EXPECT_EQ(result.status, 0);
  const std::string report = folder_.text("report.txt");
  EXPECT_EQ(report.rfind("# Results computed with:\n", 0), 0U);
  EXPECT_EQ(testing::blocks_of(report),
            testing::empty_block("a") + testing::empty_block("b") + testing::kSuccessMark);
}

}  // namespace
}  // namespace quorix
