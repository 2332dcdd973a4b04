#include "settings/settings.h"

#include <gtest/gtest.h>

#include "support/default_settings.h"
#include "support/settings_snapshot.h"

namespace quorix {
namespace {

using Settings = testing::CDefaultSettings;

// The defaults are numbers here and not the program's constants: they are what users know.
TEST_F(Settings, have_their_defaults) {
  EXPECT_EQ(global_sequence_from, 1U);
  EXPECT_EQ(global_sequence_to, 4294967295U);
  EXPECT_EQ(global_search_mode, 2);
  EXPECT_EQ(global_trim_mode, 0);
  EXPECT_EQ(global_N_and_perfection_mode, 0);
  EXPECT_EQ(global_report_unit_mode, 2);
  EXPECT_EQ(global_print_sat_seq_mode, 2);
  EXPECT_EQ(global_print_sat_mode, 1);
  EXPECT_EQ(global_flanking, 0);
  EXPECT_EQ(global_perfection_minimum, 0.0F);
  EXPECT_EQ(global_maximum_recursion_depth, 5);
  EXPECT_EQ(global_maximum_scorereduction, 2147483647);
  EXPECT_EQ(global_min_unit_length, 1U);
  EXPECT_EQ(global_max_unit_length, 6U);
  EXPECT_FALSE(global_treat_Ns_as_missense);
  EXPECT_EQ(global_Ns_allowed_in_a_row, 4);
  EXPECT_EQ(global_min_score, 6);
  EXPECT_EQ(global_min_score_a, 0);
  EXPECT_EQ(global_min_score_bx, 1.0F);
  EXPECT_EQ(global_min_length, 1);
  EXPECT_EQ(global_min_length_a, 0);
  EXPECT_EQ(global_min_length_bx, 0.0F);
  EXPECT_EQ(global_mismatch_score, -6);
  EXPECT_EQ(global_indel_score, -6);
  EXPECT_FALSE(global_clip_overlapping);
  EXPECT_TRUE(global_remove_mostly_hidden);
  EXPECT_FALSE(global_mask_repeats);
}

TEST_F(Settings, get_every_default_back) {
  const auto defaults = testing::all_settings();
  global_sequence_from = global_sequence_to = global_min_unit_length = global_max_unit_length = 77;
  for (int* const setting :
       {&global_search_mode, &global_trim_mode, &global_N_and_perfection_mode,
        &global_report_unit_mode, &global_print_sat_seq_mode, &global_print_sat_mode,
        &global_flanking, &global_maximum_recursion_depth, &global_maximum_scorereduction,
        &global_Ns_allowed_in_a_row, &global_min_score, &global_min_score_a, &global_min_length,
        &global_min_length_a, &global_mismatch_score, &global_indel_score}) {
    *setting = 77;
  }
  global_perfection_minimum = global_min_score_bx = global_min_length_bx = 77.0F;
  global_treat_Ns_as_missense = global_clip_overlapping = global_mask_repeats = true;
  global_remove_mostly_hidden = false;

  init_param();

  EXPECT_EQ(testing::all_settings(), defaults);
}

TEST_F(Settings, keep_the_file_names_when_they_get_their_defaults) {
  global_input_filename = "in.fa";
  global_output_filename = "report.txt";
  init_param();
  EXPECT_EQ(global_input_filename, "in.fa");
  EXPECT_EQ(global_output_filename, "report.txt");
}

TEST_F(Settings, know_no_limits_by_the_values_that_mean_none) {
  EXPECT_EQ(kLastSequence, 4294967295U);
  EXPECT_EQ(kNoScoreReductionLimit, 2147483647);
}

}  // namespace
}  // namespace quorix
