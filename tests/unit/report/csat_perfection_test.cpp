// The perfection of a repeat, and the trimming of N's at its ends.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "report/csat.h"
#include "report/sat_pool.h"
#include "settings/settings.h"
#include "support/default_settings.h"

namespace quorix {
namespace {

const std::string kBases(10'000, 'A');

/// A repeat of `length` bases; only its length and its counts matter here.
Csat repeat_of_length(std::size_t length) {
  Csat repeat;
  repeat.init_from_unit(kBases.data(), kBases.data() + 1);
  repeat.end = kBases.data() + length;
  return repeat;
}

double perfection_in_mode(const Csat& repeat, int mode) {
  global_N_and_perfection_mode = mode;
  return repeat.percentagePerfection();
}

using Perfection = testing::CDefaultSettings;

TEST_F(Perfection, of_a_fresh_record_is_100_in_every_mode) {
  Csat_garbagecollector pool;
  Csat* const record = pool.acquire(kBases.data(), kBases.data() + 3);
  for (const int mode : {0, 1, 2}) EXPECT_EQ(perfection_in_mode(*record, mode), 100.0);
  pool.release(record);
}

TEST_F(Perfection, counts_each_kind_of_edit_once) {
  for (const int mode : {0, 1, 2}) {
    Csat mismatched = repeat_of_length(10);
    mismatched.mismatches = 1;  // 9 of 10
    EXPECT_DOUBLE_EQ(perfection_in_mode(mismatched, mode), 90.0);

    Csat inserted = repeat_of_length(11);
    inserted.insertions = 1;  // spans 10 unit positions; 9 of 10
    EXPECT_DOUBLE_EQ(perfection_in_mode(inserted, mode), 90.0);

    Csat deleted = repeat_of_length(7);
    deleted.deletions = 1;  // spans 8; 7 of 8
    EXPECT_DOUBLE_EQ(perfection_in_mode(deleted, mode), 87.5);
  }
}

TEST_F(Perfection, counts_an_n_as_an_error_or_not_at_all_or_as_a_match) {
  // 22 bases, 4 inserted, 2 deleted: spans 20. With 2 mismatches 8 edits, so 12 are left; 4 N's.
  Csat repeat = repeat_of_length(22);
  repeat.mismatches = 2;
  repeat.insertions = 4;
  repeat.deletions = 2;
  repeat.n_count = 4;
  EXPECT_DOUBLE_EQ(perfection_in_mode(repeat, 0), 40.0);  // 8 of 20
  EXPECT_DOUBLE_EQ(perfection_in_mode(repeat, 1), 50.0);  // 8 of 16
  EXPECT_DOUBLE_EQ(perfection_in_mode(repeat, 2), 60.0);  // 12 of 20
}

TEST_F(Perfection, is_100_with_n_neutral_or_matching_and_no_edits) {
  Csat repeat = repeat_of_length(8);
  repeat.n_count = 2;
  EXPECT_DOUBLE_EQ(perfection_in_mode(repeat, 0), 75.0);
  EXPECT_EQ(perfection_in_mode(repeat, 1), 100.0);
  EXPECT_EQ(perfection_in_mode(repeat, 2), 100.0);
}

TEST_F(Perfection, may_be_0_or_negative) {
  Csat repeat = repeat_of_length(4);
  repeat.insertions = 2;  // spans 2, 2 edits
  EXPECT_EQ(perfection_in_mode(repeat, 0), 0.0);
  repeat.n_count = 1;
  EXPECT_DOUBLE_EQ(perfection_in_mode(repeat, 0), -50.0);
}

TEST_F(Perfection, of_ns_alone_is_not_a_number_where_ns_are_left_out) {
  Csat repeat = repeat_of_length(5);
  repeat.n_count = 5;
  EXPECT_TRUE(std::isnan(perfection_in_mode(repeat, 1)));
  EXPECT_EQ(perfection_in_mode(repeat, 0), 0.0);
  EXPECT_EQ(perfection_in_mode(repeat, 2), 100.0);
}

TEST_F(Perfection, divides_before_it_multiplies) {
  Csat repeat = repeat_of_length(40);
  repeat.mismatches = 17;
  const double perfection = perfection_in_mode(repeat, 0);
  EXPECT_LT(perfection, 57.5);  // 23 * 100 / 40 would be just that
  EXPECT_NEAR(perfection, 57.5, 1e-10);
}

TEST_F(Perfection, has_room_for_more_than_32_bits) {
  Csat repeat = repeat_of_length(1);
  repeat.deletions = 7'999'999'999;
  repeat.n_count = 1;
  EXPECT_DOUBLE_EQ(perfection_in_mode(repeat, 2), 100.0 / 8e9);
}

/// Lets what the program writes to either stream be what a death test sees, up to its exit: a build
/// that measures coverage may have something to say after that.
void show_all_output_up_to_exit() {
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  std::atexit([] {
    std::fflush(nullptr);
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
  });
}

using PerfectionDeathTest = testing::CDefaultSettings;

TEST_F(PerfectionDeathTest, in_an_unknown_mode_ends_the_process_with_status_2_and_no_message) {
  const Csat repeat = repeat_of_length(4);
  for (const int mode : {-1, 3}) {
    EXPECT_EXIT(
        {
          show_all_output_up_to_exit();
          static_cast<void>(perfection_in_mode(repeat, mode));
        },
        ::testing::ExitedWithCode(2), "^$");
  }
}

/// A repeat over all of `bases`, with the unit [unit_start, unit_start + unit_length).
Csat repeat_over(std::string_view bases, std::ptrdiff_t unit_start, std::ptrdiff_t unit_length) {
  Csat repeat;
  const char* const unit = bases.data() + unit_start;
  repeat.init_from_unit(unit, unit + unit_length);
  repeat.start = bases.data();
  repeat.end = bases.data() + bases.size();
  return repeat;
}

TEST(TrimmingOfNs, gives_back_three_ns_of_NNACACAN_and_moves_the_cursors_along) {
  constexpr std::string_view kRepeat = "NNACACAN";
  Csat repeat = repeat_over(kRepeat, 2, 2);
  const char* const unit_a = kRepeat.data() + 2;
  const char* const unit_c = kRepeat.data() + 3;
  repeat.unit_pos_right = unit_a;  // the base after the last N, which stands for a C
  repeat.unit_pos_left = unit_c;   // the base before the first N, which stands for an A
  repeat.n_count = 3;
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.start, kRepeat.data() + 2);
  EXPECT_EQ(repeat.end, kRepeat.data() + 7);
  EXPECT_EQ(repeat.n_count, 0);
  EXPECT_EQ(repeat.unit_pos_right, unit_c);  // one back, from A round to C
  EXPECT_EQ(repeat.unit_pos_left, unit_c);   // two forward: round to A, and C again
}

TEST(TrimmingOfNs, lets_the_count_of_ns_go_below_0) {
  Csat repeat = repeat_over("NNACACAN", 2, 2);
  repeat.n_count = 1;
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.n_count, -2);
}

TEST(TrimmingOfNs, walks_the_right_cursor_backward_round_the_unit) {
  // The unit ACG; after ACG come five N's, for A, C, G, A and C: G would be next.
  constexpr std::string_view kRepeat = "ACGNNNNN";
  Csat repeat = repeat_over(kRepeat, 0, 3);
  repeat.unit_pos_right = kRepeat.data() + 2;
  repeat.unit_pos_left = kRepeat.data() + 2;
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.end, kRepeat.data() + 3);
  EXPECT_EQ(repeat.unit_pos_right, kRepeat.data());
  EXPECT_EQ(repeat.start, kRepeat.data());
  EXPECT_EQ(repeat.unit_pos_left, kRepeat.data() + 2);
}

TEST(TrimmingOfNs, walks_the_left_cursor_forward_round_the_unit) {
  // Before ACG stand five N's, for C, G, A, C and G: A would be next to the left.
  constexpr std::string_view kRepeat = "NNNNNACG";
  Csat repeat = repeat_over(kRepeat, 5, 3);
  repeat.unit_pos_right = kRepeat.data() + 5;
  repeat.unit_pos_left = kRepeat.data() + 5;
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.start, kRepeat.data() + 5);
  EXPECT_EQ(repeat.unit_pos_left, kRepeat.data() + 7);
  EXPECT_EQ(repeat.end, kRepeat.data() + 8);
  EXPECT_EQ(repeat.unit_pos_right, kRepeat.data() + 5);
}

TEST(TrimmingOfNs, leaves_the_cursors_of_a_unit_of_one_base_where_they_are) {
  constexpr std::string_view kRepeat = "NAAN";
  Csat repeat = repeat_over(kRepeat, 1, 1);
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.start, kRepeat.data() + 1);
  EXPECT_EQ(repeat.end, kRepeat.data() + 3);
  EXPECT_EQ(repeat.unit_pos_right, kRepeat.data() + 1);
  EXPECT_EQ(repeat.unit_pos_left, kRepeat.data() + 1);
}

TEST(TrimmingOfNs, leaves_ns_inside_lower_case_ns_score_and_edits_alone) {
  constexpr std::string_view kRepeat = "nANAn";
  Csat repeat = repeat_over(kRepeat, 1, 1);
  repeat.score = 2;
  repeat.mismatches = 1;
  repeat.insertions = 2;
  repeat.deletions = 3;
  repeat.n_count = 1;
  repeat.missense.push_back({kRepeat.data(), 'M'});
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.start, kRepeat.data());
  EXPECT_EQ(repeat.end, kRepeat.data() + 5);
  EXPECT_EQ(repeat.n_count, 1);

  constexpr std::string_view kTrimmed = "NAAN";
  repeat.start = kTrimmed.data();
  repeat.end = kTrimmed.data() + 4;
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.n_count, -1);
  EXPECT_EQ(repeat.score, 2);
  EXPECT_EQ(repeat.mismatches, 1);
  EXPECT_EQ(repeat.insertions, 2);
  EXPECT_EQ(repeat.deletions, 3);
  EXPECT_EQ(repeat.missense.size(), 1U);
}

TEST(TrimmingOfNs, ends_where_nothing_is_left) {
  constexpr std::string_view kSurrounded = "NNNNN";
  Csat repeat = repeat_over(kSurrounded, 1, 1);
  repeat.start = kSurrounded.data() + 1;
  repeat.end = kSurrounded.data() + 4;
  repeat.remove_Ns_at_ends();
  EXPECT_EQ(repeat.start, kSurrounded.data() + 1);
  EXPECT_EQ(repeat.end, kSurrounded.data() + 1);
}

}  // namespace
}  // namespace quorix
