// Every format, unit form, print mode and flanking length with every other one.

#include <gtest/gtest.h>

#include <string>

#include "repeat_scene.h"

namespace quorix {
namespace {

using testing::CRepeatScene;
using testing::set_report;
using ReportOptions = testing::CDefaultSettings;

/// TTG with an N for the T of the third copy and an inserted A: 13 bases over 12 unit positions,
/// of which 10 match. Beyond the first copy 8 bases match, so that the score is 8 - 6.
CRepeatScene scene_between(const char* left, const char* right) {
  CRepeatScene scene(left, "TTGTTGNTGATTG", right, 3);
  scene.add_edit(10, 'I');
  scene.repeat.n_count = 1;
  scene.repeat.score = 2;
  return scene;
}

/// The information up to the unit, with the repeat at positions 4 to 16.
std::string information_of(int format, bool are_ns_missense) {
  if (format == 2) return "trinucleotide 4 : 16 -- length 12 score 2 perfection 83 unit ";
  const std::string columns =
      "   trinucleotide         4 :        16 |     13 bp |     12 BP |      2 pt |  83.333 % | ";
  if (format == 0) return columns + "unit ";
  return columns + "  0 mis |   1 ins |   0 del | " + (are_ns_missense ? "" : "  1 N | ") +
         " unit ";
}

std::string unit_in_mode(int mode) {
  if (mode == 0) return "TTG";
  if (mode == 2) return "AAC";  // CAA is the reverse complement
  return "GTT";
}

/// The lines after the information, between the flanks CAC and GAAA.
std::string lines_of(int print_mode, int flanking) {
  if (print_mode == 1) {
    if (flanking == 0) return "TTGTTGNTGATTG\n";
    if (flanking == 2) return "AC:TTGTTGNTGATTG:GA\n";
    return "CAC:TTGTTGNTGATTG:GAAA\n";
  }
  if (print_mode == 2) {
    if (flanking == 0) {
      return "TTGTTGNTGATTG\n"
             "||||||*|| |||\n"
             "TTGTTGTTG-TTG\n";
    }
    if (flanking == 2) {
      return "AC:TTGTTGNTGATTG:GA\n"
             "   ||||||*|| |||   \n"
             "   TTGTTGTTG-TTG   \n";
    }
    return "CAC:TTGTTGNTGATTG:GAAA\n"
           "    ||||||*|| |||     \n"
           "    TTGTTGTTG-TTG     \n";
  }
  return "";
}

TEST_F(ReportOptions, do_not_depend_on_each_other) {
  CRepeatScene scene = scene_between("CAC", "GAAA");
  // Beside the modes there are, one unknown value on either side of them.
  for (const int format : {-1, 0, 1, 2, 3}) {
    for (const bool are_ns_missense : {false, true}) {
      for (const int unit_mode : {-1, 0, 1, 2, 3}) {
        for (const int print_mode : {-1, 0, 1, 2, 3}) {
          for (const int flanking : {0, 2, 1000}) {
            set_report(format, unit_mode, print_mode, flanking);
            global_treat_Ns_as_missense = are_ns_missense;
            const bool is_extended = format != 0 && format != 2;
            EXPECT_EQ(scene.report(), information_of(format, are_ns_missense) +
                                          unit_in_mode(unit_mode) + "\n" +
                                          (is_extended ? "Missense: (10,I),\n" : "") +
                                          lines_of(print_mode, flanking))
                << "format " << format << ", N's missense " << are_ns_missense << ", unit mode "
                << unit_mode << ", print mode " << print_mode << ", flanking " << flanking;
          }
        }
      }
    }
  }
}

TEST_F(ReportOptions, print_what_there_is_of_the_flanks_at_the_first_base) {
  CRepeatScene scene = scene_between("", "GAAA");
  const std::string information =
      "trinucleotide 1 : 13 -- length 12 score 2 perfection 83 unit TTG\n";
  set_report(kFormatSputnik, kUnitAsFound, kPrintSequence, 2);
  EXPECT_EQ(scene.report(), information + ":TTGTTGNTGATTG:GA\n");
  set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment, 2);
  EXPECT_EQ(scene.report(), information +
                                ":TTGTTGNTGATTG:GA\n"
                                " ||||||*|| |||   \n"
                                " TTGTTGTTG-TTG   \n");
  set_report(kFormatSputnik, kUnitAsFound, kPrintSequence, 1000);
  EXPECT_EQ(scene.report(), information + ":TTGTTGNTGATTG:GAAA\n");
}

TEST_F(ReportOptions, print_what_there_is_of_the_flanks_at_the_last_base) {
  CRepeatScene scene = scene_between("CAC", "");
  const std::string information =
      "trinucleotide 4 : 16 -- length 12 score 2 perfection 83 unit TTG\n";
  set_report(kFormatSputnik, kUnitAsFound, kPrintSequence, 2);
  EXPECT_EQ(scene.report(), information + "AC:TTGTTGNTGATTG:\n");
  set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment, 2);
  EXPECT_EQ(scene.report(), information +
                                "AC:TTGTTGNTGATTG:\n"
                                "   ||||||*|| ||| \n"
                                "   TTGTTGTTG-TTG \n");
  set_report(kFormatSputnik, kUnitAsFound, kPrintSequence, 1000);
  EXPECT_EQ(scene.report(), information + "CAC:TTGTTGNTGATTG:\n");
}

TEST_F(ReportOptions, print_colons_alone_when_the_repeat_is_the_whole_sequence) {
  CRepeatScene scene = scene_between("", "");
  const std::string information =
      "trinucleotide 1 : 13 -- length 12 score 2 perfection 83 unit TTG\n";
  for (const int flanking : {2, 1000}) {
    set_report(kFormatSputnik, kUnitAsFound, kPrintSequence, flanking);
    EXPECT_EQ(scene.report(), information + ":TTGTTGNTGATTG:\n");
    set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment, flanking);
    EXPECT_EQ(scene.report(), information +
                                  ":TTGTTGNTGATTG:\n"
                                  " ||||||*|| ||| \n"
                                  " TTGTTGTTG-TTG \n");
  }
}

TEST_F(ReportOptions, take_the_perfection_as_the_mode_for_ns_says) {
  CRepeatScene scene = scene_between("CAC", "GAAA");
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  const std::string columns =
      "   trinucleotide         4 :        16 |     13 bp |     12 BP |      2 pt |";
  global_N_and_perfection_mode = kNAsMismatch;
  EXPECT_EQ(scene.report(), columns + "  83.333 % | unit TTG\n");  // 10 of 12
  global_N_and_perfection_mode = kNAsNeutral;
  EXPECT_EQ(scene.report(), columns + "  90.909 % | unit TTG\n");  // 10 of 11
  global_N_and_perfection_mode = kNAsMatch;
  EXPECT_EQ(scene.report(), columns + "  91.667 % | unit TTG\n");  // 11 of 12
}

}  // namespace
}  // namespace quorix
