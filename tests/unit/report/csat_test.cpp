#include "report/csat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace quorix {
namespace {

constexpr std::string_view kText = "ACGTACGTACGTACGTACGT";
const char* const kFirst = kText.data();

Csat repeat_of(const char* start, const char* end) {
  Csat repeat;
  repeat.init_from_unit(start, start + 1);
  repeat.end = end;
  return repeat;
}

TEST(Csat, is_one_unit_copy_with_both_cursors_ready_for_its_neighbours) {
  Csat repeat;
  repeat.init_from_unit(kFirst + 4, kFirst + 7);
  EXPECT_EQ(repeat.start, kFirst + 4);
  EXPECT_EQ(repeat.end, kFirst + 7);
  EXPECT_EQ(repeat.unit_begin, kFirst + 4);
  EXPECT_EQ(repeat.unit_end, kFirst + 7);
  EXPECT_EQ(repeat.unit_pos_right, kFirst + 4);  // the next base to the right begins a copy
  EXPECT_EQ(repeat.unit_pos_left, kFirst + 6);   // the next one to the left ends a copy
  EXPECT_EQ(repeat.unit_length(), 3);
  EXPECT_EQ(repeat.score, 0);
  EXPECT_EQ(repeat.mismatches, 0);
  EXPECT_EQ(repeat.insertions, 0);
  EXPECT_EQ(repeat.deletions, 0);
  EXPECT_EQ(repeat.n_count, 0);
  EXPECT_EQ(repeat.recursion_depth, 0);
  EXPECT_TRUE(repeat.missense.empty());
}

TEST(Csat, forgets_all_it_was_when_it_is_initialised_again_but_keeps_its_edit_block) {
  Csat repeat;
  repeat.init_from_unit(kFirst, kFirst + 2);
  repeat.end = kFirst + 9;
  repeat.score = 1;
  repeat.mismatches = 2;
  repeat.insertions = 3;
  repeat.deletions = 4;
  repeat.n_count = 5;
  repeat.recursion_depth = 6;
  for (int i = 0; i < 5; ++i) repeat.missense.push_back({kFirst + i, 'M'});

  repeat.init_from_unit(kFirst + 3, kFirst + 4);
  EXPECT_EQ(repeat.start, kFirst + 3);
  EXPECT_EQ(repeat.end, kFirst + 4);
  EXPECT_EQ(repeat.unit_pos_right, kFirst + 3);
  EXPECT_EQ(repeat.unit_pos_left, kFirst + 3);
  EXPECT_EQ(repeat.score, 0);
  EXPECT_EQ(repeat.mismatches, 0);
  EXPECT_EQ(repeat.insertions, 0);
  EXPECT_EQ(repeat.deletions, 0);
  EXPECT_EQ(repeat.n_count, 0);
  EXPECT_EQ(repeat.recursion_depth, 0);
  EXPECT_TRUE(repeat.missense.empty());
  EXPECT_EQ(repeat.missense.capacity(), 8U);
}

TEST(Csat, spans_its_bases_without_the_inserted_and_with_the_deleted_ones) {
  Csat repeat = repeat_of(kFirst, kFirst + 10);
  EXPECT_EQ(repeat.normalized_length(), 10);
  repeat.insertions = 3;
  EXPECT_EQ(repeat.normalized_length(), 7);
  repeat.deletions = 5;
  EXPECT_EQ(repeat.normalized_length(), 12);
  repeat.mismatches = 2;
  repeat.n_count = 1;
  EXPECT_EQ(repeat.normalized_length(), 12);
}

/// A repeat whose every field has a value of its own.
Csat distinct_repeat() {
  Csat repeat;
  repeat.start = kFirst + 1;
  repeat.end = kFirst + 12;
  repeat.unit_pos_right = kFirst + 3;
  repeat.unit_pos_left = kFirst + 4;
  repeat.unit_begin = kFirst + 2;
  repeat.unit_end = kFirst + 6;
  repeat.score = -7;
  repeat.mismatches = 8;
  repeat.insertions = 9;
  repeat.deletions = 10;
  repeat.n_count = 11;
  repeat.recursion_depth = 12;
  for (const char kind : std::string_view("MIDMI")) repeat.missense.push_back({kFirst + 5, kind});
  return repeat;
}

void expect_distinct_repeat(const Csat& repeat) {
  EXPECT_EQ(repeat.start, kFirst + 1);
  EXPECT_EQ(repeat.end, kFirst + 12);
  EXPECT_EQ(repeat.unit_pos_right, kFirst + 3);
  EXPECT_EQ(repeat.unit_pos_left, kFirst + 4);
  EXPECT_EQ(repeat.unit_begin, kFirst + 2);
  EXPECT_EQ(repeat.unit_end, kFirst + 6);
  EXPECT_EQ(repeat.score, -7);
  EXPECT_EQ(repeat.mismatches, 8);
  EXPECT_EQ(repeat.insertions, 9);
  EXPECT_EQ(repeat.deletions, 10);
  EXPECT_EQ(repeat.n_count, 11);
  EXPECT_EQ(repeat.recursion_depth, 12);
  std::string kinds;
  for (const Edit& edit : repeat.missense) {
    EXPECT_EQ(edit.position, kFirst + 5);
    kinds += edit.kind;
  }
  EXPECT_EQ(kinds, "MIDMI");
}

TEST(Csat, is_copied_field_by_field_into_an_edit_block_of_exactly_the_size_needed) {
  const Csat source = distinct_repeat();
  Csat copy(source);
  expect_distinct_repeat(copy);
  EXPECT_EQ(copy.missense.capacity(), 5U);
  copy.missense.truncate(0);
  copy.score = 0;
  expect_distinct_repeat(source);
}

TEST(Csat, is_assigned_field_by_field_into_its_own_edit_block) {
  Csat target;
  for (int i = 0; i < 9; ++i) target.missense.push_back({kFirst, 'D'});
  const Edit* const block = target.missense.begin();
  target = distinct_repeat();
  expect_distinct_repeat(target);
  EXPECT_EQ(target.missense.begin(), block);
  EXPECT_EQ(target.missense.capacity(), 16U);

  Csat small;
  small.missense.push_back({kFirst, 'D'});
  small = target;
  expect_distinct_repeat(small);
  EXPECT_EQ(small.missense.capacity(), 5U);
}

TEST(RecordOrder, is_by_start_and_then_by_end) {
  const Csat early = repeat_of(kFirst, kFirst + 9);
  const Csat late_short = repeat_of(kFirst + 1, kFirst + 5);
  const Csat late_long = repeat_of(kFirst + 1, kFirst + 6);
  EXPECT_TRUE(lessThan_sat(&early, &late_short));
  EXPECT_FALSE(lessThan_sat(&late_short, &early));
  EXPECT_TRUE(lessThan_sat(&late_short, &late_long));
  EXPECT_FALSE(lessThan_sat(&late_long, &late_short));
  EXPECT_FALSE(lessThan_sat(&late_long, &late_long));
}

TEST(RecordOrder, leaves_records_of_equal_start_and_end_as_they_come) {
  std::vector<Csat> repeats = {repeat_of(kFirst + 2, kFirst + 5), repeat_of(kFirst, kFirst + 5),
                               repeat_of(kFirst + 2, kFirst + 5), repeat_of(kFirst + 2, kFirst + 4),
                               repeat_of(kFirst, kFirst + 5)};
  repeats[0].score = 99;  // nothing but start and end counts
  std::list<Csat*> records;
  for (Csat& repeat : repeats) records.push_back(&repeat);
  records.sort(lessThan_sat);
  EXPECT_EQ(records,
            (std::list<Csat*>{&repeats[1], &repeats[4], &repeats[3], &repeats[0], &repeats[2]}));
}

TEST(EditOrder, is_by_position_whatever_the_kinds) {
  const Csat::lessThan_missense less;
  for (const char left : {'D', 'I', 'M'}) {
    for (const char right : {'D', 'I', 'M'}) {
      EXPECT_TRUE(less({kFirst, left}, {kFirst + 1, right})) << left << right;
      EXPECT_FALSE(less({kFirst + 1, left}, {kFirst, right})) << left << right;
    }
  }
}

TEST(EditOrder, is_deletion_insertion_mismatch_at_one_position_over_all_pairs) {
  const Csat::lessThan_missense less;
  struct Pair {
    char left;
    char right;
    bool is_less;
  };
  for (const Pair& pair : {Pair{'D', 'D', false}, Pair{'D', 'I', true}, Pair{'D', 'M', true},
                           Pair{'I', 'D', false}, Pair{'I', 'I', false}, Pair{'I', 'M', true},
                           Pair{'M', 'D', false}, Pair{'M', 'I', false}, Pair{'M', 'M', false}}) {
    EXPECT_EQ(less({kFirst, pair.left}, {kFirst, pair.right}), pair.is_less)
        << pair.left << pair.right;
  }
}

TEST(EditOrder, brings_the_deletion_first_of_a_deletion_and_a_mismatch_at_one_position) {
  for (const std::string_view kinds : {"DM", "MD"}) {
    fastvector<Edit> edits;
    for (const char kind : kinds) edits.push_back({kFirst + 3, kind});
    std::sort(edits.begin(), edits.end(), Csat::lessThan_missense());
    EXPECT_EQ(edits[0].kind, 'D');
    EXPECT_EQ(edits[1].kind, 'M');
  }
}

TEST(EditOrder, sorts_every_arrangement_of_edits_the_same_way) {
  // Kinds and positions together name each edit: "D3" and so on.
  std::vector<std::string> names = {"M2", "D3", "D3", "I3", "M3", "D4", "M4"};
  const std::vector<std::string> sorted = names;
  std::sort(names.begin(), names.end());
  do {
    std::vector<Edit> edits;
    for (const std::string& name : names) edits.push_back({kFirst + (name[1] - '0'), name[0]});
    std::sort(edits.begin(), edits.end(), Csat::lessThan_missense());
    for (std::size_t i = 0; i < edits.size(); ++i) {
      ASSERT_EQ(edits[i].kind, sorted[i][0]);
      ASSERT_EQ(edits[i].position, kFirst + (sorted[i][1] - '0'));
    }
  } while (std::next_permutation(names.begin(), names.end()));
}

}  // namespace
}  // namespace quorix
