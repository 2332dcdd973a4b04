#include "driver/parameter_report.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "settings/settings.h"
#include "support/captured_process.h"
#include "support/default_settings.h"
#include "support/head_texts.h"
#include "support/memory_stream.h"

namespace quorix {
namespace {

using ParameterReport = testing::CDefaultSettings;
using testing::default_parameters;

std::string report_with(const char* prefix) {
  return testing::printed_by([&](std::FILE* stream) { print_search_parameters(stream, prefix); });
}

/// What stands after the label that begins with `label`, from column `width` on, or
/// "(no such line)".
std::string value_of(const std::string& label, std::size_t width = 36) {
  const std::string report = report_with("");
  const std::size_t line = ("\n" + report).find("\n" + label);
  if (line == std::string::npos) return "(no such line)";
  const std::size_t value = line + width;
  return report.substr(value, report.find('\n', line) - value);
}

TEST_F(ParameterReport, tells_all_the_defaults) {
  global_input_filename = "seq.fa";
  EXPECT_EQ(report_with(""), default_parameters("seq.fa"));
}

TEST_F(ParameterReport, is_the_same_on_standard_error) {
  global_input_filename = "seq.fa";
  EXPECT_EQ(testing::messages_of([] { print_search_parameters(stderr, ""); }),
            default_parameters("seq.fa"));
}

TEST_F(ParameterReport, begins_every_line_with_the_prefix) {
  global_input_filename = "seq.fa";
  global_output_filename = "report.txt";
  EXPECT_EQ(report_with("# "),
            testing::with_prefix("# ", default_parameters("seq.fa", "report.txt")));
}

TEST_F(ParameterReport, shows_the_output_file_on_standard_error_too) {
  global_output_filename = "report.txt";
  const std::string report = testing::messages_of([] { print_search_parameters(stderr, ""); });
  EXPECT_NE(report.find("\nOutput file name:                   report.txt\n   Sequence range"),
            std::string::npos);
}

/// REQUIRES: `text` holds `old_part`.
void replace_in(std::string& text, const std::string& old_part, const char* new_part) {
  const std::size_t found = text.find(old_part);
  ASSERT_NE(found, std::string::npos) << old_part;
  text.replace(found, old_part.size(), new_part);
}

TEST_F(ParameterReport, leaves_out_what_an_exact_search_does_not_use) {
  global_input_filename = "seq.fa";
  global_search_mode = 0;
  std::string expected = default_parameters("seq.fa");
  replace_in(expected, "         imperfect repeats\n", "         exact repeats\n");
  replace_in(expected, "   Recursion depth:                 5\n", "");
  replace_in(expected, "   Maximum score reduction:         -\n", "");
  replace_in(expected, "   Mismatch score:                  -6\n", "");
  replace_in(expected, "   Indel score:                     -6\n", "");
  EXPECT_EQ(report_with(""), expected);
}

TEST_F(ParameterReport, keeps_the_lines_of_an_imperfect_search_when_it_extends_exact_repeats) {
  global_search_mode = 1;
  EXPECT_EQ(value_of("   Satellites searched for:"),
            "exact repeats which are extended to imperfect repeats");
  EXPECT_EQ(value_of("   Recursion depth:"), "5");
  EXPECT_EQ(value_of("   Maximum score reduction:"), "-");
  EXPECT_EQ(value_of("   Mismatch score:"), "-6");
  EXPECT_EQ(value_of("   Indel score:"), "-6");
}

TEST_F(ParameterReport, ends_the_range_with_the_last_number) {
  global_sequence_from = 3;
  global_sequence_to = 7;
  EXPECT_EQ(value_of("   Sequence range to process:"), "3 - 7");
}

TEST_F(ParameterReport, shows_range_numbers_without_sign) {
  global_sequence_from = 4294967295U;
  global_sequence_to = 4294967294U;
  EXPECT_EQ(value_of("   Sequence range to process:"), "4294967295 - 4294967294");
  global_sequence_to = 0;
  EXPECT_EQ(value_of("   Sequence range to process:"), "4294967295 - 0");
}

TEST_F(ParameterReport, shows_a_score_reduction_unless_it_means_no_limit) {
  global_maximum_scorereduction = 2147483646;
  EXPECT_EQ(value_of("   Maximum score reduction:"), "2147483646");
  global_maximum_scorereduction = std::numeric_limits<int>::min();
  EXPECT_EQ(value_of("   Maximum score reduction:"), "-2147483648");
  global_maximum_scorereduction = 2147483647;
  EXPECT_EQ(value_of("   Maximum score reduction:"), "-");
}

TEST_F(ParameterReport, shows_unit_lengths_without_sign) {
  global_min_unit_length = 0;
  global_max_unit_length = 4294967295U;
  EXPECT_EQ(value_of("   Minimum unit length:"), "0");
  EXPECT_EQ(value_of("   Maximum unit length:"), "4294967295");
}

TEST_F(ParameterReport, shows_each_number_of_a_threshold_as_itself) {
  global_min_score = 12;
  global_min_score_a = -3;
  global_min_score_bx = 0.5F;
  global_min_length = 25;
  global_min_length_a = 8;
  global_min_length_bx = -1.25F;
  EXPECT_EQ(value_of("   Minimum score:"), "maximum (12, -3+0.5*unitlength )");
  EXPECT_EQ(value_of("   Minimum length:"), "maximum (25, 8+-1.25*unitlength )");
}

TEST_F(ParameterReport, shows_each_single_number_as_itself) {
  global_maximum_recursion_depth = 7;
  global_Ns_allowed_in_a_row = 11;
  global_mismatch_score = -2;
  global_indel_score = -3;
  global_perfection_minimum = 12.5F;
  global_flanking = 20;
  EXPECT_EQ(value_of("   Recursion depth:"), "7");
  EXPECT_EQ(value_of("   Max. succesive N's allowed:"), "11");
  EXPECT_EQ(value_of("   Mismatch score:"), "-2");
  EXPECT_EQ(value_of("   Indel score:"), "-3");
  EXPECT_EQ(value_of("   Minimum perfection:"), "12.5 %");
  EXPECT_EQ(value_of("   Number of flanking nucletides:"), "20");
}

TEST_F(ParameterReport, tells_the_switches) {
  global_treat_Ns_as_missense = true;
  global_remove_mostly_hidden = false;
  global_mask_repeats = true;
  EXPECT_EQ(value_of("   Treat N's as:"), "missense");
  EXPECT_EQ(value_of("   Remove mostly overlapping satellites:", 41), "no");
  EXPECT_EQ(value_of("   Write file with masked seq.:"), "yes");
}

TEST_F(ParameterReport, names_every_mode) {
  global_N_and_perfection_mode = 1;
  EXPECT_EQ(value_of("   Computing perfections treat N's:"), "asNeutral");
  global_N_and_perfection_mode = 2;
  EXPECT_EQ(value_of("   Computing perfections treat N's:"), "asMatch");

  global_report_unit_mode = 0;
  EXPECT_EQ(value_of("   Report units as:"), "as they are");
  global_report_unit_mode = 1;
  EXPECT_EQ(value_of("   Report units as:"), "alphabetical normal form");

  global_print_sat_mode = 0;
  EXPECT_EQ(value_of("   Output format:"), "quorix format");
  global_print_sat_mode = 2;
  EXPECT_EQ(value_of("   Output format:"), "sputnik compatible format");

  global_print_sat_seq_mode = 0;
  EXPECT_EQ(value_of("   Print sequence mode:"), "don't print sequence");
  global_print_sat_seq_mode = 1;
  EXPECT_EQ(value_of("   Print sequence mode:"), "print sequence");
}

TEST_F(ParameterReport, names_an_unknown_mode_as_the_last_one) {
  global_search_mode = global_N_and_perfection_mode = global_report_unit_mode = -1;
  global_print_sat_mode = global_print_sat_seq_mode = 3;
  EXPECT_EQ(value_of("   Satellites searched for:"), "imperfect repeats");
  EXPECT_EQ(value_of("   Recursion depth:"), "5");
  EXPECT_EQ(value_of("   Computing perfections treat N's:"), "asMatch");
  EXPECT_EQ(value_of("   Report units as:"), "alphabetical normal form using reverse complement");
  EXPECT_EQ(value_of("   Output format:"), "sputnik compatible format");
  EXPECT_EQ(value_of("   Print sequence mode:"), "print alignment");
}

TEST_F(ParameterReport, prints_percent_signs_of_file_names_as_they_stand) {
  global_input_filename = "100%s%%n%.fa";
  global_output_filename = "%d%%.txt";
  EXPECT_EQ(value_of("Input file name:"), "100%s%%n%.fa");
  EXPECT_EQ(value_of("Output file name:"), "%d%%.txt");
}

}  // namespace
}  // namespace quorix
