// The printed lines by hand, column by column.

#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainReport = CWithDefaultSettings;
using PlainAlignment = CWithDefaultSettings;
using PlainMinimumPerfection = CWithDefaultSettings;

/// 98 bases, TT, a repeat of ACG at 101 to 110 (from 1) with an inserted T, CC.
const std::string kBases = std::string(98, 'G') + "TT" + "ACGACTGACG" + "CC";

Repeat example() {
  Repeat repeat = repeat_from_unit(100, 103);
  repeat.end = 110;
  repeat.score = 4;
  repeat.insertions = 1;
  repeat.edits = {{105, 'I'}};
  return repeat;
}

/// A perfect repeat from the start of the text.
Repeat perfect(std::int64_t unit_length, std::int64_t end) {
  Repeat repeat = repeat_from_unit(0, unit_length);
  repeat.end = end;
  repeat.score = static_cast<int>(end - unit_length);
  return repeat;
}

/// The unit that is printed of a repeat of this unit, empty if nothing is printed.
std::string unit_in_report(const std::string& unit) {
  global_print_sat_mode = kFormatSputnik;
  global_print_sat_seq_mode = kPrintNoSequence;
  const auto length = static_cast<std::int64_t>(unit.size());
  const std::string line = report_repeat(perfect(length, 2 * length), unit + unit);
  if (line.empty()) {
    return "";
  }
  const std::size_t begin = line.rfind(' ') + 1;
  return line.substr(begin, line.size() - 1 - begin);
}

TEST_F(PlainReport, has_one_line_in_the_quorix_format) {
  global_print_sat_mode = kFormatQuorix;
  global_print_sat_seq_mode = kPrintNoSequence;
  // Eight of nine unit positions are right: 88.889 %.
  EXPECT_EQ(
      report_repeat(example(), kBases),
      "   trinucleotide       101 :       110 |     10 bp |      9 BP |      4 pt |  88.889 % "
      "| unit ACG\n");
}

TEST_F(PlainReport, has_counts_and_edits_in_the_extended_format) {
  global_print_sat_seq_mode = kPrintNoSequence;
  const std::string columns =
      "   trinucleotide       101 :       110 |     10 bp |      9 BP |      4 pt |  88.889 % |   "
      "0 "
      "mis |   1 ins |   0 del | ";
  EXPECT_EQ(report_repeat(example(), kBases), columns + "  0 N |  unit ACG\nMissense: (6,I),\n");
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(report_repeat(example(), kBases), columns + " unit ACG\nMissense: (6,I),\n");
  // Every other code is the extended format, too.
  global_print_sat_mode = 7;
  EXPECT_EQ(report_repeat(example(), kBases), columns + " unit ACG\nMissense: (6,I),\n");
}

TEST_F(PlainReport, has_rounded_numbers_in_the_sputnik_format) {
  global_print_sat_mode = kFormatSputnik;
  global_print_sat_seq_mode = kPrintNoSequence;
  EXPECT_EQ(report_repeat(example(), kBases),
            "trinucleotide 101 : 110 -- length 9 score 4 perfection 89 unit ACG\n");
}

TEST_F(PlainReport, rounds_the_perfection_as_the_quotient_times_a_hundred_has_it) {
  global_print_sat_mode = kFormatSputnik;
  global_print_sat_seq_mode = kPrintNoSequence;
  const auto perfection_of = [](std::int64_t good, std::int64_t length) {
    Repeat repeat = perfect(3, length);
    repeat.mismatches = length - good;
    const std::string line = report_repeat(repeat, "ACG");
    const std::size_t begin = line.find("perfection ") + 11;
    return line.substr(begin, line.find(" unit") - begin);
  };
  EXPECT_EQ(perfection_of(177, 200), "89");     // 88.5
  EXPECT_EQ(perfection_of(8849, 10000), "88");  // 88.49
  // 23 / 40 lies below 0.575 by a hair and stays below 57.5 when multiplied.
  EXPECT_EQ(perfection_of(23, 40), "57");
}

TEST_F(PlainReport, names_units_by_length) {
  global_print_sat_mode = kFormatQuorix;
  global_print_sat_seq_mode = kPrintNoSequence;
  const std::string bases = "AACCGGTTACGTACCA";
  EXPECT_EQ(report_repeat(perfect(2, 4), "ACAC").substr(0, 17), "    dinucleotide ");
  EXPECT_EQ(report_repeat(perfect(6, 12), bases).substr(0, 17), "  hexanucleotide ");
  EXPECT_EQ(report_repeat(perfect(7, 14), bases).substr(0, 17), "    7-nucleotide ");
  EXPECT_EQ(report_repeat(perfect(12, 14), bases).substr(0, 17), "   12-nucleotide ");
  global_print_sat_mode = kFormatSputnik;
  EXPECT_EQ(report_repeat(perfect(7, 14), bases).substr(0, 14), "7-nucleotide 1");
}

TEST_F(PlainReport, has_right_numbers_beyond_32_bits) {
  global_print_sat_mode = kFormatQuorix;
  global_print_sat_seq_mode = kPrintNoSequence;
  Repeat repeat = perfect(3, 0);
  repeat.start = 5000000000;
  repeat.end = 10000000000;
  repeat.score = 2147483647;
  EXPECT_EQ(
      report_repeat(repeat, "ACG"),
      "   trinucleotide 5000000001 : 10000000000 | 5000000000 bp | 5000000000 BP | 2147483647 "
      "pt | 100.000 % | unit ACG\n");
}

TEST_F(PlainReport, says_nothing_of_a_repeated_shorter_unit) {
  for (const int mode : {kUnitAsFound, kUnitAlphabetical, kUnitAlphabeticalBothStrands}) {
    global_report_unit_mode = mode;
    EXPECT_EQ(unit_in_report("ATAT"), "") << mode;
  }
  // Of prime length, which the test of units as found does not see.
  global_report_unit_mode = kUnitAsFound;
  EXPECT_EQ(unit_in_report("AAAAA"), "AAAAA");
  global_report_unit_mode = kUnitAlphabetical;
  EXPECT_EQ(unit_in_report("AAAAA"), "");
  global_report_unit_mode = kUnitAlphabeticalBothStrands;
  EXPECT_EQ(unit_in_report("AAAAA"), "");
}

TEST_F(PlainReport, writes_units_in_the_form_that_was_asked_for) {
  EXPECT_EQ(unit_in_report("GTT"), "AAC");
  EXPECT_EQ(unit_in_report("ACG"), "ACG");
  EXPECT_EQ(unit_in_report("TTTG"), "AAAC");
  // Its own reverse complement's rotation: AT on either strand.
  EXPECT_EQ(unit_in_report("TA"), "AT");
  global_report_unit_mode = kUnitAlphabetical;
  EXPECT_EQ(unit_in_report("TTTG"), "GTTT");
  global_report_unit_mode = kUnitAsFound;
  EXPECT_EQ(unit_in_report("TTTG"), "TTTG");
}

TEST_F(PlainReport, prints_the_sequence_with_as_much_of_its_flanks_as_there_is) {
  global_print_sat_seq_mode = kPrintSequence;
  EXPECT_EQ(sequence_lines(example(), kBases), "ACGACTGACG\n");
  global_flanking = 2;
  EXPECT_EQ(sequence_lines(example(), kBases), "TT:ACGACTGACG:CC\n");
  global_flanking = 5;
  EXPECT_EQ(sequence_lines(example(), kBases), "GGGTT:ACGACTGACG:CC\n");
  EXPECT_EQ(sequence_lines(perfect(2, 4), "ACAC"), ":ACAC:\n");
  global_print_sat_seq_mode = kPrintNoSequence;
  EXPECT_EQ(sequence_lines(example(), kBases), "");
}

TEST_F(PlainAlignment, leaves_a_gap_in_the_unit_under_an_inserted_base) {
  EXPECT_EQ(sequence_lines(example(), kBases), "ACGACTGACG\n||||| ||||\nACGAC-GACG\n");
}

TEST_F(PlainAlignment, sets_flanks_off_with_colons) {
  global_flanking = 2;
  EXPECT_EQ(sequence_lines(example(), kBases),
            "TT:ACGACTGACG:CC\n   ||||| ||||   \n   ACGAC-GACG   \n");
  EXPECT_EQ(sequence_lines(perfect(2, 4), "ACAC"), ":ACAC:\n |||| \n ACAC \n");
}

TEST_F(PlainAlignment, takes_several_edits_at_one_base_in_turn) {
  Repeat repeat = perfect(3, 11);
  repeat.edits = {{6, 'D'}, {6, 'M'}};
  // At 6 the unit's A is missing and T stands for its C.
  EXPECT_EQ(sequence_lines(repeat, "ACGACGTGACG"), "ACGACG-TGACG\n||||||  ||||\nACGACGACGACG\n");
}

TEST_F(PlainAlignment, starts_in_the_phase_of_the_first_base) {
  // The unit AC stands at 1; the base at 0 is its C.
  Repeat repeat = repeat_from_unit(1, 3);
  repeat.start = 0;
  repeat.end = 5;
  repeat.unit_pos_left = 1;
  EXPECT_EQ(sequence_lines(repeat, "CACAC"), "CACAC\n|||||\nCACAC\n");
}

TEST_F(PlainAlignment, marks_an_N_without_an_edit_with_a_star) {
  EXPECT_EQ(sequence_lines(perfect(2, 6), "ACNCAC"), "ACNCAC\n||*|||\nACACAC\n");
  Repeat repeat = perfect(2, 6);
  repeat.edits = {{2, 'M'}};
  EXPECT_EQ(sequence_lines(repeat, "ACNCAC"), "ACNCAC\n|| |||\nACACAC\n");
}

TEST_F(PlainMinimumPerfection, prints_what_is_perfect_enough_as_a_whole) {
  global_print_sat_mode = kFormatSputnik;
  global_print_sat_seq_mode = kPrintNoSequence;
  search_units_of(2);
  const std::string bases = "ACACNNACAC";
  const std::vector<Repeat> exact = exact_search_2(bases);
  // Eight of ten bases are no N; 80 is just enough.
  global_perfection_minimum = 80.0F;
  EXPECT_EQ(report_minimum_perfection("x", bases, exact),
            ">x\nsequence length: 10\n"
            "dinucleotide 1 : 10 -- length 10 score 6 perfection 80 unit AC\n");
}

TEST_F(PlainMinimumPerfection, breaks_up_what_is_not) {
  global_print_sat_mode = kFormatSputnik;
  global_print_sat_seq_mode = kPrintNoSequence;
  search_units_of(2);
  require_score(2);
  const std::string bases = "ACACNNACAC";
  const std::vector<Repeat> exact = exact_search_2(bases);
  // From 0 on only the first four bases keep above 81 %, from 4 and 5 on nothing does, from 6 on
  // again four. Each part's first unit is not scored.
  global_perfection_minimum = 81.0F;
  EXPECT_EQ(report_minimum_perfection("x", bases, exact),
            ">x\nsequence length: 10\n"
            "dinucleotide 1 : 4 -- length 4 score 2 perfection 100 unit AC\n"
            "dinucleotide 7 : 10 -- length 4 score 2 perfection 100 unit AC\n");
  // A part must pass the thresholds like any repeat.
  require_score(3);
  EXPECT_EQ(report_minimum_perfection("x", bases, exact), ">x\nsequence length: 10\n");
}

TEST_F(PlainMinimumPerfection, leaves_repeats_whole_where_Ns_are_no_mismatches) {
  global_print_sat_mode = kFormatSputnik;
  global_print_sat_seq_mode = kPrintNoSequence;
  search_units_of(2);
  const std::string bases = "ACACNNACAC";
  const std::vector<Repeat> exact = exact_search_2(bases);
  global_N_and_perfection_mode = kNAsMatch;
  global_perfection_minimum = 101.0F;
  EXPECT_EQ(report_minimum_perfection("x", bases, exact),
            ">x\nsequence length: 10\n"
            "dinucleotide 1 : 10 -- length 10 score 6 perfection 100 unit AC\n");
}

TEST_F(PlainMinimumPerfection, finds_a_part_in_the_phase_of_its_start) {
  global_perfection_minimum = 100.0F;
  const std::string bases = "ACACAC";
  const std::optional<Repeat> part = find_one_part(perfect(2, 6), bases, 3);
  ASSERT_TRUE(part.has_value());
  // CAC: three matches less the unit's two.
  EXPECT_EQ(describe(*part), "[3,6) unit [0,2) score 1");
  EXPECT_EQ(part->unit_pos_left, 0);
  EXPECT_EQ(part->unit_pos_right, 0);
}

TEST_F(PlainMinimumPerfection, takes_the_longest_of_equally_good_parts) {
  // The N adds nothing to the score; four of five are 80 %, six of seven more.
  global_perfection_minimum = 80.0F;
  EXPECT_EQ(describe(*find_one_part(perfect(2, 7), "ACACNCA", 0)), "[0,7) unit [0,2) score 4 N 1");
  EXPECT_EQ(describe(*find_one_part(perfect(2, 5), "ACACN", 0)), "[0,5) unit [0,2) score 2 N 1");
}

TEST_F(PlainMinimumPerfection, counts_a_base_that_is_neither_the_unit_s_nor_N_as_a_mismatch) {
  global_perfection_minimum = 70.0F;
  // A C G C: after the G two of three are right, after the C three of four.
  const std::optional<Repeat> part = find_one_part(perfect(2, 4), "ACGC", 0);
  ASSERT_TRUE(part.has_value());
  EXPECT_EQ(describe(*part), "[0,4) unit [0,2) score 1 mis 1");
  EXPECT_TRUE(part->edits.empty());
  // From the G on it never gets above one of two.
  EXPECT_FALSE(find_one_part(perfect(2, 4), "ACGC", 2).has_value());
}

}  // namespace
}  // namespace quorix::reference
