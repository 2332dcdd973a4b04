#include "report/alignment.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "repeat_scene.h"

namespace quorix {
namespace {

using testing::CRepeatScene;

SequenceText text_of(const CRepeatScene& scene) {
  const faststring& bases = scene.record.sequence;
  return {bases.data(), bases.data() + bases.size()};
}

/// The three lines, one below the other.
std::string lines_of(const CRepeatScene& scene, std::int64_t flanking_length = 0) {
  const Alignment alignment = align(scene.repeat, text_of(scene), flanking_length);
  return "\n" + alignment.bases + "\n" + alignment.marks + "\n" + alignment.unit + "\n";
}

/// What stands left and right of the repeat, as "left:right".
std::string flanks_as_text(const CRepeatScene& scene, std::int64_t flanking_length) {
  const Flanks flanks = flanks_of(scene.repeat, text_of(scene), flanking_length);
  return std::string(flanks.left_begin, scene.repeat.start) + ":" +
         std::string(scene.repeat.end, flanks.right_end);
}

TEST(Flanks, have_the_length_asked_for) {
  const CRepeatScene scene("GATTA", "ACACAC", "GGCTT", 2);
  EXPECT_EQ(flanks_as_text(scene, 0), ":");
  EXPECT_EQ(flanks_as_text(scene, 1), "A:G");
  EXPECT_EQ(flanks_as_text(scene, 4), "ATTA:GGCT");
}

TEST(Flanks, end_where_the_sequence_ends) {
  const CRepeatScene scene("GAT", "ACACAC", "GG", 2);
  EXPECT_EQ(flanks_as_text(scene, 2), "AT:GG");
  EXPECT_EQ(flanks_as_text(scene, 3), "GAT:GG");
  EXPECT_EQ(flanks_as_text(scene, 4), "GAT:GG");
  EXPECT_EQ(flanks_as_text(scene, INT64_MAX), "GAT:GG");
}

TEST(Flanks, are_empty_at_the_ends_of_the_sequence) {
  EXPECT_EQ(flanks_as_text(CRepeatScene("", "ACACAC", "", 2), 5), ":");
}

TEST(Alignment, marks_each_match_and_wraps_the_unit) {
  const CRepeatScene scene("", "ACGACGAC", "", 3);
  EXPECT_EQ(lines_of(scene), R"(
ACGACGAC
||||||||
ACGACGAC
)");
}

TEST(Alignment, begins_with_the_unit_character_that_the_first_base_is_aligned_with) {
  CRepeatScene scene("", "GACGACGA", "", 3);
  scene.set_unit(2, 3, 3);
  EXPECT_EQ(lines_of(scene), R"(
GACGACGA
||||||||
GACGACGA
)");
  scene.set_unit(2, 3, 1);  // from the unit's first character, whatever the bases are
  EXPECT_EQ(lines_of(scene), R"(
GACGACGA
||||||||
ACGACGAC
)");
}

TEST(Alignment, wraps_a_unit_of_one_base) {
  CRepeatScene scene("", "AATAA", "", 1);
  scene.add_edit(3, 'M');
  EXPECT_EQ(lines_of(scene), R"(
AATAA
|| ||
AAAAA
)");
}

TEST(Alignment, leaves_a_mismatch_unmarked) {
  CRepeatScene scene("", "ACGATGACG", "", 3);
  scene.add_edit(5, 'M');
  EXPECT_EQ(lines_of(scene), R"(
ACGATGACG
|||| ||||
ACGACGACG
)");
}

TEST(Alignment, shows_an_inserted_base_without_a_unit_character) {
  CRepeatScene scene("", "ACGACTGACG", "", 3);
  scene.add_edit(6, 'I');
  EXPECT_EQ(lines_of(scene), R"(
ACGACTGACG
||||| ||||
ACGAC-GACG
)");
}

TEST(Alignment, shows_a_deleted_unit_character_without_a_base) {
  CRepeatScene scene("", "ACGAGACG", "", 3);
  scene.add_edit(5, 'D');
  EXPECT_EQ(lines_of(scene), R"(
ACGA-GACG
|||| ||||
ACGACGACG
)");
}

TEST(Alignment, shows_two_deletions_and_a_mismatch_at_one_position_in_this_order) {
  CRepeatScene scene("", "ACGACTGA", "", 3);  // two lost before the T, which stands for a C
  for (const char kind : {'D', 'D', 'M'}) scene.add_edit(6, kind);
  EXPECT_EQ(lines_of(scene), R"(
ACGAC--TGA
|||||   ||
ACGACGACGA
)");
}

TEST(Alignment, shows_a_deletion_before_an_insertion_at_one_position) {
  CRepeatScene scene("", "ACGACTACG", "", 3);
  scene.add_edit(6, 'D');
  scene.add_edit(6, 'I');
  EXPECT_EQ(lines_of(scene), R"(
ACGAC-TACG
|||||  |||
ACGACG-ACG
)");
}

TEST(Alignment, shows_insertions_in_a_row) {
  CRepeatScene scene("", "ACTTGAC", "", 3);
  scene.set_unit(1, 2, 1);
  for (const std::int64_t position : {3, 4, 5}) scene.add_edit(position, 'I');
  EXPECT_EQ(lines_of(scene), R"(
ACTTGAC
||   ||
AC---AC
)");
}

TEST(Alignment, shows_an_edit_at_the_first_base) {
  CRepeatScene mismatched("", "TACGACG", "", 3);
  mismatched.set_unit(2, 3, 3);
  mismatched.add_edit(1, 'M');
  EXPECT_EQ(lines_of(mismatched), "\nTACGACG\n ||||||\nGACGACG\n");

  CRepeatScene inserted("", "TACGACG", "", 3);
  inserted.set_unit(2, 3, 1);
  inserted.add_edit(1, 'I');
  EXPECT_EQ(lines_of(inserted), "\nTACGACG\n ||||||\n-ACGACG\n");

  CRepeatScene deleted("", "GACGACG", "", 3);
  deleted.set_unit(2, 3, 2);
  deleted.add_edit(1, 'D');
  EXPECT_EQ(lines_of(deleted), "\n-GACGACG\n |||||||\nCGACGACG\n");
}

TEST(Alignment, shows_an_edit_at_the_last_base_but_none_after_it) {
  CRepeatScene scene("", "ACGACT", "AAA", 3);
  scene.add_edit(6, 'M');
  scene.add_edit(7, 'D');
  EXPECT_EQ(lines_of(scene), R"(
ACGACT
||||| 
ACGACG
)");
}

TEST(Alignment, takes_an_edit_before_the_first_base_for_one_that_is_still_to_come) {
  // Such an entry stays when N's are given back at the left end; the walk never reaches it.
  CRepeatScene scene("N", "ACGACT", "", 3);
  scene.add_edit(0, 'M');
  scene.add_edit(6, 'M');
  EXPECT_EQ(lines_of(scene), R"(
ACGACT
||||||
ACGACG
)");
}

TEST(Alignment, marks_an_n_without_an_edit_by_a_star_and_one_with_an_edit_not_at_all) {
  CRepeatScene scene("", "ACGANGNCG", "", 3);
  scene.add_edit(7, 'M');
  EXPECT_EQ(lines_of(scene), R"(
ACGANGNCG
||||*| ||
ACGACGACG
)");
}

TEST(Alignment, shows_the_flanks_beside_colons_on_the_base_line_alone) {
  CRepeatScene scene("TT", "ACGACTGACG", "CC", 3);
  scene.add_edit(6, 'I');
  EXPECT_EQ(lines_of(scene, 2),
            "\nTT:ACGACTGACG:CC\n"
            "   ||||| ||||   \n"
            "   ACGAC-GACG   \n");
  EXPECT_EQ(lines_of(scene, 1),
            "\nT:ACGACTGACG:C\n"
            "  ||||| ||||  \n"
            "  ACGAC-GACG  \n");
}

TEST(Alignment, writes_the_colons_beside_empty_flanks_too) {
  const CRepeatScene scene("", "ACAC", "", 2);
  EXPECT_EQ(lines_of(scene, 9), "\n:ACAC:\n |||| \n ACAC \n");
}

TEST(Alignment, has_no_colons_without_flanking) {
  const CRepeatScene scene("TT", "ACAC", "GG", 2);
  EXPECT_EQ(lines_of(scene, 0), "\nACAC\n||||\nACAC\n");
}

}  // namespace
}  // namespace quorix
