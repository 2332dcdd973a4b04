// Outputs that would overwrite the input or each other are refused while all files still are whole.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>
#include <string>

#include "unit/driver/run_folder.h"
#include "unit/driver/run_texts.h"

namespace quorix {
namespace {

using testing::ProcessResult;

constexpr const char* kInput = ">a\nACGTTGCACC\n";

class COneFileForTwo : public testing::CInRunFolder {
 protected:
  COneFileForTwo() { folder_.write("in.fa", kInput); }

  /// Expects a refusal of `output` that leaves the input as it was.
  void expect_refused(const ProcessResult& result, const std::string& output,
                      const std::string& why) const {
    EXPECT_EQ(result.status, 154);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(testing::messages_after_banner(result.err), "Sorry! Failed to open file\n   \"" +
                                                              output + "\"\nas output file.\n" +
                                                              why + testing::aborted_with(-102));
    EXPECT_EQ(folder_.text("in.fa"), kInput);
  }

  /// Runs with standard output going to a file of the folder, whose text it keeps.
  ProcessResult run_with_output_to(const char* file,
                                   std::initializer_list<const char*> arguments) const {
    return folder_.run_after(
        [=] {
          const int descriptor = ::open(file, O_WRONLY | O_APPEND);
          if (descriptor < 0 || ::dup2(descriptor, STDOUT_FILENO) < 0) std::abort();
        },
        arguments);
  }
};

using OneFileForTwo = COneFileForTwo;

constexpr const char* kIsInput = "It is the same file as the input file.\n";
constexpr const char* kIsReport = "It is the same file as the report.\n";

TEST_F(OneFileForTwo, is_refused_as_input_and_report) {
  expect_refused(folder_.run({"in.fa", "in.fa"}), "in.fa", kIsInput);
  expect_refused(folder_.run({"in.fa", "./in.fa"}), "./in.fa", kIsInput);
}

TEST_F(OneFileForTwo, is_refused_through_a_hard_link) {
  folder_.hard_link("second name", "in.fa");
  expect_refused(folder_.run({"in.fa", "second name"}), "second name", kIsInput);
}

TEST_F(OneFileForTwo, is_refused_through_a_symbolic_link) {
  folder_.link("link", "in.fa");
  expect_refused(folder_.run({"in.fa", "link"}), "link", kIsInput);
  expect_refused(folder_.run({"link", "in.fa"}), "in.fa", kIsInput);
}

TEST_F(OneFileForTwo, is_refused_as_standard_output_that_goes_to_the_input) {
  expect_refused(run_with_output_to("in.fa", {"in.fa"}), "standard output", kIsInput);
}

TEST_F(OneFileForTwo, is_refused_as_input_and_masked_copy) {
  folder_.hard_link("in.fa.masked", "in.fa");
  expect_refused(folder_.run({"--maskX", "in.fa"}), "in.fa.masked", kIsInput);
}

TEST_F(OneFileForTwo, is_refused_as_input_and_masked_copy_through_a_symbolic_link) {
  folder_.link("in.fa.masked", "in.fa");
  expect_refused(folder_.run({"--maskX", "in.fa", "report.txt"}), "in.fa.masked", kIsInput);
  EXPECT_FALSE(folder_.has("report.txt"));
}

TEST_F(OneFileForTwo, is_refused_as_report_and_masked_copy) {
  folder_.write("in.fa.masked", "old");
  expect_refused(folder_.run({"--maskX", "in.fa", "in.fa.masked"}), "in.fa.masked", kIsReport);
  EXPECT_EQ(folder_.text("in.fa.masked"), "old");
}

TEST_F(OneFileForTwo, is_refused_as_report_and_masked_copy_that_do_not_exist_yet) {
  expect_refused(folder_.run({"--maskX", "in.fa", "in.fa.masked"}), "in.fa.masked", kIsReport);
  expect_refused(folder_.run({"--maskX", "./in.fa", "in.fa.masked"}), "./in.fa.masked", kIsReport);
  EXPECT_FALSE(folder_.has("in.fa.masked"));
}

TEST_F(OneFileForTwo, is_refused_through_a_link_to_a_file_that_does_not_exist_yet) {
  folder_.link("report.txt", "in.fa.masked");
  expect_refused(folder_.run({"--maskX", "in.fa", "report.txt"}), "in.fa.masked", kIsReport);
  EXPECT_FALSE(folder_.has("in.fa.masked"));
}

TEST_F(OneFileForTwo, is_refused_as_standard_output_that_goes_to_the_masked_copy) {
  folder_.write("in.fa.masked", "old");
  expect_refused(run_with_output_to("in.fa.masked", {"--maskX", "in.fa"}), "in.fa.masked",
                 kIsReport);
  EXPECT_EQ(folder_.text("in.fa.masked"), "old");
}

TEST_F(OneFileForTwo, is_no_matter_where_no_masked_copy_is_written) {
  folder_.hard_link("in.fa.masked", "in.fa");
  EXPECT_EQ(folder_.run({"in.fa"}).status, 0);
  EXPECT_EQ(folder_.text("in.fa"), kInput);
  folder_.write("other.fa", kInput);
  EXPECT_EQ(folder_.run({"other.fa", "other.fa.masked"}).status, 0);
}

TEST_F(OneFileForTwo, may_be_one_that_keeps_nothing) {
  folder_.link("in.fa.masked", "/dev/null");
  const ProcessResult result = folder_.run({"--maskX", "in.fa", "/dev/null"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(testing::progress_of(result.err),
            "00.00.00 - #   1 -    1bp - a\n" + std::string(testing::kGoodBye));
}

TEST_F(OneFileForTwo, is_looked_for_after_the_input_has_been_opened) {
  const ProcessResult result = folder_.run({"missing.fa", "missing.fa"});
  EXPECT_EQ(result.status, 155);
  EXPECT_FALSE(folder_.has("missing.fa"));
}

TEST_F(OneFileForTwo, is_not_what_two_files_with_the_same_text_are) {
  const std::string text = std::string("# no sign comes first\n") + kInput;
  folder_.write("in.fa", text);
  folder_.write("copy.fa", text);
  EXPECT_EQ(folder_.run({"in.fa", "copy.fa"}).status, 0);
  EXPECT_EQ(folder_.text("in.fa"), text);
}

}  // namespace
}  // namespace quorix
