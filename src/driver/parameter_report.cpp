// The same lines go to the terminal and, as comments, to the head of the report. Labels end in the
// same column, apart from those that are too long for it. The spelling of two of them ("succesive",
// "nucletides") is part of the program's face and stays.
//
// File names may hold percent signs, which are doubled: `general_PrintMessage` undoubles them.

#include "driver/parameter_report.h"

#include <string>

#include "console/console_texts.h"
#include "console/number_text.h"
#include "report/output_format.h"
#include "settings/settings.h"

namespace quorix {

namespace {

const char* search_mode_text() {
  switch (global_search_mode) {
    case kSearchExact:
      return "exact repeats";
    case kSearchExtendExact:
      return "exact repeats which are extended to imperfect repeats";
    default:
      return "imperfect repeats";
  }
}

const char* n_perfection_text() {
  switch (global_N_and_perfection_mode) {
    case kNAsMismatch:
      return "asMismatch";
    case kNAsNeutral:
      return "asNeutral";
    default:
      return "asMatch";
  }
}

const char* unit_mode_text() {
  switch (global_report_unit_mode) {
    case kUnitAsFound:
      return "as they are";
    case kUnitAlphabetical:
      return "alphabetical normal form";
    default:
      return "alphabetical normal form using reverse complement";
  }
}

const char* sequence_mode_text() {
  switch (global_print_sat_seq_mode) {
    case kPrintNoSequence:
      return "don't print sequence";
    case kPrintSequence:
      return "print sequence";
    default:
      return "print alignment";
  }
}

/// "1 - last sequence"
std::string sequence_range_text() {
  std::string text = number2str(global_sequence_from);
  text += " - ";
  text += global_sequence_to == kLastSequence ? "last sequence" : number2str(global_sequence_to);
  return text;
}

/// "maximum (6, 0+1*unitlength )"
std::string threshold_text(int constant, int offset, float factor) {
  std::string text = "maximum (";
  text += number2str(constant);
  text += ", ";
  text += number2str(offset);
  text += "+";
  text += number2str(factor);
  text += "*unitlength )";
  return text;
}

const char* yes_or_no(bool value) {
  return value ? "yes" : "no";
}

}  // namespace

void print_search_parameters(std::FILE* stream, const char* prefix) {
  const bool is_imperfect = global_search_mode != kSearchExact;
  const auto print_line = [&](const char* label, std::string_view value) {
    general_PrintMessage(stream, prefix, label, value, "\n");
  };

  print_line("Parameter settings used in this search:", "");
  print_line("Input file name:                    ", double_percent_signs(global_input_filename));
  if (!global_output_filename.empty()) {
    print_line("Output file name:                   ",
               double_percent_signs(global_output_filename));
  }
  print_line("   Sequence range to process:       ", sequence_range_text());
  print_line("   Satellites searched for:         ", search_mode_text());
  if (is_imperfect) {
    print_line("   Recursion depth:                 ", number2str(global_maximum_recursion_depth));
    print_line("   Maximum score reduction:         ",
               global_maximum_scorereduction == kNoScoreReductionLimit
                   ? "-"
                   : number2str(global_maximum_scorereduction));
  }
  print_line("   Minimum unit length:             ", number2str(global_min_unit_length));
  print_line("   Maximum unit length:             ", number2str(global_max_unit_length));
  print_line("   Minimum score:                   ",
             threshold_text(global_min_score, global_min_score_a, global_min_score_bx));
  print_line("   Minimum length:                  ",
             threshold_text(global_min_length, global_min_length_a, global_min_length_bx));
  print_line("   Treat N's as:                    ",
             global_treat_Ns_as_missense ? "missense" : "neutral");
  print_line("   Max. succesive N's allowed:      ", number2str(global_Ns_allowed_in_a_row));
  if (is_imperfect) {
    print_line("   Mismatch score:                  ", number2str(global_mismatch_score));
    print_line("   Indel score:                     ", number2str(global_indel_score));
  }
  print_line("   Minimum perfection:              ",
             std::string(number2str(global_perfection_minimum)) + " %%");
  print_line("   Number of flanking nucletides:   ", number2str(global_flanking));
  print_line("   Remove mostly overlapping satellites: ", yes_or_no(global_remove_mostly_hidden));
  print_line("   Write file with masked seq.:     ", yes_or_no(global_mask_repeats));
  print_line("   Computing perfections treat N's: ", n_perfection_text());
  print_line("   Report units as:                 ", unit_mode_text());
  print_line("   Output format:                   ", output_format_name());
  print_line("   Print sequence mode:             ", sequence_mode_text());
}

}  // namespace quorix
