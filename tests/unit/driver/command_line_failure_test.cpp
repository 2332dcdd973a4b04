// Command lines that the library ends the process for, and what only the process that reads them
// may see: after "--" the library takes arguments as they stand ever after.

#include <gtest/gtest.h>

#include <cstdio>
#include <initializer_list>
#include <string>

#include "driver/command_line.h"
#include "settings/settings.h"
#include "support/default_settings.h"
#include "unit/driver/arguments.h"

namespace quorix {
namespace {

using MalformedCommandLine = testing::CDefaultSettings;
using ArgumentsAfterTwoDashes = testing::CDefaultSettings;

testing::ProcessResult read_in_child(std::initializer_list<const char*> arguments) {
  return testing::run_in_child([&] { return testing::status_of_end(arguments); });
}

/// Argument and reason of the library's failure text: "-N (--succN): Missing a value".
/// The process must have ended with status 1.
std::string failure_of(std::initializer_list<const char*> arguments) {
  const testing::ProcessResult result = read_in_child(arguments);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");

  const std::string head = "PARSE ERROR: Argument: ";
  const std::string line_break = "\n             ";
  const std::size_t middle = result.err.find(line_break);
  if (result.err.rfind(head, 0) != 0 || middle == std::string::npos) return result.err;
  const std::size_t reason = middle + line_break.size();
  return result.err.substr(head.size(), middle - head.size()) + ": " +
         result.err.substr(reason, result.err.find('\n', reason) - reason);
}

TEST_F(MalformedCommandLine, has_an_unknown_option) {
  EXPECT_EQ(failure_of({"--foo", "in.fa"}), "--foo: Couldn't find match for argument");
  EXPECT_EQ(failure_of({"in.fa", "--foo"}), "--foo: Couldn't find match for argument");
  EXPECT_EQ(failure_of({"-x", "in.fa"}), "-x: Couldn't find match for argument");
}

TEST_F(MalformedCommandLine, has_a_flag_that_the_library_no_longer_knows_as_version) {
  EXPECT_EQ(failure_of({"-v"}), "-v: Couldn't find match for argument");
}

TEST_F(MalformedCommandLine, has_a_lone_dash) {
  EXPECT_EQ(failure_of({"-"}), "-: Couldn't find match for argument");
  EXPECT_EQ(failure_of({"in.fa", "-"}), "-: Couldn't find match for argument");
}

TEST_F(MalformedCommandLine, joins_flag_and_value) {
  EXPECT_EQ(failure_of({"-N3", "in.fa"}), "-N3: Couldn't find match for argument");
  EXPECT_EQ(failure_of({"--succN=3", "in.fa"}), "--succN=3: Couldn't find match for argument");
}

TEST_F(MalformedCommandLine, lacks_a_value) {
  EXPECT_EQ(failure_of({"in.fa", "-N"}), "-N (--succN): Missing a value for this argument!");
}

TEST_F(MalformedCommandLine, has_a_value_that_is_no_number) {
  EXPECT_EQ(failure_of({"-N", "in.fa"}),
            "-N (--succN): Couldn't read argument value from string 'in.fa'");
  EXPECT_EQ(failure_of({"--minScore_b", "much", "in.fa"}),
            "(--minScore_b): Couldn't read argument value from string 'much'");
}

TEST_F(MalformedCommandLine, has_a_fraction_for_a_whole_number) {
  EXPECT_EQ(failure_of({"-s", "3.5", "in.fa"}),
            "-s (--minScore): Couldn't read argument value from string '3.5'");
}

TEST_F(MalformedCommandLine, has_a_number_that_is_too_large) {
  EXPECT_EQ(failure_of({"-U", "4294967296", "in.fa"}),
            "-U (--maxUnitLen): Couldn't read argument value from string '4294967296'");
  EXPECT_EQ(failure_of({"--lastSeq", "4294967295", "in.fa"}),
            "(--lastSeq): Couldn't read argument value from string '4294967295'");
  EXPECT_EQ(failure_of({"--minLength_b", "1e39", "in.fa"}),
            "(--minLength_b): Couldn't read argument value from string '1e39'");
}

TEST_F(MalformedCommandLine, has_an_option_twice) {
  EXPECT_EQ(failure_of({"-N", "3", "--succN", "3", "in.fa"}),
            "-N (--succN): Argument already set!");
  EXPECT_EQ(failure_of({"-D", "-D", "in.fa"}),
            "-D (--dontRemoveMostlyOverlapping): Argument already set!");
  EXPECT_EQ(failure_of({"--maskX", "--maskX", "in.fa"}), "(--maskX): Argument already set!");
}

TEST_F(MalformedCommandLine, has_a_search_mode_in_other_letters) {
  EXPECT_EQ(failure_of({"-M", "Imperfect", "in.fa"}),
            "-M (--searchMode): Value 'Imperfect' does not meet constraint: "
            "exact|extendExact|imperfect");
  EXPECT_EQ(failure_of({"-M", "extendexact", "in.fa"}),
            "-M (--searchMode): Value 'extendexact' does not meet constraint: "
            "exact|extendExact|imperfect");
}

TEST_F(MalformedCommandLine, prints_percent_signs_of_its_arguments_as_they_stand) {
  EXPECT_EQ(failure_of({"--%s%%n", "in.fa"}), "--%s%%n: Couldn't find match for argument");
}

TEST_F(MalformedCommandLine, gets_a_short_usage_and_the_way_to_the_help) {
  const std::string err = read_in_child({"--foo"}).err;
  EXPECT_NE(err.find("Brief USAGE: \n   quorix  [-M <exact|extendExact|imperfect>]"),
            std::string::npos);
  EXPECT_NE(err.find("For complete USAGE and HELP type: \n   quorix --help\n"), std::string::npos);
}

/// Both file names as "<in.fa> <report.txt>", with the messages before them.
testing::ProcessResult file_names_of(std::initializer_list<const char*> arguments) {
  return testing::run_in_child([&] {
    const int code = testing::read_arguments(arguments);
    std::printf("<%s> <%s>", global_input_filename.c_str(), global_output_filename.c_str());
    return code;
  });
}

TEST_F(ArgumentsAfterTwoDashes, are_file_names_also_when_they_begin_with_a_dash) {
  const testing::ProcessResult result = file_names_of({"--", "-in.fa", "--maskX"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "<-in.fa> <--maskX>");
}

TEST_F(ArgumentsAfterTwoDashes, may_be_a_lone_dash_and_no_options) {
  const testing::ProcessResult result = file_names_of({"-N", "3", "--", "-", "-N"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "<-> <-N>");
}

TEST_F(ArgumentsAfterTwoDashes, follow_the_file_names_before_them) {
  EXPECT_EQ(file_names_of({"in.fa", "--ignore_rest", "-report"}).out, "<in.fa> <-report>");
}

TEST_F(ArgumentsAfterTwoDashes, may_be_none) {
  const testing::ProcessResult result = file_names_of({"--"});
  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.err,
            "Error: No input file has been specified. Type quorix --help for more information.\n");
}

}  // namespace
}  // namespace quorix
