// Figures and units that are larger than their columns, and positions beyond 32 bits.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

#include "repeat_scene.h"

namespace quorix {
namespace {

using testing::CRepeatScene;
using testing::printed_by;
using testing::set_report;
using ReportWidth = testing::CDefaultSettings;

/// Two copies of a unit of A's and one C after them.
CRepeatScene scene_of_unit_length(std::size_t unit_length) {
  const std::string unit = std::string(unit_length - 1, 'A') + "C";
  return {"", unit + unit, "", unit_length};
}

TEST_F(ReportWidth, of_the_class_name_is_16_up_to_five_digits) {
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  for (const auto& [unit_length, name] : {std::pair{1, "  mononucleotide "},
                                          {2, "    dinucleotide "},
                                          {3, "   trinucleotide "},
                                          {4, " tetranucleotide "},
                                          {5, " pentanucleotide "},
                                          {6, "  hexanucleotide "},
                                          {7, "    7-nucleotide "},
                                          {10, "   10-nucleotide "},
                                          {100, "  100-nucleotide "},
                                          {99999, "99999-nucleotide "}}) {
    const std::string line = scene_of_unit_length(static_cast<std::size_t>(unit_length)).report();
    EXPECT_EQ(line.substr(0, 17), name);
  }
}

TEST_F(ReportWidth, of_the_class_name_grows_with_a_sixth_digit) {
  const std::string unit = std::string(99999, 'A') + "C";
  for (const int mode : {0, 1, 2}) {
    set_report(kFormatQuorix, mode, kPrintNoSequence);
    EXPECT_EQ(scene_of_unit_length(100'000).report(),
              "100000-nucleotide         1 :    200000 | 200000 bp | 200000 BP |      0 pt |"
              " 100.000 % | unit " +
                  unit + "\n");
  }
}

TEST_F(ReportWidth, of_the_sputnik_format_is_that_of_its_figures) {
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  CRepeatScene short_unit = scene_of_unit_length(7);
  EXPECT_EQ(short_unit.report(),
            "7-nucleotide 1 : 14 -- length 14 score 0 perfection 100 unit AAAAAAC\n");
  EXPECT_EQ(scene_of_unit_length(99999).report(),
            "99999-nucleotide 1 : 199998 -- length 199998 score 0 perfection 100 unit " +
                std::string(99998, 'A') + "C\n");
}

TEST_F(ReportWidth, of_a_long_alignment_is_the_same_in_all_three_lines) {
  CRepeatScene scene = scene_of_unit_length(20'000);
  scene.add_edit(20'001, 'D');
  scene.add_edit(20'002, 'I');
  scene.repeat.end -= 10'000;
  set_report(kFormatSputnik, kUnitAsFound, kPrintAlignment);
  const std::string copy = std::string(19'999, 'A') + "C";
  const std::string report = scene.report();
  EXPECT_EQ(report.substr(report.find('\n') + 1),
            copy + "-" + std::string(10'000, 'A') + "\n" +                           //
                std::string(20'000, '|') + " | " + std::string(9'998, '|') + "\n" +  //
                copy + "AA-" + std::string(9'998, 'A') + "\n");
}

TEST_F(ReportWidth, leaves_out_a_long_unit_that_repeats_a_shorter_one) {
  std::string bases;
  for (int i = 0; i < 20'000; ++i) bases += "AC";
  CRepeatScene scene("", bases, "", 20'000);
  for (const int mode : {0, 1, 2}) {
    set_report(kFormatQuorix, mode, kPrintNoSequence);
    EXPECT_EQ(scene.report(), "");
  }
}

TEST_F(ReportWidth, of_a_column_grows_with_its_figure) {
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintNoSequence);
  CRepeatScene scene("", std::string(1'234'567, 'A'), "", 1);
  scene.repeat.score = std::numeric_limits<std::int32_t>::min();
  scene.repeat.mismatches = 1234;
  scene.repeat.insertions = 2345;
  scene.repeat.deletions = 3456;
  scene.repeat.n_count = 5678;
  // Spans 1234567 - 2345 + 3456 = 1235678; 7035 edits and 5678 N's leave 1222965, 98.9712 %.
  EXPECT_EQ(scene.report(),
            "  mononucleotide         1 :   1234567 | 1234567 bp | 1235678 BP | -2147483648 pt |"
            "  98.971 % | 1234 mis | 2345 ins | 3456 del | 5678 N |  unit A\nMissense: \n");
}

TEST_F(ReportWidth, of_a_negative_score_or_perfection_counts_the_sign) {
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  CRepeatScene scene("", "AAAA", "", 1);
  scene.repeat.score = -12;
  scene.repeat.mismatches = 5;  // -1 of 4
  EXPECT_EQ(scene.report(),
            "  mononucleotide         1 :         4 |      4 bp |      4 BP |    -12 pt |"
            " -25.000 % | unit A\n");
}

TEST_F(ReportWidth, has_room_for_positions_beyond_32_bits) {
  // The room is reserved and never touched but for the repeat itself.
  CSequence_Mol record;
  record.sequence.reserve(5'000'000'020);
  char* const start = record.sequence.data() + 4'999'999'999;
  std::memcpy(start, "ACGACG", 6);
  Csat repeat;
  repeat.init_from_unit(start, start + 3);
  repeat.end = start + 6;
  repeat.score = 3;
  repeat.deletions = 4'294'967'296;
  repeat.missense.push_back({start + 5, 'D'});
  const auto report = [&] {
    return printed_by([&](std::FILE* stream) { repeat.report_sat(stream, record); });
  };

  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(report(),
            "   trinucleotide 5000000000 : 5000000005 |      6 bp | 4294967302 BP |      3 pt |"
            "   0.000 % |   0 mis |   0 ins | 4294967296 del |   0 N |  unit ACG\n"
            "Missense: (6,D),\n");
  set_report(kFormatQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(report(),
            "   trinucleotide 5000000000 : 5000000005 |      6 bp | 4294967302 BP |      3 pt |"
            "   0.000 % | unit ACG\n");
  set_report(kFormatSputnik, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(report(),
            "trinucleotide 5000000000 : 5000000005 -- length 4294967302 score 3 perfection 0 "
            "unit ACG\n");
}

TEST_F(ReportWidth, has_room_for_lengths_and_edit_positions_beyond_32_bits) {
  CSequence_Mol record;
  record.sequence.reserve(5'000'000'020);
  for (const char base : {'A', 'C', 'G'}) record.sequence.push_back(base);
  const char* const start = record.sequence.data();
  Csat repeat;
  repeat.init_from_unit(start, start + 3);
  repeat.end = start + 5'000'000'000;
  repeat.mismatches = 2'500'000'000;
  repeat.missense.push_back({start + 4'999'999'999, 'M'});
  set_report(kFormatExtendedQuorix, kUnitAsFound, kPrintNoSequence);
  EXPECT_EQ(printed_by([&](std::FILE* stream) { repeat.report_sat(stream, record); }),
            "   trinucleotide         1 : 5000000000 | 5000000000 bp | 5000000000 BP |      0 pt |"
            "  50.000 % | 2500000000 mis |   0 ins |   0 del |   0 N |  unit ACG\n"
            "Missense: (5000000000,M),\n");
}

}  // namespace
}  // namespace quorix
