// Which bases may still seed a repeat.

#include "search/scan/anchor_seq.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;

/// The guard, the marks and the other guard. 'a' is open, ' ' closed.
std::string marks_with_guards(const CAnchorSeq& anchors) {
  return {anchors.marks - 1, anchors.marks_end + 1};
}

/// A sequence, its marks, and a repeat in it whose unit is two bases long.
struct MarkedRepeat {
  MarkedRepeat(std::string_view text, std::size_t start, std::size_t end)
      : bases(text), anchors(bases.begin(), text.size()), repeat(bases.unit_copy(start, 2)) {
    repeat.end = bases.at(end);
  }

  CBases bases;
  CAnchorSeq anchors;
  Csat repeat;
};

TEST(AnchorSeq, begins_with_all_marks_and_both_guards_open) {
  const CBases bases("ACGT");
  const CAnchorSeq anchors(bases.begin(), 4);
  EXPECT_EQ(anchors.seq_start, bases.begin());
  EXPECT_EQ(anchors.seq_length, 4U);
  EXPECT_EQ(marks_with_guards(anchors), "aaaaaa");
  EXPECT_EQ(anchors.mark_buffer.size(), 7U);
  EXPECT_EQ(anchors.mark_buffer.back(), '\0');
}

TEST(AnchorSeq, has_guards_alone_for_a_sequence_without_bases) {
  const CAnchorSeq anchors(nullptr, 0);
  EXPECT_EQ(marks_with_guards(anchors), "aa");
  EXPECT_EQ(anchors.mark_buffer.back(), '\0');
}

TEST(AnchorSeq, closes_the_bases_of_a_repeat_and_no_others) {
  MarkedRepeat marked("TACACG", 1, 5);
  marked.anchors.close_repeat(marked.repeat);
  EXPECT_EQ(marks_with_guards(marked.anchors), "aa    aa");
}

TEST(AnchorSeq, leaves_the_guards_open_when_a_repeat_covers_the_whole_sequence) {
  MarkedRepeat marked("ACAC", 0, 4);
  marked.anchors.close_repeat(marked.repeat);
  EXPECT_EQ(marks_with_guards(marked.anchors), "a    a");
}

TEST(AnchorSeq, leaves_the_edit_sites_of_a_repeat_open) {
  MarkedRepeat marked("ACGCATACAC", 0, 10);
  marked.repeat.missense.push_back({marked.bases.at(2), 'M'});
  marked.repeat.missense.push_back({marked.bases.at(5), 'I'});
  marked.repeat.missense.push_back({marked.bases.at(9), 'D'});
  marked.anchors.close_repeat(marked.repeat);
  EXPECT_EQ(marks_with_guards(marked.anchors), "a  a  a   aa");
}

TEST(AnchorSeq, opens_at_an_edit_site_what_an_earlier_repeat_closed) {
  MarkedRepeat marked("ACACAC", 0, 6);
  marked.anchors.close_repeat(marked.repeat);
  marked.repeat.missense.push_back({marked.bases.at(3), 'M'});
  marked.anchors.close_repeat(marked.repeat);
  EXPECT_EQ(marks_with_guards(marked.anchors), "a   a  a");
}

TEST(AnchorSeq, opens_all_marks_again) {
  MarkedRepeat marked("ACAC", 0, 4);
  marked.anchors.close_repeat(marked.repeat);
  marked.anchors.open_all();
  EXPECT_EQ(marks_with_guards(marked.anchors), "aaaaaa");
  EXPECT_EQ(marked.anchors.mark_buffer.back(), '\0');
}

// The unit GTA lies at 2; what counts are the marks of the bases before it, of its first, of its
// last, and after it. Its middle, at 3, is of no interest.
TEST(AnchorSeq, lets_a_unit_seed_by_its_first_and_last_base_and_their_neighbours) {
  struct Case {
    const char* before_first_last_after;
    bool may_seed;
  };
  const Case cases[] = {
      {"aaaa", true},  {"aaa ", true},  {"aa a", true},  {"aa  ", false},
      {"a aa", true},  {"a a ", true},  {"a  a", false}, {"a   ", false},
      {" aaa", true},  {" aa ", true},  {" a a", true},  {" a  ", false},
      {"  aa", false}, {"  a ", false}, {"   a", false}, {"    ", false},
  };
  const CBases bases("ACGTACG");
  for (const auto& [marks, expected] : cases) {
    for (const char middle : {kOpenMark, kClosedMark}) {
      CAnchorSeq anchors(bases.begin(), 7);
      anchors.marks[1] = marks[0];
      anchors.marks[2] = marks[1];
      anchors.marks[3] = middle;
      anchors.marks[4] = marks[2];
      anchors.marks[5] = marks[3];
      EXPECT_EQ(anchors.may_seed(bases.at(2), 3), expected) << '"' << marks << '"';
    }
  }
}

TEST(AnchorSeq, lets_a_unit_of_one_base_seed_where_that_base_is_open) {
  const CBases bases("ACG");
  CAnchorSeq anchors(bases.begin(), 3);
  EXPECT_TRUE(anchors.may_seed(bases.at(1), 1));
  anchors.marks[0] = anchors.marks[2] = kClosedMark;
  EXPECT_TRUE(anchors.may_seed(bases.at(1), 1));
  anchors.marks[0] = anchors.marks[2] = kOpenMark;
  anchors.marks[1] = kClosedMark;
  EXPECT_FALSE(anchors.may_seed(bases.at(1), 1));
}

TEST(AnchorSeq, counts_the_guards_as_neighbours_of_the_first_and_the_last_base) {
  const CBases bases("ACGT");
  CAnchorSeq anchors(bases.begin(), 4);
  anchors.marks[0] = kClosedMark;
  EXPECT_TRUE(anchors.may_seed(bases.at(0), 2));
  anchors.marks[3] = kClosedMark;
  EXPECT_TRUE(anchors.may_seed(bases.at(2), 2));
}

TEST(AnchorSeq, answers_for_64_units_as_for_each_of_them) {
  testing::RandomEngine engine(21);
  for (const std::size_t length : {1U, 2U, 9U, 63U, 64U, 65U, 70U, 128U, 200U}) {
    const CBases bases(testing::draw_letters(engine, length, "ACGT"));
    CAnchorSeq anchors(bases.begin(), length);
    for (int round = 0; round < 20; ++round) {
      for (char* mark = anchors.marks; mark != anchors.marks_end; ++mark) {
        *mark = testing::draw_chance(engine, 50) ? kOpenMark : kClosedMark;
      }
      for (std::size_t unit_length = 1; unit_length <= length + 1; ++unit_length) {
        for (std::size_t p = 0; p < length; ++p) {
          std::uint64_t expected = 0;
          for (std::size_t k = 0; k < 64 && p + k + unit_length <= length; ++k) {
            expected |= std::uint64_t{anchors.may_seed(bases.at(p + k), unit_length)} << k;
          }
          ASSERT_EQ(anchors.may_seed_from(bases.at(p), unit_length), expected)
              << length << " bases, unit " << unit_length << " at " << p;
        }
      }
    }
  }
}

}  // namespace
}  // namespace quorix
