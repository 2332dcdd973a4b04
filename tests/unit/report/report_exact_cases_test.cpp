// Reports of repeats without edits, worked out by hand.
//
// The first copy of the unit scores nothing and each further matching base 1.

#include <gtest/gtest.h>

#include <string>

#include "repeat_scene.h"

namespace quorix {
namespace {

using testing::CRepeatScene;
using testing::set_report;
using ReportOfExactRepeat = testing::CDefaultSettings;

TEST_F(ReportOfExactRepeat, that_is_the_whole_sequence) {
  // Ten A's: positions 1 to 10. Nine bases after the first copy.
  CRepeatScene scene("", "AAAAAAAAAA", "", 1);
  scene.repeat.score = 9;
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "  mononucleotide         1 :        10 |     10 bp |     10 BP |      9 pt |"
            " 100.000 % | unit A\n");
}

TEST_F(ReportOfExactRepeat, of_t_which_reads_a_on_the_other_strand) {
  // After three bases, so 4 to 8. The complement A comes before T.
  CRepeatScene scene("ACG", "TTTTT", "GG", 1);
  scene.repeat.score = 4;
  set_report(kFormatQuorix, kUnitAlphabeticalBothStrands, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "  mononucleotide         4 :         8 |      5 bp |      5 BP |      4 pt |"
            " 100.000 % | unit A\n");
}

TEST_F(ReportOfExactRepeat, that_ends_within_a_copy) {
  // TA three times and a T: 7 bases, 5 of them after the first copy. The rotations of TA are TA
  // and AT.
  CRepeatScene scene("GG", "TATATAT", "", 2);
  scene.repeat.score = 5;
  set_report(kFormatQuorix, kUnitAlphabetical, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "    dinucleotide         3 :         9 |      7 bp |      7 BP |      5 pt |"
            " 100.000 % | unit AT\n");
}

TEST_F(ReportOfExactRepeat, of_CAG_whose_least_form_is_AGC) {
  // Rotations CAG, AGC, GCA: AGC. Other strand CTG, TGC, GCT: CTG. 12 bases, 9 after the first.
  CRepeatScene scene("T", "CAGCAGCAGCAG", "T", 3);
  scene.repeat.score = 9;
  set_report(kFormatSputnik, kUnitAlphabeticalBothStrands, kPrintNoSequence);
  EXPECT_EQ(scene.report(), "trinucleotide 2 : 13 -- length 12 score 9 perfection 100 unit AGC\n");
}

TEST_F(ReportOfExactRepeat, of_GATA_with_two_bases_beside_it) {
  // After three bases, so 4 to 15; AAC ends in AC, CCT begins with CC.
  CRepeatScene scene("AAC", "GATAGATAGATA", "CCT", 4);
  scene.repeat.score = 8;
  set_report(kFormatQuorix, kUnitAsFound, kPrintSequence, 2);
  EXPECT_EQ(scene.report(),
            " tetranucleotide         4 :        15 |     12 bp |     12 BP |      8 pt |"
            " 100.000 % | unit GATA\n"
            "AC:GATAGATAGATA:CC\n");
}

TEST_F(ReportOfExactRepeat, of_TTTTA_whose_form_depends_on_the_strands) {
  // Its own least rotation is ATTTT. The other strand reads TAAAA, with AAAAT as the least one.
  CRepeatScene scene("G", "TTTTATTTTATT", "G", 5);
  scene.repeat.score = 7;
  const std::string columns =
      " pentanucleotide         2 :        13 |     12 bp |     12 BP |      7 pt | 100.000 % |";
  set_report(kFormatQuorix, kUnitAlphabetical, kPrintNoSequence);
  EXPECT_EQ(scene.report(), columns + " unit ATTTT\n");
  set_report(kFormatQuorix, kUnitAlphabeticalBothStrands, kPrintNoSequence);
  EXPECT_EQ(scene.report(), columns + " unit AAAAT\n");
}

TEST_F(ReportOfExactRepeat, of_a_telomere) {
  // TTAGGG has the least rotation AGGGTT; its reverse complement CCCTAA has AACCCT, which is less.
  // The alignment shows the unit as it was found. There are no edits to list.
  CRepeatScene scene("CC", "TTAGGGTTAGGGTTAGGG", "AT", 6);
  scene.repeat.score = 12;
  set_report(kFormatExtendedQuorix, kUnitAlphabeticalBothStrands, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "  hexanucleotide         3 :        20 |     18 bp |     18 BP |     12 pt |"
            " 100.000 % |   0 mis |   0 ins |   0 del |   0 N |  unit AACCCT\n"
            "Missense: \n"
            "TTAGGGTTAGGGTTAGGG\n"
            "||||||||||||||||||\n"
            "TTAGGGTTAGGGTTAGGG\n");
}

TEST_F(ReportOfExactRepeat, of_a_unit_without_a_name) {
  // Two copies of 7 bases and two bases more: 16, of which 9 are after the first copy.
  CRepeatScene scene("", "AAACCCTAAACCCTAA", "", 7);
  scene.repeat.score = 9;
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(scene.report(),
            "    7-nucleotide         1 :        16 |     16 bp |     16 BP |      9 pt |"
            " 100.000 % | unit AAACCCT\n");
}

TEST_F(ReportOfExactRepeat, with_an_n_that_was_walked_over) {
  // 8 bases, 2 of the first copy and an N that scores nothing: 5. The N counts as an error: 7 of 8.
  CRepeatScene scene("GT", "ACACNCAC", "", 2);
  scene.repeat.n_count = 1;
  scene.repeat.score = 5;
  set_report(kFormatExtendedQuorix, kUnitAlphabeticalBothStrands, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "    dinucleotide         3 :        10 |      8 bp |      8 BP |      5 pt |"
            "  87.500 % |   0 mis |   0 ins |   0 del |   1 N |  unit AC\n"
            "Missense: \n"
            "ACACNCAC\n"
            "||||*|||\n"
            "ACACACAC\n");
}

TEST_F(ReportOfExactRepeat, that_begins_within_a_copy) {
  // Found as ACG at its second base and extended by the G before it: that is the unit's third base.
  CRepeatScene scene("T", "GACGACGA", "A", 3);
  scene.set_unit(2, 3, 3);
  scene.repeat.score = 5;
  set_report(kFormatQuorix, kUnitAsFound, kPrintAlignment);
  EXPECT_EQ(scene.report(),
            "   trinucleotide         2 :         9 |      8 bp |      8 BP |      5 pt |"
            " 100.000 % | unit ACG\n"
            "GACGACGA\n"
            "||||||||\n"
            "GACGACGA\n");
}

}  // namespace
}  // namespace quorix
