#include "settings/settings_rules.h"

#include <gtest/gtest.h>

#include <string_view>

#include "settings/settings.h"

// What is refused, and in which words, tests/unit/driver/settings_check_test.cpp pins.

namespace quorix {
namespace {

TEST(SettingsRules, let_the_defaults_pass) {
  init_param();
  EXPECT_EQ(correct_settings(), "");
}

TEST(SettingsRules, name_the_first_setting_that_is_refused) {
  init_param();
  global_max_unit_length = 0;
  EXPECT_TRUE(correct_settings().starts_with("I think you have made a mistake here"));
  global_mismatch_score = -1;
  EXPECT_EQ(correct_settings(), "Sorry, the mismatch score must be smaller or equal to -2.\n");
  init_param();
}

TEST(SettingsRules, make_negative_counts_zero) {
  init_param();
  global_Ns_allowed_in_a_row = -3;
  global_flanking = -1;
  EXPECT_EQ(correct_settings(), "");
  EXPECT_EQ(global_Ns_allowed_in_a_row, 0);
  EXPECT_EQ(global_flanking, 0);
  init_param();
}

}  // namespace
}  // namespace quorix
