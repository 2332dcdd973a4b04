#include "driver/settings_check.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "settings/settings.h"
#include "support/captured_process.h"
#include "support/default_settings.h"
#include "support/settings_snapshot.h"

namespace quorix {
namespace {

using ModeCode = testing::CDefaultSettings;
using SettingsCheck = testing::CDefaultSettings;

constexpr int kSmallestInt = std::numeric_limits<int>::min();
constexpr int kLargestInt = std::numeric_limits<int>::max();

constexpr const char* kPerfectionMessage =
    "Sorry, using a perfection minimum is not implemented in this version.\n";
constexpr const char* kThresholdMessage =
    "Sorry, either the minimum score or the minimum length must be larger.\n";
constexpr const char* kMismatchMessage =
    "Sorry, the mismatch score must be smaller or equal to -2.\n";
constexpr const char* kIndelMessage = "Sorry, the indel score must be smaller or equal to -2.\n";
constexpr const char* kRecursionMessage =
    "Sorry, the recursion depth must be greater than 0.\n"
    "A value of 0 would corresponds to a perfect search.\n";
constexpr const char* kUnitLengthMessage =
    "I think you have made a mistake here: The maximum unit length must be greater\n"
    "or equal to the minimum unit length.\n";

/// "0" where the settings pass in silence, else the code and the message: "-1 Sorry, ...".
std::string verdict() {
  int code = 0;
  const std::string message = testing::messages_of([&] { code = check_settings(); });
  return std::to_string(code) + (message.empty() ? "" : " ") + message;
}

std::string refusal(const char* message) {
  return std::string("-1 ") + message;
}

TEST_F(ModeCode, from_0_to_2_is_stored_in_silence) {
  for (int code = 0; code <= 2; ++code) {
    int setting = 77;
    EXPECT_EQ(testing::messages_of([&] { EXPECT_TRUE(store_mode_code(setting, code, "b", "a")); }),
              "");
    EXPECT_EQ(setting, code);
  }
}

TEST_F(ModeCode, outside_its_range_is_reported_and_not_stored) {
  int setting = 77;
  EXPECT_EQ(testing::messages_of([&] {
              EXPECT_FALSE(store_mode_code(setting, 3, "A colour of ", " is unknown.\n\n"));
            }),
            "Sorry, a problem occured when parsing the command line options. A colour of 3 is "
            "unknown.\n\n");
  EXPECT_EQ(setting, 77);
}

TEST_F(ModeCode, below_zero_is_reported_with_its_minus_sign) {
  int setting = 77;
  EXPECT_EQ(testing::messages_of(
                [&] { EXPECT_FALSE(store_mode_code(setting, kSmallestInt, "Value ", "!\n")); }),
            "Sorry, a problem occured when parsing the command line options. Value -2147483648!\n");
  EXPECT_EQ(setting, 77);
}

TEST_F(SettingsCheck, passes_the_defaults_and_leaves_them_as_they_are) {
  EXPECT_EQ(testing::settings_changed_by([] { EXPECT_EQ(verdict(), "0"); }), "");
}

TEST_F(SettingsCheck, refuses_every_perfection_minimum_but_zero) {
  for (const float minimum : {50.0F, -1.0F, std::numeric_limits<float>::denorm_min(),
                              std::numeric_limits<float>::infinity()}) {
    global_perfection_minimum = minimum;
    EXPECT_EQ(verdict(), refusal(kPerfectionMessage)) << minimum;
  }
  global_perfection_minimum = -0.0F;
  EXPECT_EQ(verdict(), "0");
}

TEST_F(SettingsCheck, counts_a_perfection_minimum_that_is_no_number_as_not_zero) {
  global_perfection_minimum = std::nanf("");
  EXPECT_EQ(verdict(), refusal(kPerfectionMessage));
}

TEST_F(SettingsCheck, refuses_a_score_and_a_length_below_two) {
  global_min_score = 1;
  global_min_score_bx = 0.0F;
  EXPECT_EQ(verdict(), refusal(kThresholdMessage));
}

TEST_F(SettingsCheck, needs_only_one_of_score_and_length_to_be_two) {
  global_min_score = 1;
  global_min_score_bx = 0.0F;
  global_min_length = 2;
  EXPECT_EQ(verdict(), "0");
  global_min_length = 1;
  global_min_score = 2;
  EXPECT_EQ(verdict(), "0");
}

TEST_F(SettingsCheck, adds_offset_and_factor_at_unit_length_one) {
  global_min_score = 0;
  global_min_score_a = 1;
  global_min_score_bx = 1.0F;
  EXPECT_EQ(verdict(), "0");
  global_min_score_a = 0;
  EXPECT_EQ(verdict(), refusal(kThresholdMessage));

  global_min_length_a = 1;
  global_min_length_bx = 1.0F;
  EXPECT_EQ(verdict(), "0");
  global_min_length_bx = 0.5F;
  EXPECT_EQ(verdict(), refusal(kThresholdMessage));
}

TEST_F(SettingsCheck, takes_the_larger_of_constant_and_sum) {
  global_min_score_a = -100;
  EXPECT_EQ(verdict(), "0");  // maximum(6, -100 + 1)
  global_min_score = -100;
  global_min_length_a = -100;
  EXPECT_EQ(verdict(), refusal(kThresholdMessage));  // maximum(-100, -99), maximum(1, -100)
  global_min_length = 2;
  EXPECT_EQ(verdict(), "0");
}

TEST_F(SettingsCheck, adds_in_extended_floating_point) {
  global_min_score = 0;
  // 2 - 2^-24 is 2 as a float, 2 - 2^-60 is 2 as a double.
  for (const int exponent : {-24, -60}) {
    global_min_score_a = 2;
    global_min_score_bx = -std::ldexp(1.0F, exponent);
    EXPECT_EQ(verdict(), refusal(kThresholdMessage)) << exponent;
  }
}

TEST_F(SettingsCheck, adds_at_the_limits_of_the_integers) {
  global_min_score = kSmallestInt;
  global_min_score_a = kLargestInt;
  global_min_score_bx = 2147483648.0F;
  EXPECT_EQ(verdict(), "0");
  global_min_score_a = kSmallestInt;
  global_min_score_bx = -2147483648.0F;
  EXPECT_EQ(verdict(), refusal(kThresholdMessage));
}

TEST_F(SettingsCheck, refuses_a_mismatch_score_above_minus_two) {
  for (const int score : {-1, 0, 1, kLargestInt}) {
    global_mismatch_score = score;
    EXPECT_EQ(verdict(), refusal(kMismatchMessage)) << score;
  }
  for (const int score : {-2, kSmallestInt}) {
    global_mismatch_score = score;
    EXPECT_EQ(verdict(), "0") << score;
  }
}

TEST_F(SettingsCheck, refuses_an_indel_score_above_minus_two) {
  for (const int score : {-1, 0, 1, kLargestInt}) {
    global_indel_score = score;
    EXPECT_EQ(verdict(), refusal(kIndelMessage)) << score;
  }
  for (const int score : {-2, kSmallestInt}) {
    global_indel_score = score;
    EXPECT_EQ(verdict(), "0") << score;
  }
}

TEST_F(SettingsCheck, makes_negative_Ns_and_flanks_zero_in_silence) {
  global_Ns_allowed_in_a_row = -3;
  global_flanking = -1;
  EXPECT_EQ(verdict(), "0");
  EXPECT_EQ(global_Ns_allowed_in_a_row, 0);
  EXPECT_EQ(global_flanking, 0);
}

TEST_F(SettingsCheck, keeps_Ns_and_flanks_of_zero_and_more) {
  for (const int value : {0, 1, kLargestInt}) {
    global_Ns_allowed_in_a_row = value;
    global_flanking = value;
    EXPECT_EQ(verdict(), "0");
    EXPECT_EQ(global_Ns_allowed_in_a_row, value);
    EXPECT_EQ(global_flanking, value);
  }
}

TEST_F(SettingsCheck, refuses_a_recursion_depth_below_one) {
  for (const int depth : {0, -1, kSmallestInt}) {
    global_maximum_recursion_depth = depth;
    EXPECT_EQ(verdict(), refusal(kRecursionMessage)) << depth;
  }
  for (const int depth : {1, kLargestInt}) {
    global_maximum_recursion_depth = depth;
    EXPECT_EQ(verdict(), "0") << depth;
  }
}

TEST_F(SettingsCheck, refuses_a_maximum_unit_length_below_the_minimum) {
  global_min_unit_length = 5;
  global_max_unit_length = 4;
  EXPECT_EQ(verdict(), refusal(kUnitLengthMessage));
  global_max_unit_length = 5;
  EXPECT_EQ(verdict(), "0");
}

TEST_F(SettingsCheck, compares_the_unit_lengths_without_sign) {
  global_min_unit_length = 0;
  global_max_unit_length = 0;
  EXPECT_EQ(verdict(), "0");
  global_max_unit_length = 4294967295U;
  EXPECT_EQ(verdict(), "0");
  global_min_unit_length = 4294967295U;
  global_max_unit_length = 2147483647U;
  EXPECT_EQ(verdict(), refusal(kUnitLengthMessage));
}

TEST_F(SettingsCheck, sets_no_bound_to_the_sequence_range) {
  global_sequence_from = 3;
  global_sequence_to = 2;
  EXPECT_EQ(verdict(), "0");
}

/// Makes every check fail.
void spoil_all_settings() {
  global_perfection_minimum = 1.0F;
  global_min_score = 0;
  global_min_score_bx = 0.0F;
  global_mismatch_score = -1;
  global_indel_score = -1;
  global_Ns_allowed_in_a_row = -3;
  global_flanking = -1;
  global_maximum_recursion_depth = 0;
  global_max_unit_length = 0;
}

TEST_F(SettingsCheck, tells_only_the_first_of_several_faults) {
  spoil_all_settings();
  EXPECT_EQ(verdict(), refusal(kPerfectionMessage));
  global_perfection_minimum = 0.0F;
  EXPECT_EQ(verdict(), refusal(kThresholdMessage));
  global_min_length = 2;
  EXPECT_EQ(verdict(), refusal(kMismatchMessage));
  global_mismatch_score = -2;
  EXPECT_EQ(verdict(), refusal(kIndelMessage));
  global_indel_score = -2;
  EXPECT_EQ(verdict(), refusal(kRecursionMessage));
  global_maximum_recursion_depth = 1;
  EXPECT_EQ(verdict(), refusal(kUnitLengthMessage));
  global_max_unit_length = 1;
  EXPECT_EQ(verdict(), "0");
}

TEST_F(SettingsCheck, corrects_between_the_scores_and_the_recursion_depth) {
  spoil_all_settings();
  global_perfection_minimum = 0.0F;
  global_min_length = 2;
  global_mismatch_score = -2;
  EXPECT_EQ(testing::settings_changed_by([] { EXPECT_EQ(verdict(), refusal(kIndelMessage)); }), "");
  global_indel_score = -2;
  EXPECT_EQ(testing::settings_changed_by([] { EXPECT_EQ(verdict(), refusal(kRecursionMessage)); }),
            "flanking=0 Ns_allowed_in_a_row=0");
}

}  // namespace
}  // namespace quorix
