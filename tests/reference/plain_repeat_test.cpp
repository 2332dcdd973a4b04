#include "reference/plain_test_support.h"

namespace quorix::reference {
namespace {

using PlainRepeat = CWithDefaultSettings;

TEST_F(PlainRepeat, starts_as_one_copy_of_its_unit) {
  const Repeat repeat = repeat_from_unit(4, 7);
  EXPECT_EQ(describe(repeat), "[4,7) unit [4,7) score 0");
  EXPECT_EQ(repeat.unit_pos_right, 4);
  EXPECT_EQ(repeat.unit_pos_left, 6);
  EXPECT_EQ(normalized_length(repeat), 3);
  for (const int mode : {kNAsMismatch, kNAsNeutral, kNAsMatch}) {
    global_N_and_perfection_mode = mode;
    EXPECT_EQ(percentage_perfection(repeat), 100.0);
  }
}

TEST_F(PlainRepeat, has_a_perfection_that_depends_on_the_treatment_of_Ns) {
  Repeat repeat = repeat_from_unit(0, 2);
  repeat.end = 11;
  repeat.mismatches = 1;
  repeat.insertions = 2;
  repeat.deletions = 1;
  repeat.n_count = 2;
  // Normalized length 11 - 2 + 1 = 10, four edits, two N's.
  ASSERT_EQ(normalized_length(repeat), 10);
  EXPECT_EQ(percentage_perfection(repeat), 4.0 / 10.0 * 100.0);
  global_N_and_perfection_mode = kNAsNeutral;
  EXPECT_EQ(percentage_perfection(repeat), 4.0 / 8.0 * 100.0);
  global_N_and_perfection_mode = kNAsMatch;
  EXPECT_EQ(percentage_perfection(repeat), 6.0 / 10.0 * 100.0);
}

TEST_F(PlainRepeat, ends_the_process_on_an_unknown_treatment_of_Ns) {
  global_N_and_perfection_mode = 3;
  EXPECT_EXIT(static_cast<void>(percentage_perfection(repeat_from_unit(0, 2))),
              testing::ExitedWithCode(2), "^$");
}

TEST_F(PlainRepeat, gives_back_Ns_with_cursors_and_count) {
  Repeat repeat = repeat_from_unit(2, 4);
  repeat.start = 0;
  repeat.end = 8;
  // The base at 8 would have to be the unit's first, the one before 0 its last.
  repeat.unit_pos_right = 2;
  repeat.unit_pos_left = 3;
  repeat.n_count = 3;
  repeat.score = 3;
  remove_Ns_at_ends(repeat, "NNACACAN");
  EXPECT_EQ(describe(repeat), "[2,7) unit [2,4) score 3");
  EXPECT_EQ(repeat.unit_pos_right, 3);
  EXPECT_EQ(repeat.unit_pos_left, 3);
}

TEST_F(PlainRepeat, does_not_keep_its_count_of_Ns_from_falling_below_zero) {
  Repeat repeat = repeat_from_unit(1, 3);
  repeat.start = 0;
  remove_Ns_at_ends(repeat, "NAC");
  EXPECT_EQ(repeat.n_count, -1);
}

TEST_F(PlainRepeat, is_ordered_by_start_and_then_by_end) {
  Repeat longer = repeat_from_unit(3, 9);
  Repeat shorter = repeat_from_unit(3, 5);
  Repeat earlier = repeat_from_unit(1, 20);
  std::vector<Repeat> repeats = {longer, shorter, earlier};
  sort_repeats(repeats);
  EXPECT_EQ(repeats, (std::vector<Repeat>{earlier, shorter, longer}));
  EXPECT_FALSE(comes_before(longer, longer));
}

TEST_F(PlainRepeat, keeps_its_place_among_equals) {
  std::vector<Repeat> repeats;
  for (int score = 0; score < 40; ++score) {
    repeats.push_back(repeat_from_unit(5, 7));
    repeats.back().score = score;
  }
  const std::vector<Repeat> before = repeats;
  sort_repeats(repeats);
  EXPECT_EQ(repeats, before);
}

TEST_F(PlainRepeat, has_deletions_before_insertions_before_mismatches_at_one_base) {
  std::vector<Edit> edits = {{7, 'M'}, {7, 'I'}, {7, 'D'}, {3, 'M'}, {7, 'D'}};
  sort_edits(edits);
  EXPECT_EQ(edits, (std::vector<Edit>{{3, 'M'}, {7, 'D'}, {7, 'D'}, {7, 'I'}, {7, 'M'}}));
}

TEST_F(PlainRepeat, reads_its_unit_in_a_circle) {
  EXPECT_EQ(next_unit_position(4, 4, 7), 5);
  EXPECT_EQ(next_unit_position(6, 4, 7), 4);
  EXPECT_EQ(next_unit_position(4, 4, 5), 4);
  EXPECT_EQ(previous_unit_position(5, 4, 7), 4);
  EXPECT_EQ(previous_unit_position(4, 4, 7), 6);
  EXPECT_EQ(previous_unit_position(4, 4, 5), 4);
}

}  // namespace
}  // namespace quorix::reference
