// Reports of repeats with edits, worked out by hand.
//
// The first copy of the unit scores nothing, each further matching base 1 and each edit what the
// case says. BP is bp less the inserted and plus the deleted bases, and the perfection is the share
// of BP that is neither edited nor an N.

#include <gtest/gtest.h>

#include <string>

#include "repeat_scene.h"

namespace quorix {
namespace {

using testing::CRepeatScene;
using testing::set_report;
using ReportOfEditedRepeat = testing::CDefaultSettings;

TEST_F(ReportOfEditedRepeat, with_a_mismatch) {
  // ACG ACT ACG: the T stands for G. 5 matches after the first copy and -2: 3. 8 of 9.
  CRepeatScene scene("TTTT", "ACGACTACG", "T", 3);
  scene.add_edit(6, 'M');
  scene.repeat.score = 3;
  set_report(kFormatExtendedQuorix, kUnitAlphabeticalBothStrands, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "   trinucleotide         5 :        13 |      9 bp |      9 BP |      3 pt |"
            "  88.889 % |   1 mis |   0 ins |   0 del |   0 N |  unit ACG\n"
            "Missense: (6,M),\n"
            "ACGACTACG\n"
            "||||| |||\n"
            "ACGACGACG\n");
}

TEST_F(ReportOfEditedRepeat, with_an_inserted_base) {
  // TATATA G TATATA: 10 matches after the first copy and -6: 4. 13 bp span 12; 11 of 12 is 91.67.
  // TA is its own reverse complement; its least rotation is AT.
  CRepeatScene scene("", "TATATAGTATATA", "", 2);
  scene.add_edit(7, 'I');
  scene.repeat.score = 4;
  set_report(kFormatSputnik, kUnitAlphabeticalBothStrands, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "dinucleotide 1 : 13 -- length 12 score 4 perfection 92 unit AT\n"
            "TATATAGTATATA\n"
            "|||||| ||||||\n"
            "TATATA-TATATA\n");
}

TEST_F(ReportOfEditedRepeat, with_a_deleted_base) {
  // CAG CAG CA- CAG CAG: the G is missing before the 9th base. 11 matches after the first copy and
  // -6: 5. 14 bp span 15; 14 of 15.
  CRepeatScene scene("GGGGGGGGG", "CAGCAGCACAGCAG", "", 3);
  scene.add_edit(9, 'D');
  scene.repeat.score = 5;
  set_report(kFormatExtendedQuorix, kUnitAlphabetical, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "   trinucleotide        10 :        23 |     14 bp |     15 BP |      5 pt |"
            "  93.333 % |   0 mis |   0 ins |   1 del |   0 N |  unit AGC\n"
            "Missense: (9,D),\n"
            "CAGCAGCA-CAGCAG\n"
            "|||||||| ||||||\n"
            "CAGCAGCAGCAGCAG\n");
}

TEST_F(ReportOfEditedRepeat, with_two_bases_deleted_in_a_row) {
  // GATA GA-- GATA GATA: both before the 7th base. 10 matches and twice -2: 6. 14 of 16.
  CRepeatScene scene("", "GATAGAGATAGATA", "", 4);
  scene.add_edit(7, 'D');
  scene.add_edit(7, 'D');
  scene.repeat.score = 6;
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            " tetranucleotide         1 :        14 |     14 bp |     16 BP |      6 pt |"
            "  87.500 % |   0 mis |   0 ins |   2 del |   0 N |  unit GATA\n"
            "Missense: (7,D),(7,D),\n"
            "GATAGA--GATAGATA\n"
            "||||||  ||||||||\n"
            "GATAGATAGATAGATA\n");
}

TEST_F(ReportOfEditedRepeat, with_a_deletion_and_a_mismatch_at_one_base) {
  // ACG ACG AC- TCG ACG: a G is missing before the T, which stands for A. 10 matches and twice -2:
  // 6. 14 bp span 15; 13 of 15.
  CRepeatScene scene("", "ACGACGACTCGACG", "", 3);
  scene.add_edit(9, 'D');
  scene.add_edit(9, 'M');
  scene.repeat.score = 6;
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "   trinucleotide         1 :        14 |     14 bp |     15 BP |      6 pt |"
            "  86.667 % |   1 mis |   0 ins |   1 del |   0 N |  unit ACG\n"
            "Missense: (9,D),(9,M),\n"
            "ACGACGAC-TCGACG\n"
            "||||||||  |||||\n"
            "ACGACGACGACGACG\n");
}

TEST_F(ReportOfEditedRepeat, with_a_deletion_and_an_insertion_at_one_base) {
  // ACG ACG AC- T ACG ACG: a G is missing before the T, which is too much itself. 11 matches and
  // twice -2: 7. 15 bp span 15 again; 13 of 15.
  CRepeatScene scene("", "ACGACGACTACGACG", "", 3);
  scene.add_edit(9, 'D');
  scene.add_edit(9, 'I');
  scene.repeat.score = 7;
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "   trinucleotide         1 :        15 |     15 bp |     15 BP |      7 pt |"
            "  86.667 % |   0 mis |   1 ins |   1 del |   0 N |  unit ACG\n"
            "Missense: (9,D),(9,I),\n"
            "ACGACGAC-TACGACG\n"
            "||||||||  ||||||\n"
            "ACGACGACG-ACGACG\n");
}

TEST_F(ReportOfEditedRepeat, with_ns_that_count_in_three_ways) {
  // AC AC NC AT AC NC: 7 matches after the first copy and -6: 1. One edit and two N's of 12:
  // 9 of 12 is 75; without the N's 9 of 10; with them as matches 11 of 12, 91.67.
  CRepeatScene scene("", "ACACNCATACNC", "", 2);
  scene.add_edit(8, 'M');
  scene.repeat.n_count = 2;
  scene.repeat.score = 1;
  const std::string line = "dinucleotide 1 : 12 -- length 12 score 1 perfection ";
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  global_N_and_perfection_mode = kNAsMismatch;
  EXPECT_EQ(scene.report(), line + "75 unit AC\n");
  global_N_and_perfection_mode = kNAsNeutral;
  EXPECT_EQ(scene.report(), line + "90 unit AC\n");
  global_N_and_perfection_mode = kNAsMatch;
  EXPECT_EQ(scene.report(), line + "92 unit AC\n");
  global_print_sat_seq_mode = kPrintAlignment;
  EXPECT_EQ(scene.report(), line +
                                "92 unit AC\n"
                                "ACACNCATACNC\n"
                                "||||*|| ||*|\n"
                                "ACACACACACAC\n");
}

TEST_F(ReportOfEditedRepeat, with_flanks_that_the_sequence_cuts_off) {
  // GATA GTTA GATA C GATA, the T for an A and the C inserted. 11 matches after the first copy and
  // twice -2: 7. 17 bp span 16; 14 of 16. Least rotation AGAT; other strand TATC, least ATCT.
  CRepeatScene scene("TG", "GATAGTTAGATACGATA", "C", 4);
  scene.add_edit(6, 'M');
  scene.add_edit(13, 'I');
  scene.repeat.score = 7;
  global_treat_Ns_as_missense = true;
  set_report(kFormatExtendedQuorix, kUnitAlphabeticalBothStrands, kPrintAlignment, 3);
  EXPECT_EQ(scene.report(),
            " tetranucleotide         3 :        19 |     17 bp |     16 BP |      7 pt |"
            "  87.500 % |   1 mis |   1 ins |   0 del |  unit AGAT\n"
            "Missense: (6,M),(13,I),\n"
            "TG:GATAGTTAGATACGATA:C\n"
            "   ||||| |||||| ||||  \n"
            "   GATAGATAGATA-GATA  \n");
}

TEST_F(ReportOfEditedRepeat, with_23_of_40_bases_matching) {
  // AC twenty times, with T's for the C's of 17 copies from the second on. 21 matches after the
  // first copy and 17 times -2: -13. 23 / 40 * 100 is a little below 57.5 and rounds to 57, while
  // three decimal places round it up again.
  std::string bases = "AC";
  for (int copy = 0; copy < 17; ++copy) bases += "AT";
  CRepeatScene scene("", bases + "ACAC", "", 2);
  for (int copy = 0; copy < 17; ++copy) scene.add_edit(4 + 2 * copy, 'M');
  scene.repeat.score = -13;
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(scene.report(), "dinucleotide 1 : 40 -- length 40 score -13 perfection 57 unit AC\n");
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "    dinucleotide         1 :        40 |     40 bp |     40 BP |    -13 pt |"
            "  57.500 % |  17 mis |   0 ins |   0 del |   0 N |  unit AC\n"
            "Missense: (4,M),(6,M),(8,M),(10,M),(12,M),(14,M),(16,M),(18,M),(20,M),(22,M),(24,M),"
            "(26,M),(28,M),(30,M),(32,M),(34,M),(36,M),\n");
}

TEST_F(ReportOfEditedRepeat, that_grew_to_the_left_over_a_mismatch) {
  // AG TAG CAG CAG CAG, found as the CAG at the 6th base: the repeat begins with the unit's second
  // base, and the T stands for a C. 10 matches beside the unit and -2: 8. 13 of 14.
  CRepeatScene scene("", "AGTAGCAGCAGCAG", "TT", 3);
  scene.set_unit(6, 3, 2);
  scene.add_edit(3, 'M');
  scene.repeat.score = 8;
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "   trinucleotide         1 :        14 |     14 bp |     14 BP |      8 pt |"
            "  92.857 % |   1 mis |   0 ins |   0 del |   0 N |  unit CAG\n"
            "Missense: (3,M),\n"
            "AGTAGCAGCAGCAG\n"
            "|| |||||||||||\n"
            "AGCAGCAGCAGCAG\n");
}

}  // namespace
}  // namespace quorix
