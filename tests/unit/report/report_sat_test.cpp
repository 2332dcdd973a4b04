// The report of one repeat: its examples, and the facts that are easily got wrong.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "repeat_scene.h"
#include "report/csat.h"

namespace quorix {
namespace {

using testing::CRepeatScene;
using testing::set_report;
using ReportSat = testing::CDefaultSettings;

/// Unit ACG at positions 101 to 110, with the T at position 6 of the repeat inserted.
CRepeatScene inserted_base_scene() {
  CRepeatScene scene(std::string(98, 'G') + "TT", "ACGACTGACG", "CC", 3);
  scene.add_edit(6, 'I');
  scene.repeat.score = 4;
  return scene;
}

TEST_F(ReportSat, prints_the_quorix_format) {
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(inserted_base_scene().report(),
            "   trinucleotide       101 :       110 |     10 bp |      9 BP |      4 pt |"
            "  88.889 % | unit ACG\n");
}

TEST_F(ReportSat, prints_the_extended_format_with_its_edit_list_and_a_comma_after_each_edit) {
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(inserted_base_scene().report(),
            "   trinucleotide       101 :       110 |     10 bp |      9 BP |      4 pt |"
            "  88.889 % |   0 mis |   1 ins |   0 del |   0 N |  unit ACG\n"
            "Missense: (6,I),\n");
}

TEST_F(ReportSat, prints_the_sputnik_format) {
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(inserted_base_scene().report(),
            "trinucleotide 101 : 110 -- length 9 score 4 perfection 89 unit ACG\n");
}

TEST_F(ReportSat, prints_the_alignment_after_the_information) {
  set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(inserted_base_scene().report(),
            "trinucleotide 101 : 110 -- length 9 score 4 perfection 89 unit ACG\n"
            "ACGACTGACG\n"
            "||||| ||||\n"
            "ACGAC-GACG\n");
}

TEST_F(ReportSat, prints_flanks_of_2_beside_the_alignment) {
  set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment, 2);
  EXPECT_EQ(inserted_base_scene().report(),
            "trinucleotide 101 : 110 -- length 9 score 4 perfection 89 unit ACG\n"
            "TT:ACGACTGACG:CC\n"
            "   ||||| ||||   \n"
            "   ACGAC-GACG   \n");
}

TEST_F(ReportSat, names_a_unit_of_length_7_in_a_column_of_16) {
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  CRepeatScene scene("", "AACCGGTAACCGGT", "", 7);
  scene.repeat.score = 7;
  EXPECT_EQ(scene.report(),
            "    7-nucleotide         1 :        14 |     14 bp |     14 BP |      7 pt |"
            " 100.000 % | unit AACCGGT\n");
}

TEST_F(ReportSat, prints_nothing_of_a_unit_that_repeats_a_shorter_one_in_every_unit_mode) {
  for (const std::string_view unit : {"ATAT", "ACGACG", "AAAA"}) {
    CRepeatScene scene("GG", std::string(unit) + std::string(unit), "CC", unit.size());
    for (const int mode : {0, 1, 2, 3, -1}) {
      for (const int format : {0, 1, 2}) {
        set_report(format, mode, kPrintAlignment);
        EXPECT_EQ(scene.report(), "") << unit << " in mode " << mode;
      }
    }
  }
}

TEST_F(ReportSat, prints_a_unit_AAAAA_of_prime_length_as_found_but_in_no_normal_form) {
  CRepeatScene scene("", "AAAAAAAAAA", "", 5);
  set_report(kFormatSputnik, 0, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "pentanucleotide 1 : 10 -- length 10 score 0 perfection 100 unit AAAAA\n");
  set_report(kFormatSputnik, 1, kPrintNoSequence);
  EXPECT_EQ(scene.report(), "");
  set_report(kFormatSputnik, 2, kPrintNoSequence);
  EXPECT_EQ(scene.report(), "");
}

std::string unit_printed_of(std::string_view unit, int mode) {
  CRepeatScene scene("", std::string(unit) + std::string(unit), "", unit.size());
  set_report(kFormatSputnik, mode, kPrintNoSequence);
  const std::string line = scene.report();
  return line.substr(line.rfind(' ') + 1);
}

TEST_F(ReportSat, prints_the_same_once_the_edits_are_packed) {
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintAlignment, 2);
  CRepeatScene scene = inserted_base_scene();
  const std::string before = scene.report();
  ASSERT_NE(before.find("Missense: (6,I),\n"), std::string::npos);
  ASSERT_NE(before.find("GAC-GACG"), std::string::npos);
  CEditStore store;
  scene.repeat.pack_edits(store, scene.record.sequence.data());
  ASSERT_TRUE(scene.repeat.missense.empty());
  EXPECT_EQ(scene.report(), before);
}

TEST_F(ReportSat, prints_unit_GTT_as_AAC_and_ACG_as_ACG_when_both_strands_count) {
  EXPECT_EQ(unit_printed_of("GTT", 2), "AAC\n");
  EXPECT_EQ(unit_printed_of("ACG", 2), "ACG\n");
  EXPECT_EQ(unit_printed_of("TTTG", 2), "AAAC\n");
  EXPECT_EQ(unit_printed_of("T", 2), "A\n");
  EXPECT_EQ(unit_printed_of("CG", 2), "CG\n");  // its own reverse complement
}

TEST_F(ReportSat, prints_the_least_rotation_of_the_unit_in_mode_1_and_every_unknown_mode) {
  for (const int mode : {1, 3, -1}) {
    EXPECT_EQ(unit_printed_of("GTT", mode), "GTT\n");
    EXPECT_EQ(unit_printed_of("TTG", mode), "GTT\n");
    EXPECT_EQ(unit_printed_of("GCA", mode), "AGC\n");
    EXPECT_EQ(unit_printed_of("T", mode), "T\n");
  }
}

TEST_F(ReportSat, prints_the_unit_as_found_in_mode_0) {
  EXPECT_EQ(unit_printed_of("TTG", 0), "TTG\n");
  EXPECT_EQ(unit_printed_of("GNA", 0), "GNA\n");
}

TEST_F(ReportSat, starts_at_position_1_with_an_empty_left_flank_at_the_first_base) {
  CRepeatScene scene("", "ACACAC", "GGT", 2);
  set_report(kFormatSputnik, kUnitAsFound, kPrintSequence, 2);
  EXPECT_EQ(scene.report(),
            "dinucleotide 1 : 6 -- length 6 score 0 perfection 100 unit AC\n"
            ":ACACAC:GG\n");
}

TEST_F(ReportSat, leaves_the_n_column_out_when_ns_count_as_missense) {
  CRepeatScene scene("", "ACACNCAC", "", 2);
  scene.repeat.score = 5;
  scene.repeat.n_count = 1;
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "    dinucleotide         1 :         8 |      8 bp |      8 BP |      5 pt |"
            "  87.500 % |   0 mis |   0 ins |   0 del |   1 N |  unit AC\nMissense: \n");
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(scene.report(),
            "    dinucleotide         1 :         8 |      8 bp |      8 BP |      5 pt |"
            "  87.500 % |   0 mis |   0 ins |   0 del |  unit AC\nMissense: \n");
}

/// The perfection that the sputnik format prints of a run of A's with so many mismatches.
std::string rounded_perfection(std::size_t length, std::int64_t mismatches) {
  CRepeatScene scene("", std::string(length, 'A'), "", 1);
  scene.repeat.mismatches = mismatches;
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  const std::string line = scene.report();
  const std::size_t start = line.find("perfection ") + 11;
  return line.substr(start, line.find(' ', start) - start);
}

TEST_F(ReportSat, rounds_a_perfection_of_88_5_to_89_and_of_88_49_to_88_in_the_sputnik_format) {
  EXPECT_EQ(rounded_perfection(200, 23), "89");      // 177 of 200 is 88.5
  EXPECT_EQ(rounded_perfection(10000, 1151), "88");  // 8849 of 10000 is 88.49
}

TEST_F(ReportSat, rounds_23_of_40_to_57_since_that_is_computed_just_below_57_5) {
  EXPECT_EQ(rounded_perfection(40, 17), "57");
}

TEST_F(ReportSat, truncates_towards_0_after_adding_one_half) {
  EXPECT_EQ(rounded_perfection(10, 0), "100");
  EXPECT_EQ(rounded_perfection(10, 10), "0");
  EXPECT_EQ(rounded_perfection(200, 199), "1");  // 0.5
  EXPECT_EQ(rounded_perfection(4, 5), "-24");    // -25 + 0.5 = -24.5
}

TEST_F(ReportSat, prints_a_perfection_of_0_in_the_sputnik_format_where_there_is_none) {
  CRepeatScene scene("", "AAAA", "", 1);
  scene.repeat.n_count = 4;
  global_N_and_perfection_mode = kNAsNeutral;
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(scene.report(), "mononucleotide 1 : 4 -- length 4 score 0 perfection 0 unit A\n");
}

TEST_F(ReportSat, marks_an_n_without_an_edit_by_a_star_in_the_alignment) {
  CRepeatScene scene("", "ACGACGANGACG", "", 3);
  scene.repeat.n_count = 1;
  set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "trinucleotide 1 : 12 -- length 12 score 0 perfection 92 unit ACG\n"
            "ACGACGANGACG\n"
            "|||||||*||||\n"
            "ACGACGACGACG\n");
}

TEST_F(ReportSat, terminates_the_bases_of_the_sequence) {
  CRepeatScene scene("", "ACAC", "", 2);
  ASSERT_GT(scene.record.sequence.capacity(), 4U);
  scene.record.sequence.data()[4] = 'x';
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  scene.report();
  EXPECT_EQ(scene.record.sequence.data()[4], '\0');
}

/// How many bytes of a report have left the buffer of its stream.
off_t bytes_flushed_by(CRepeatScene scene) {
  std::FILE* const file = std::tmpfile();
  scene.repeat.report_sat(file, scene.record);
  struct stat status = {};
  ::fstat(::fileno(file), &status);
  std::fclose(file);
  return status.st_size;
}

TEST_F(ReportSat, flushes_the_stream_after_the_line_of_the_sputnik_format_alone) {
  set_report(kFormatSputnik, kUnitAsFound, kPrintSequence);
  const std::string line = "trinucleotide 101 : 110 -- length 9 score 4 perfection 89 unit ACG\n";
  EXPECT_EQ(bytes_flushed_by(inserted_base_scene()), static_cast<off_t>(line.size()));
  for (const int format : {0, 1}) {
    set_report(format, kUnitAsFound, kPrintAlignment);
    EXPECT_EQ(bytes_flushed_by(inserted_base_scene()), 0);
  }
}

}  // namespace
}  // namespace quorix
