// Command lines that the program itself refuses: by which code, with which words, and which
// settings have been stored by then.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "driver/command_line.h"
#include "settings/settings.h"
#include "support/default_settings.h"
#include "support/settings_snapshot.h"
#include "unit/driver/arguments.h"

namespace quorix {
namespace {

using RefusedCommandLine = testing::CDefaultSettings;
using testing::settings_changed_by;
using testing::verdict_on;

const std::string kProblem = "-2 Sorry, a problem occured when parsing the command line options. ";
const std::string kPerfectionMessage =
    "-1 Sorry, using a perfection minimum is not implemented in this version.\n";
const std::string kThresholdMessage =
    "-1 Sorry, either the minimum score or the minimum length must be larger.\n";
const std::string kMismatchMessage =
    "-1 Sorry, the mismatch score must be smaller or equal to -2.\n";
const std::string kIndelMessage = "-1 Sorry, the indel score must be smaller or equal to -2.\n";
const std::string kRecursionMessage =
    "-1 Sorry, the recursion depth must be greater than 0.\n"
    "A value of 0 would corresponds to a perfect search.\n";
const std::string kUnitLengthMessage =
    "-1 I think you have made a mistake here: The maximum unit length must be greater\n"
    "or equal to the minimum unit length.\n";

TEST_F(RefusedCommandLine, without_a_file_name_names_the_program_as_it_was_called) {
  EXPECT_EQ(verdict_on({}, "./bin/quorix"),
            "-1 Error: No input file has been specified. Type ./bin/quorix --help for more "
            "information.\n");
}

TEST_F(RefusedCommandLine, without_a_file_name_prints_percent_signs_of_the_name_as_they_stand) {
  EXPECT_EQ(verdict_on({}, "100%s%%n"),
            "-1 Error: No input file has been specified. Type 100%s%%n --help for more "
            "information.\n");
}

TEST_F(RefusedCommandLine, without_a_file_name_sets_nothing) {
  EXPECT_EQ(settings_changed_by([] {
              EXPECT_EQ(verdict_on({"-N", "3", "-M", "exact", "--outputFormat", "7", "-D"}),
                        "-1 Error: No input file has been specified. Type quorix --help for more "
                        "information.\n");
            }),
            "");
}

struct RefusedLine {
  const char* words;
  std::string verdict;
};

const RefusedLine kRefusedLines[] = {
    {"--outputFormat 3 in.fa", kProblem + "An outputFormat with a value of 3 is unknown.\n\n"},
    {"--outputFormat -1 in.fa", kProblem + "An outputFormat with a value of -1 is unknown.\n\n"},
    {"--printRepeatSeqMode 3 in.fa",
     kProblem + "A printRepeatSeqMode with a value of 3 is unknown.\n\n"},
    // The message for an unknown NPerfectionMode names reportUnit, too.
    {"--NPerfectionMode 4 in.fa",
     kProblem + "An option value of 4 for the reportUnit option is unknown.\n\n"},
    {"--reportUnit -1 in.fa",
     kProblem + "An option value of -1 for the reportUnit option is unknown.\n\n"},
    {"-P 50 in.fa", kPerfectionMessage},
    {"--minPerfection 0.001 in.fa", kPerfectionMessage},
    {"--minScore 1 --minScore_b 0 in.fa", kThresholdMessage},
    {"--minScore_a 1 --minScore_b 0.5 -s 0 in.fa", kThresholdMessage},
    {"--mismatchScore -1 in.fa", kMismatchMessage},
    {"--indelScore -1 in.fa", kIndelMessage},
    {"-m 6 in.fa", kMismatchMessage},
    {"-g 0 in.fa", kIndelMessage},
    // Although the help speaks of zero.
    {"-r 0 in.fa", kRecursionMessage},
    {"-r -1 in.fa", kRecursionMessage},
    {"-u 5 -U 4 in.fa", kUnitLengthMessage},
    {"-u 7 in.fa", kUnitLengthMessage},
    {"-U 0 in.fa", kUnitLengthMessage},
};

TEST_F(RefusedCommandLine, names_its_fault) {
  for (const auto& [words, verdict] : kRefusedLines) {
    SCOPED_TRACE(words);
    reset();
    EXPECT_EQ(verdict_on(testing::words_of(words)), verdict);
  }
}

TEST_F(RefusedCommandLine, has_stored_what_comes_before_an_unknown_output_format) {
  EXPECT_EQ(settings_changed_by([] {
              verdict_on({"--outputFormat", "3", "--printRepeatSeqMode", "1", "--NPerfectionMode",
                          "1", "--reportUnit", "1", "-M", "exact", "--maskX", "-s", "9", "in.fa",
                          "report.txt"});
            }),
            "search_mode=0 min_score=9 mask_repeats=1");
  EXPECT_EQ(global_input_filename, "in.fa");
  EXPECT_EQ(global_output_filename, "report.txt");
}

struct StoredLine {
  const char* words;
  const char* changed;
};

// Modes are stored up to the unknown one: output format, printed sequences, N's, units.
const StoredLine kStoredLines[] = {
    {"--outputFormat 0 --printRepeatSeqMode -2 --NPerfectionMode 1 --reportUnit 1 in.fa",
     "print_sat_mode=0"},
    {"--outputFormat 0 --printRepeatSeqMode 1 --NPerfectionMode 3 --reportUnit 1 in.fa",
     "print_sat_seq_mode=1 print_sat_mode=0"},
    {"--outputFormat 0 --printRepeatSeqMode 1 --NPerfectionMode 1 --reportUnit 3 in.fa",
     "N_and_perfection_mode=1 print_sat_seq_mode=1 print_sat_mode=0"},
    // Negative numbers are not corrected any more.
    {"--reportUnit 3 -N -3 -f -1 in.fa", "flanking=-1 Ns_allowed_in_a_row=-3"},
    {"-P 50 in.fa", "perfection_minimum=50"},
};

TEST_F(RefusedCommandLine, has_stored_what_comes_before_its_fault) {
  for (const StoredLine& line : kStoredLines) {
    SCOPED_TRACE(line.words);
    reset();
    EXPECT_EQ(settings_changed_by([&] { verdict_on(testing::words_of(line.words)); }),
              line.changed);
  }
}

TEST_F(RefusedCommandLine, tells_only_the_first_of_its_faults) {
  struct Fault {
    const char* option;
    const char* value;
    std::string message;
  };
  const std::vector<Fault> faults = {
      {"--outputFormat", "3", kProblem + "An outputFormat with a value of 3 is unknown.\n\n"},
      {"--printRepeatSeqMode", "3",
       kProblem + "A printRepeatSeqMode with a value of 3 is unknown.\n\n"},
      {"--NPerfectionMode", "5",
       kProblem + "An option value of 5 for the reportUnit option is unknown.\n\n"},
      {"--reportUnit", "6",
       kProblem + "An option value of 6 for the reportUnit option is unknown.\n\n"},
      {"-P", "50", kPerfectionMessage},
      {"-s", "1", kThresholdMessage},
      {"-m", "-1", kMismatchMessage},
      {"-g", "-1", kIndelMessage},
      {"-r", "0", kRecursionMessage},
      {"-U", "0", kUnitLengthMessage}};

  for (std::size_t first = 0; first < faults.size(); ++first) {
    // Backwards, so that the order on the command line cannot be what decides.
    std::vector<const char*> words{"quorix", "in.fa"};
    for (std::size_t i = faults.size(); i-- > first;) {
      words.push_back(faults[i].option);
      words.push_back(faults[i].value);
    }
    if (first <= 5) words.insert(words.end(), {"--minScore_b", "0"});
    int code = 0;
    const std::string message = testing::messages_of(
        [&] { code = read_and_init_parameters(static_cast<int>(words.size()), words.data()); });
    EXPECT_EQ(std::to_string(code) + " " + message, faults[first].message);
  }
}

}  // namespace
}  // namespace quorix
