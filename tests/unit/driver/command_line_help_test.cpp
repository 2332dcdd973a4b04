// The help and the version, as the library prints them: words and order, not where lines break.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "driver/command_line.h"
#include "support/default_settings.h"
#include "unit/driver/arguments.h"

namespace quorix {
namespace {

using Help = testing::CDefaultSettings;
using Version = testing::CDefaultSettings;

testing::ProcessResult output_of(const char* argument) {
  return testing::run_in_child([&] { return testing::status_of_end({argument}); });
}

/// The text with every break and indent a blank. The library may break a line before ',' and
/// '|' where there is no blank.
std::string folded(const std::string& text) {
  std::string words;
  for (const char character : text) {
    const bool is_space = character == ' ' || character == '\n';
    const bool follows_space = !words.empty() && words.back() == ' ';
    if (is_space && (words.empty() || follows_space)) continue;
    if ((character == ',' || character == '|') && follows_space) words.pop_back();
    words += is_space ? ' ' : character;
  }
  return words;
}

struct HelpEntry {
  const char* option;
  std::string text;
};

std::vector<HelpEntry> help_entries() {
  const std::string length_text =
      "The minimum length of a repeat is determined with: maximum( minLength, minLength_a + "
      "minLength_b*(unit-length) ). Default value of ";
  const std::string score_text =
      "The minimum score of a repeat is determined with: maximum( minScore, minScore_a + "
      "minScore_b*(unit-length) ). Default value of ";
  // The library prints the options from the one that was added last.
  return {
      {"-M <exact|extendExact|imperfect>, --searchMode <exact|extendExact|imperfect>",
       "Quorix provides three different search modes. exact: Search for exact repeats, only. "
       "extendExact: Searches for exact repeats and extends them by inserting mismatches and "
       "indels. imperfect: Searches directly for imperfect repeats."},
      {"-g <int>, --indelScore <int>",
       "Score for indels - must be negative. Default: -6. Match score is fixed to one."},
      {"-m <int>, --mismatchScore <int>",
       "Score for mismatch - must be negative. Default: -6. Match score is fixed to one."},
      {"-s <int>, --minScore <int>", score_text + "minScore: 0"},
      {"--minScore_a <int>", score_text + "minScore_a: 0"},
      {"--minScore_b <float>", score_text + "minScore_b: 0"},
      {"-l <int>, --minLength <int>", length_text + "minLength: 1"},
      {"--minLength_a <int>", length_text + "minLength_a: 0"},
      {"--minLength_b <float>", length_text + "minLength_b: 0"},
      {"-U <int>, --maxUnitLen <int>", "Maximum unit length. Default: 5"},
      {"-u <int>, --minUnitLen <int>", "Minimum unit length. Default: 2"},
      {"-r <int>, --recursion <int>",
       "The recursion depth used in the search. Values in the range 3 to 7 are recommended. A "
       "value of 0 implies a search for perfect repeats only."},
      {"-R <int>, --maximum_score_reduction <int>",
       "The maximum amount the score can be reduced before search is aborded. Default: "
       "6*mismatch-penalty."},
      {"--lastSeq <int>", "Number of last sequence to be processed in this run."},
      {"--firstSeq <int>", "Number of first sequence to be processed in this run."},
      {"-D, --dontRemoveMostlyOverlapping",
       "Quorix sometimes finds repeats that partially or completely overlap with other repeats, "
       "e.g. if alignments with alternative repeat patterns exist at the same locus in a sequence. "
       "The default is to remove one of any two mostly overlapping repeats in favour of that "
       "repeat with the highest score. With this option, Quorix reports also repeats that mostly "
       "overlap with higher scoring repeats."},
      {"-P <float>, --minPerfection <float>",
       "Minimum perfection of satellites. Satellites below this value are broken up or reduced in "
       "length if this yields a satellite above the minimum perfection. If N's are treated as "
       "mismatch when computing the perfection, this value also has an influence when searching "
       "for exact repeats."},
      {"-f <int>, --flanking <int>",
       "If the satellite sequence is printed, this is the number of flanking nucleotides to be "
       "printed to the left and right of it. Default: 0"},
      {"--maskX",
       "Writes the sequences to a file with the extension \".masked\" in which repeats are "
       "masked."},
      {"--outputFormat <int>",
       "Quorix provides different output formats for printing the repeat information. 0: Quorix "
       "output format, 1: extended Quorix output format"},
      {"--printRepeatSeqMode <int>",
       "Quorix provides different modes to print the repeat sequence along with its information. "
       "0: don't print sequence, 1: print sequence, 2: print alignment."},
      {"--NPerfectionMode <int>",
       "Quorix provides different modes to treat N's when computing the perfection of a repeat. 0: "
       "asMismatch, 1: asNeutral, 2: asMatch. Default: 0"},
      {"--reportUnit <int>",
       "Repeat units can be reported in three different modes. 0: asIs, 1: Alphabetical normal "
       "form, 2: Alphabetical normal form also considering the reverse complement. Default: 2"},
      {"--NsAsMissense", "Treat N's as missense. Default: Treat N's as neutral with score 0."},
      {"-N <int>, --succN <int>",
       "The maximum number of successive N's allowed in a satellite. Default: 2."},
      {"--, --ignore_rest", "Ignores the rest of the labeled arguments following this flag."},
      {"--version", "Displays version information and exits."},
      {"-h, --help", "Displays usage information and exits."},
      {"<Input and output filenames> (accepted multiple times)",
       "Quorix requires either one or two file names as parameters. The first must be the input "
       "file in FASTA format. If a second file is specified, output is written to it. If no second "
       "file is given, output is written to the console."}};
}

TEST_F(Help, goes_to_standard_output_and_ends_with_status_0) {
  for (const char* const option : {"--help", "-h"}) {
    const testing::ProcessResult result = output_of(option);
    EXPECT_EQ(result.status, 0) << option;
    EXPECT_EQ(result.err, "") << option;
    EXPECT_EQ(result.out.rfind("\nUSAGE: ", 0), 0U) << option;
  }
}

TEST_F(Help, tells_every_option_in_its_order_and_words) {
  std::string expected = "Where: ";
  for (const HelpEntry& entry : help_entries()) {
    expected += entry.option;
    expected += ' ';
    expected += entry.text;
    expected += ' ';
  }
  expected += "This program searches for tandemly repeated patterns in DNA sequences. ";

  const std::string help = folded(output_of("--help").out);
  const std::size_t where = help.find("Where: ");
  ASSERT_NE(where, std::string::npos);
  EXPECT_EQ(help.substr(where), expected);
}

TEST_F(Help, ends_the_text_of_the_file_names_with_a_blank) {
  EXPECT_NE(output_of("--help").out.find("console. \n"), std::string::npos);
}

TEST_F(Help, begins_with_all_options_in_short) {
  const std::string help = folded(output_of("--help").out);
  const std::string usage =
      "USAGE: quorix [-M <exact|extendExact|imperfect>] [-g <int>] [-m <int>] [-s <int>] "
      "[--minScore_a <int>] [--minScore_b <float>] [-l <int>] [--minLength_a <int>] "
      "[--minLength_b <float>] [-U <int>] [-u <int>] [-r <int>] [-R <int>] [--lastSeq <int>] "
      "[--firstSeq <int>] [-D] [-P <float>] [-f <int>] [--maskX] [--outputFormat <int>] "
      "[--printRepeatSeqMode <int>] [--NPerfectionMode <int>] [--reportUnit <int>] "
      "[--NsAsMissense] [-N <int>] [--] [--version] [-h] <Input and output filenames> ... ";
  EXPECT_EQ(help.substr(0, usage.size()), usage);
}

TEST_F(Help, asks_for_no_file_and_stops_at_itself) {
  const testing::ProcessResult result = testing::run_in_child([] {
    return testing::status_of_end({"-N", "3", "--help", "--unknown"});
  });
  EXPECT_EQ(result.status, 0);
}

TEST_F(Version, goes_to_standard_output_and_ends_with_status_0) {
  const testing::ProcessResult result = output_of("--version");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(folded(result.out), "quorix version: 3.3.2b ");
}

}  // namespace
}  // namespace quorix
