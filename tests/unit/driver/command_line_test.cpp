// What reaches the settings from a command line that is read to its end.

#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <initializer_list>
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
std::string set_by(std::initializer_list<const char*> arguments) {
  init_param();
  return testing::settings_changed_by([&] { EXPECT_EQ(verdict_on(arguments), "0"); });
}

/// The same for one option with a value.
std::string set_by(const char* option, const char* value) {
  return set_by({option, value, "in.fa"});
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

TEST_F(CommandLine, sets_the_Ns_in_a_row) {
  EXPECT_EQ(set_by("-N", "3"), "Ns_allowed_in_a_row=3");
  EXPECT_EQ(set_by("--succN", "3"), "Ns_allowed_in_a_row=3");
}

TEST_F(CommandLine, makes_negative_Ns_in_a_row_zero_in_silence) {
  EXPECT_EQ(set_by("--succN", "-3"), "Ns_allowed_in_a_row=0");
}

TEST_F(CommandLine, switches_Ns_to_missense) {
  EXPECT_EQ(set_by({"--NsAsMissense", "in.fa"}), "treat_Ns_as_missense=1");
}

TEST_F(CommandLine, sets_the_mode_of_units) {
  EXPECT_EQ(set_by("--reportUnit", "0"), "report_unit_mode=0");
  EXPECT_EQ(set_by("--reportUnit", "1"), "report_unit_mode=1");
  EXPECT_EQ(set_by("--reportUnit", "2"), "");
}

TEST_F(CommandLine, sets_the_mode_of_Ns_in_a_perfection) {
  EXPECT_EQ(set_by("--NPerfectionMode", "0"), "");
  EXPECT_EQ(set_by("--NPerfectionMode", "1"), "N_and_perfection_mode=1");
  EXPECT_EQ(set_by("--NPerfectionMode", "2"), "N_and_perfection_mode=2");
}

TEST_F(CommandLine, sets_the_mode_of_printed_sequences) {
  EXPECT_EQ(set_by("--printRepeatSeqMode", "0"), "print_sat_seq_mode=0");
  EXPECT_EQ(set_by("--printRepeatSeqMode", "1"), "print_sat_seq_mode=1");
  EXPECT_EQ(set_by("--printRepeatSeqMode", "2"), "");
}

TEST_F(CommandLine, sets_the_output_format_also_the_one_that_its_help_is_silent_about) {
  EXPECT_EQ(set_by("--outputFormat", "0"), "print_sat_mode=0");
  EXPECT_EQ(set_by("--outputFormat", "1"), "");
  EXPECT_EQ(set_by("--outputFormat", "2"), "print_sat_mode=2");
}

TEST_F(CommandLine, switches_masking_on) {
  EXPECT_EQ(set_by({"--maskX", "in.fa"}), "mask_repeats=1");
}

TEST_F(CommandLine, sets_the_flanks) {
  EXPECT_EQ(set_by("-f", "20"), "flanking=20");
  EXPECT_EQ(set_by("--flanking", "20"), "flanking=20");
}

TEST_F(CommandLine, makes_negative_flanks_zero_in_silence) {
  EXPECT_EQ(set_by("-f", "-1"), "");
}

TEST_F(CommandLine, accepts_a_perfection_minimum_of_zero) {
  EXPECT_EQ(set_by("-P", "0.0"), "");
  EXPECT_EQ(set_by("--minPerfection", "0"), "");
}

TEST_F(CommandLine, switches_overlap_removal_off) {
  EXPECT_EQ(set_by({"-D", "in.fa"}), "remove_mostly_hidden=0");
  EXPECT_EQ(set_by({"--dontRemoveMostlyOverlapping", "in.fa"}), "remove_mostly_hidden=0");
}

TEST_F(CommandLine, sets_the_range_of_sequences) {
  EXPECT_EQ(set_by({"--firstSeq", "2", "--lastSeq", "3", "in.fa"}),
            "sequence_from=2 sequence_to=3");
}

TEST_F(CommandLine, means_all_sequences_by_a_last_one_of_minus_one) {
  EXPECT_EQ(set_by("--lastSeq", "-1"), "");
}

TEST_F(CommandLine, stores_the_range_bit_for_bit) {
  EXPECT_EQ(set_by("--firstSeq", "-1"), "sequence_from=4294967295");
  EXPECT_EQ(set_by("--firstSeq", "-2147483648"), "sequence_from=2147483648");
  EXPECT_EQ(set_by("--lastSeq", "-5"), "sequence_to=4294967291");
  EXPECT_EQ(set_by("--lastSeq", "2147483647"), "sequence_to=2147483647");
  EXPECT_EQ(set_by("--lastSeq", "0"), "sequence_to=0");
}

TEST_F(CommandLine, accepts_a_range_without_a_sequence) {
  EXPECT_EQ(set_by({"--firstSeq", "3", "--lastSeq", "2", "in.fa"}),
            "sequence_from=3 sequence_to=2");
}

TEST_F(CommandLine, sets_the_score_reduction) {
  EXPECT_EQ(set_by("-R", "24"), "maximum_scorereduction=24");
  EXPECT_EQ(set_by("--maximum_score_reduction", "0"), "maximum_scorereduction=0");
  EXPECT_EQ(set_by("-R", "-2147483648"), "maximum_scorereduction=-2147483648");
  EXPECT_EQ(set_by("-R", "2147483647"), "");
}

TEST_F(CommandLine, sets_the_recursion_depth) {
  EXPECT_EQ(set_by("-r", "7"), "maximum_recursion_depth=7");
  EXPECT_EQ(set_by("--recursion", "1"), "maximum_recursion_depth=1");
}

TEST_F(CommandLine, sets_the_unit_lengths) {
  EXPECT_EQ(set_by("-u", "2"), "min_unit_length=2");
  EXPECT_EQ(set_by("--minUnitLen", "2"), "min_unit_length=2");
  EXPECT_EQ(set_by("-U", "20"), "max_unit_length=20");
  EXPECT_EQ(set_by("--maxUnitLen", "20"), "max_unit_length=20");
  EXPECT_EQ(set_by({"-u", "4", "-U", "4", "in.fa"}), "min_unit_length=4 max_unit_length=4");
}

TEST_F(CommandLine, accepts_unit_lengths_from_0_to_the_largest_number) {
  EXPECT_EQ(set_by("-u", "0"), "min_unit_length=0");
  EXPECT_EQ(set_by("-U", "4294967295"), "max_unit_length=4294967295");
}

TEST_F(CommandLine, sets_the_terms_of_the_minimum_length) {
  EXPECT_EQ(set_by("--minLength_b", "1.5"), "min_length_bx=1.5");
  EXPECT_EQ(set_by("--minLength_a", "-4"), "min_length_a=-4");
  EXPECT_EQ(set_by("-l", "10"), "min_length=10");
  EXPECT_EQ(set_by("--minLength", "10"), "min_length=10");
}

TEST_F(CommandLine, sets_the_terms_of_the_minimum_score) {
  EXPECT_EQ(set_by("--minScore_b", "0.5"), "min_score_bx=0.5");
  EXPECT_EQ(set_by("--minScore_a", "3"), "min_score_a=3");
  EXPECT_EQ(set_by("-s", "12"), "min_score=12");
  EXPECT_EQ(set_by("--minScore", "12"), "min_score=12");
}

TEST_F(CommandLine, sets_the_penalties) {
  EXPECT_EQ(set_by("-m", "-2"), "mismatch_score=-2");
  EXPECT_EQ(set_by("--mismatchScore", "-3"), "mismatch_score=-3");
  EXPECT_EQ(set_by("-g", "-2"), "indel_score=-2");
  EXPECT_EQ(set_by("--indelScore", "-2147483648"), "indel_score=-2147483648");
}

TEST_F(CommandLine, sets_the_search_mode) {
  EXPECT_EQ(set_by("-M", "exact"), "search_mode=0");
  EXPECT_EQ(set_by("--searchMode", "extendExact"), "search_mode=1");
  EXPECT_EQ(set_by("-M", "imperfect"), "");
}

TEST_F(CommandLine, sets_many_options_at_once) {
  EXPECT_EQ(set_by({"--NsAsMissense", "--maskX", "-D", "-M", "exact", "-u", "3", "-U", "9", "-s",
                    "20", "--outputFormat", "2", "in.fa"}),
            "search_mode=0 print_sat_mode=2 min_unit_length=3 max_unit_length=9 "
            "treat_Ns_as_missense=1 min_score=20 remove_mostly_hidden=0 mask_repeats=1");
}

TEST_F(CommandLine, passes_a_threshold_of_two_by_any_of_its_terms) {
  EXPECT_EQ(set_by({"--minScore", "1", "--minScore_b", "0", "--minLength", "2", "in.fa"}),
            "min_score=1 min_score_bx=0 min_length=2");
  EXPECT_EQ(set_by({"--minScore_a", "1", "--minScore_b", "1.0", "--minScore", "0", "in.fa"}),
            "min_score=0 min_score_a=1");
}

}  // namespace
}  // namespace quorix
