// Command lines that the library ends the process for, and what only the process that reads them
// may see: after "--" the library takes arguments as they stand ever after.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "driver/command_line.h"
#include "settings/settings.h"
#include "support/default_settings.h"
#include "unit/driver/arguments.h"

namespace quorix {
namespace {

using MalformedCommandLine = testing::CDefaultSettings;
using ArgumentsAfterTwoDashes = testing::CDefaultSettings;

testing::ProcessResult read_in_child(const testing::Arguments& arguments) {
  return testing::run_in_child([&] { return testing::status_of_end(arguments); });
}

/// Argument and reason of the library's failure text: "-N (--succN): Missing a value".
/// The process must have ended with status 1.
std::string failure_of(const testing::Arguments& arguments) {
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

struct MalformedLine {
  const char* words;
  const char* failure;
};

const MalformedLine kMalformedLines[] = {
    // An unknown option.
    {"--foo in.fa", "--foo: Couldn't find match for argument"},
    {"in.fa --foo", "--foo: Couldn't find match for argument"},
    {"-x in.fa", "-x: Couldn't find match for argument"},
    // The library no longer knows this flag as that of the version.
    {"-v", "-v: Couldn't find match for argument"},
    // A lone dash.
    {"-", "-: Couldn't find match for argument"},
    {"in.fa -", "-: Couldn't find match for argument"},
    // Flag and value in one word.
    {"-N3 in.fa", "-N3: Couldn't find match for argument"},
    {"--succN=3 in.fa", "--succN=3: Couldn't find match for argument"},
    // No value.
    {"in.fa -N", "-N (--succN): Missing a value for this argument!"},
    // No number.
    {"-N in.fa", "-N (--succN): Couldn't read argument value from string 'in.fa'"},
    {"--minScore_b much in.fa", "(--minScore_b): Couldn't read argument value from string 'much'"},
    // A fraction for a whole number.
    {"-s 3.5 in.fa", "-s (--minScore): Couldn't read argument value from string '3.5'"},
    // A number that is too large.
    {"-U 4294967296 in.fa",
     "-U (--maxUnitLen): Couldn't read argument value from string '4294967296'"},
    {"--lastSeq 4294967295 in.fa",
     "(--lastSeq): Couldn't read argument value from string '4294967295'"},
    {"--minLength_b 1e39 in.fa",
     "(--minLength_b): Couldn't read argument value from string '1e39'"},
    // The same option twice.
    {"-N 3 --succN 3 in.fa", "-N (--succN): Argument already set!"},
    {"-D -D in.fa", "-D (--dontRemoveMostlyOverlapping): Argument already set!"},
    {"--maskX --maskX in.fa", "(--maskX): Argument already set!"},
    // A search mode in other letters.
    {"-M Imperfect in.fa",
     "-M (--searchMode): Value 'Imperfect' does not meet constraint: "
     "exact|extendExact|imperfect"},
    {"-M extendexact in.fa",
     "-M (--searchMode): Value 'extendexact' does not meet constraint: "
     "exact|extendExact|imperfect"},
    // Percent signs are printed as they stand.
    {"--%s%%n in.fa", "--%s%%n: Couldn't find match for argument"},
};

TEST_F(MalformedCommandLine, ends_the_process_with_the_argument_at_fault) {
  for (const auto& [words, failure] : kMalformedLines) {
    SCOPED_TRACE(words);
    EXPECT_EQ(failure_of(testing::words_of(words)), failure);
  }
}

TEST_F(MalformedCommandLine, gets_a_short_usage_and_the_way_to_the_help) {
  const std::string err = read_in_child({"--foo"}).err;
  EXPECT_NE(err.find("Brief USAGE: \n   quorix  [-M <exact|extendExact|imperfect>]"),
            std::string::npos);
  EXPECT_NE(err.find("For complete USAGE and HELP type: \n   quorix --help\n"), std::string::npos);
}

/// Both file names as "<in.fa> <report.txt>", with the messages before them.
testing::ProcessResult file_names_of(const testing::Arguments& arguments) {
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
