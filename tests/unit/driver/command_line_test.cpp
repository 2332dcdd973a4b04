// What reaches the settings from a command line that is read to its end.

#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <string>

#include "settings/settings.h"
#include "support/default_settings.h"
#include "support/settings_snapshot.h"
#include "unit/driver/arguments.h"

namespace quorix {
namespace {

using CommandLine = testing::CDefaultSettings;
using testing::verdict_on;

/// The settings that differ from their defaults after these arguments, which must be valid.
std::string set_by(const testing::Arguments& arguments) {
  return testing::settings_changed_by([&] { EXPECT_EQ(verdict_on(arguments), "0"); });
}

TEST_F(CommandLine, of_one_file_name_leaves_every_default) {
  EXPECT_EQ(set_by({"in.fa"}), "");
  EXPECT_EQ(global_input_filename, "in.fa");
  EXPECT_EQ(global_output_filename, "");
}

TEST_F(CommandLine, gives_back_the_defaults_before_it_is_read) {
  global_min_score = 77;
  global_mask_repeats = true;
  EXPECT_EQ(verdict_on({"in.fa"}), "0");
  EXPECT_EQ(global_min_score, 6);
  EXPECT_FALSE(global_mask_repeats);
}

TEST_F(CommandLine, takes_a_second_file_name_as_the_report) {
  EXPECT_EQ(set_by({"in.fa", "report.txt"}), "");
  EXPECT_EQ(global_input_filename, "in.fa");
  EXPECT_EQ(global_output_filename, "report.txt");
}

TEST_F(CommandLine, takes_neither_of_three_file_names_and_says_nothing) {
  EXPECT_EQ(set_by({"in.fa", "report.txt", "third", "-N", "3"}), "Ns_allowed_in_a_row=3");
  EXPECT_EQ(global_input_filename, "");
  EXPECT_EQ(global_output_filename, "");
}

TEST_F(CommandLine, may_have_options_between_and_after_the_file_names) {
  EXPECT_EQ(set_by({"in.fa", "-N", "3", "report.txt", "-D"}),
            "Ns_allowed_in_a_row=3 remove_mostly_hidden=0");
  EXPECT_EQ(global_input_filename, "in.fa");
  EXPECT_EQ(global_output_filename, "report.txt");
}

TEST_F(CommandLine, keeps_blanks_and_percent_signs_of_file_names) {
  EXPECT_EQ(set_by({"my 100%s.fa", "a b%%.txt"}), "");
  EXPECT_EQ(global_input_filename, "my 100%s.fa");
  EXPECT_EQ(global_output_filename, "a b%%.txt");
}

/// The options of a command line, and the settings that they change.
struct OptionLine {
  const char* options;
  const char* changed;
};

const OptionLine kOptionLines[] = {
    {"-N 3", "Ns_allowed_in_a_row=3"},
    {"--succN 3", "Ns_allowed_in_a_row=3"},
    {"--succN -3", "Ns_allowed_in_a_row=0"},  // in silence
    {"--NsAsMissense", "treat_Ns_as_missense=1"},

    {"--reportUnit 0", "report_unit_mode=0"},
    {"--reportUnit 1", "report_unit_mode=1"},
    {"--reportUnit 2", ""},
    {"--NPerfectionMode 0", ""},
    {"--NPerfectionMode 1", "N_and_perfection_mode=1"},
    {"--NPerfectionMode 2", "N_and_perfection_mode=2"},
    {"--printRepeatSeqMode 0", "print_sat_seq_mode=0"},
    {"--printRepeatSeqMode 1", "print_sat_seq_mode=1"},
    {"--printRepeatSeqMode 2", ""},
    {"--outputFormat 0", "print_sat_mode=0"},
    {"--outputFormat 1", ""},
    {"--outputFormat 2", "print_sat_mode=2"},  // though its help does not mention it
    {"--maskX", "mask_repeats=1"},
    {"-f 20", "flanking=20"},
    {"--flanking 20", "flanking=20"},
    {"-f -1", ""},  // zero, in silence

    {"-P 0.0", ""},  // the only minimum that is accepted
    {"--minPerfection 0", ""},
    {"-D", "remove_mostly_hidden=0"},
    {"--dontRemoveMostlyOverlapping", "remove_mostly_hidden=0"},

    {"--firstSeq 2 --lastSeq 3", "sequence_from=2 sequence_to=3"},
    {"--firstSeq 3 --lastSeq 2", "sequence_from=3 sequence_to=2"},  // no sequence at all
    {"--lastSeq -1", ""},                                           // all sequences
    // The range is stored bit for bit.
    {"--firstSeq -1", "sequence_from=4294967295"},
    {"--firstSeq -2147483648", "sequence_from=2147483648"},
    {"--lastSeq -5", "sequence_to=4294967291"},
    {"--lastSeq 2147483647", "sequence_to=2147483647"},
    {"--lastSeq 0", "sequence_to=0"},

    {"-R 24", "maximum_scorereduction=24"},
    {"--maximum_score_reduction 0", "maximum_scorereduction=0"},
    {"-R -2147483648", "maximum_scorereduction=-2147483648"},
    {"-R 2147483647", ""},
    {"-r 7", "maximum_recursion_depth=7"},
    {"--recursion 1", "maximum_recursion_depth=1"},

    {"-u 2", "min_unit_length=2"},
    {"--minUnitLen 2", "min_unit_length=2"},
    {"-U 20", "max_unit_length=20"},
    {"--maxUnitLen 20", "max_unit_length=20"},
    {"-u 4 -U 4", "min_unit_length=4 max_unit_length=4"},
    {"-u 0", "min_unit_length=0"},
    {"-U 4294967295", "max_unit_length=4294967295"},

    {"--minLength_b 1.5", "min_length_bx=1.5"},
    {"--minLength_a -4", "min_length_a=-4"},
    {"-l 10", "min_length=10"},
    {"--minLength 10", "min_length=10"},
    {"--minScore_b 0.5", "min_score_bx=0.5"},
    {"--minScore_a 3", "min_score_a=3"},
    {"-s 12", "min_score=12"},
    {"--minScore 12", "min_score=12"},
    // Any term may bring a threshold to the two that it must have.
    {"--minScore 1 --minScore_b 0 --minLength 2", "min_score=1 min_score_bx=0 min_length=2"},
    {"--minScore_a 1 --minScore_b 1.0 --minScore 0", "min_score=0 min_score_a=1"},

    {"-m -2", "mismatch_score=-2"},
    {"--mismatchScore -3", "mismatch_score=-3"},
    {"-g -2", "indel_score=-2"},
    {"--indelScore -2147483648", "indel_score=-2147483648"},
    {"-M exact", "search_mode=0"},
    {"--searchMode extendExact", "search_mode=1"},
    {"-M imperfect", ""},

    {"--NsAsMissense --maskX -D -M exact -u 3 -U 9 -s 20 --outputFormat 2",
     "search_mode=0 print_sat_mode=2 min_unit_length=3 max_unit_length=9 treat_Ns_as_missense=1 "
     "min_score=20 remove_mostly_hidden=0 mask_repeats=1"},
};

TEST_F(CommandLine, sets_what_its_options_name_and_nothing_else) {
  for (const auto& [options, changed] : kOptionLines) {
    SCOPED_TRACE(options);
    reset();
    EXPECT_EQ(set_by(testing::words_of(std::string(options) + " in.fa")), changed);
  }
}

/// Reads a command line that may name a number of threads. Returns that number, 7 without it.
int threads_of(const char* option, const char* value) {
  int thread_count = 7;
  const char* const words[] = {"quorix", option, value, "in.fa"};
  EXPECT_EQ(read_and_init_parameters(4, words, &thread_count), 0);
  return thread_count;
}

TEST_F(CommandLine, stores_a_number_of_threads_where_there_is_such_an_option) {
  EXPECT_EQ(threads_of("-t", "1"), 1);
  EXPECT_EQ(threads_of("--threads", "1024"), 1024);
  EXPECT_EQ(threads_of("-U", "9"), 7);
}

TEST_F(CommandLine, has_no_option_for_threads_otherwise) {
  EXPECT_EQ(testing::run_in_child([] {
              return testing::status_of_end({"-t", "2", "in.fa"});
            }).status,
            1);
}

}  // namespace
}  // namespace quorix
