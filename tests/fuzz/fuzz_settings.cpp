#include "fuzz/fuzz_settings.h"

#include <limits>

#include "console/exit_status.h"
#include "driver/settings_check.h"
#include "search/search_controller.h"
#include "settings/settings.h"

namespace quorix::fuzz {

namespace {

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

int take_number(CFuzzInput& input, int first, int last) {
  return static_cast<int>(input.take_between(first, last));
}

/// Units of up to 8 bases, and a recursion of up to 5 or none at all.
std::size_t take_usual_search(CFuzzInput& input) {
  global_min_unit_length = static_cast<std::uint32_t>(input.take_between(0, 8));
  global_max_unit_length = global_min_unit_length + static_cast<std::uint32_t>(input.take_between(
                                                        0, 8 - global_min_unit_length));
  const std::vector<int> penalties{-6, -2, -3, -4, -5, -7, -9, kMin};
  global_mismatch_score = input.take_one_of(penalties);
  global_indel_score = input.take_one_of(penalties);
  global_maximum_recursion_depth = input.take_one_of<int>({5, 1, 2, 3, 4, 255, 256, kMax});
  if (global_maximum_recursion_depth > 5) return 12;
  return global_maximum_recursion_depth == 5 ? 120 : 300;
}

/// Units longer than one machine word covers, with penalties that end most paths soon.
std::size_t take_long_unit_search(CFuzzInput& input) {
  global_min_unit_length = static_cast<std::uint32_t>(input.take_between(1, 60));
  global_max_unit_length =
      global_min_unit_length + static_cast<std::uint32_t>(input.take_between(0, 3));
  const std::vector<int> penalties{-6, -5, -7, -8, -9, -30};
  global_mismatch_score = input.take_one_of(penalties);
  global_indel_score = input.take_one_of(penalties);
  global_maximum_recursion_depth = take_number(input, 1, 2);
  return 300;
}

void take_thresholds(CFuzzInput& input) {
  const std::vector<float> factors{1.0F, 0.0F, 0.1F, 0.5F, 0.7F, 1.5F, 2.5F};
  global_min_score = take_number(input, -5, 20);
  global_min_score_a = take_number(input, -4, 5);
  global_min_score_bx = input.take_one_of(factors);
  global_min_length = take_number(input, 0, 30);
  global_min_length_a = take_number(input, -4, 5);
  global_min_length_bx = input.take_one_of(factors);
}

}  // namespace

std::size_t take_search_settings(CFuzzInput& input) {
  init_param();
  CSearchController::reset_minimum_arrays();
  global_search_mode = take_number(input, kSearchExact, kSearchImperfect);
  const bool is_usual = input.take_byte() % 8 != 7;
  const std::size_t longest = is_usual ? take_usual_search(input) : take_long_unit_search(input);
  take_thresholds(input);
  global_maximum_scorereduction =
      input.take_one_of<int>({kNoScoreReductionLimit, 0, 1, 2, 3, 5, 8, 20, -1, kMin});
  global_Ns_allowed_in_a_row = input.take_one_of<int>({4, 0, 1, 2, 3, 7, kMax});
  global_treat_Ns_as_missense = input.take_flag();
  global_remove_mostly_hidden = input.take_flag();
  return check_settings() == kSuccess ? longest : 0;
}

void take_report_settings(CFuzzInput& input) {
  global_print_sat_mode = take_number(input, 0, 2);
  global_print_sat_seq_mode = take_number(input, 0, 2);
  global_report_unit_mode = take_number(input, 0, 2);
  global_N_and_perfection_mode = take_number(input, 0, 2);
  global_flanking = input.take_one_of<int>({0, 1, 4, 100, kMax});
}

}  // namespace quorix::fuzz
