// What the two directions of an extension call an edge, a limit and the next unit character.

#include "search/extension/direction.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/random_dna.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;
using testing::RandomEngine;

constexpr char kText[] = "ACGT";

TEST(Direction, has_a_place_of_its_own_in_tables) {
  EXPECT_EQ(Rightward::kIndex, 0U);
  EXPECT_EQ(Leftward::kIndex, 1U);
}

TEST(Rightward, moves_the_end_and_the_right_cursor) {
  Csat sat;
  sat.init_from_unit(kText, kText + 2);
  EXPECT_EQ(&Rightward::edge(sat), &sat.end);
  EXPECT_EQ(&Rightward::unit_cursor(sat), &sat.unit_pos_right);
}

TEST(Rightward, reads_the_base_at_the_edge_up_to_the_limit_itself) {
  const char* const limit = kText + 2;
  EXPECT_EQ(Rightward::base_beyond(kText + 1), kText + 1);
  EXPECT_EQ(Rightward::edge_beyond(kText + 1), kText + 2);
  EXPECT_FALSE(Rightward::is_at_limit(kText + 1, limit));
  EXPECT_TRUE(Rightward::is_at_limit(kText + 2, limit));
}

TEST(Rightward, goes_back_to_the_first_unit_character_after_the_last) {
  EXPECT_EQ(Rightward::next_in_unit(kText, kText, kText + 3), kText + 1);
  EXPECT_EQ(Rightward::next_in_unit(kText + 1, kText, kText + 3), kText + 2);
  EXPECT_EQ(Rightward::next_in_unit(kText + 2, kText, kText + 3), kText);
  EXPECT_EQ(Rightward::next_in_unit(kText, kText, kText + 1), kText);
}

TEST(Rightward, counts_bases_and_unit_characters_to_the_right) {
  EXPECT_EQ(Rightward::distance(kText, kText), 0);
  EXPECT_EQ(Rightward::distance(kText + 1, kText + 4), 3);
  const char* const unit_end = kText + 3;
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 0, kText, unit_end), kText + 1);
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 1, kText, unit_end), kText + 2);
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 2, kText, unit_end), kText);
  EXPECT_EQ(Rightward::character_beyond(kText + 1, 3'000'000'001, kText, unit_end), kText + 2);
}

TEST(Rightward, returns_what_lies_beyond_an_edge_and_after_a_character) {
  EXPECT_EQ(Rightward::edge_beyond(kText + 1, 0), kText + 1);
  EXPECT_EQ(Rightward::edge_beyond(kText + 1, 3), kText + 4);
  EXPECT_EQ(Rightward::bases_beyond(kText + 1, kText + 4), 3);
  EXPECT_EQ(Rightward::bases_beyond(kText + 4, kText + 4), 0);
  EXPECT_EQ(Rightward::characters_left(kText, kText, kText + 3), 3);
  EXPECT_EQ(Rightward::characters_left(kText + 2, kText, kText + 3), 1);
}

TEST(Rightward, counts_common_bases_from_both_edges_on_upwards) {
  constexpr char kBases[] = "TACGTAACGG";
  EXPECT_EQ(Rightward::common_bases(kBases + 1, kBases + 6, 4), 3);
  EXPECT_EQ(Rightward::common_bases(kBases + 1, kBases + 6, 2), 2);
  EXPECT_EQ(Rightward::common_bases(kBases, kBases + 6, 4), 0);
  EXPECT_EQ(Rightward::common_characters(kBases + 1, kBases + 6, 4), 3);
}

TEST(Leftward, moves_the_start_and_the_left_cursor) {
  Csat sat;
  sat.init_from_unit(kText, kText + 2);
  EXPECT_EQ(&Leftward::edge(sat), &sat.start);
  EXPECT_EQ(&Leftward::unit_cursor(sat), &sat.unit_pos_left);
}

TEST(Leftward, reads_the_base_before_the_edge_down_to_the_one_after_the_limit) {
  const char* const limit = kText + 1;
  EXPECT_EQ(Leftward::base_beyond(kText + 3), kText + 2);
  EXPECT_EQ(Leftward::edge_beyond(kText + 3), kText + 2);
  EXPECT_FALSE(Leftward::is_at_limit(kText + 3, limit));
  EXPECT_TRUE(Leftward::is_at_limit(kText + 2, limit));
}

TEST(Leftward, goes_on_to_the_last_unit_character_before_the_first) {
  EXPECT_EQ(Leftward::next_in_unit(kText + 2, kText, kText + 3), kText + 1);
  EXPECT_EQ(Leftward::next_in_unit(kText + 1, kText, kText + 3), kText);
  EXPECT_EQ(Leftward::next_in_unit(kText, kText, kText + 3), kText + 2);
  EXPECT_EQ(Leftward::next_in_unit(kText, kText, kText + 1), kText);
}

TEST(Leftward, counts_bases_and_unit_characters_to_the_left) {
  EXPECT_EQ(Leftward::distance(kText, kText), 0);
  EXPECT_EQ(Leftward::distance(kText + 4, kText + 1), 3);
  const char* const unit_end = kText + 3;
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 0, kText, unit_end), kText + 1);
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 1, kText, unit_end), kText);
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 2, kText, unit_end), kText + 2);
  EXPECT_EQ(Leftward::character_beyond(kText + 1, 3'000'000'001, kText, unit_end), kText);
}

TEST(Leftward, returns_what_lies_beyond_an_edge_and_before_a_character) {
  EXPECT_EQ(Leftward::edge_beyond(kText + 3, 0), kText + 3);
  EXPECT_EQ(Leftward::edge_beyond(kText + 3, 3), kText);
  EXPECT_EQ(Leftward::bases_beyond(kText + 4, kText), 3);
  EXPECT_EQ(Leftward::bases_beyond(kText + 1, kText), 0);
  EXPECT_EQ(Leftward::characters_left(kText, kText, kText + 3), 1);
  EXPECT_EQ(Leftward::characters_left(kText + 2, kText, kText + 3), 3);
}

TEST(Leftward, counts_common_bases_from_both_edges_on_downwards) {
  constexpr char kBases[] = "GACGTTACGT";
  EXPECT_EQ(Leftward::common_bases(kBases + 5, kBases + 10, 5), 4);
  EXPECT_EQ(Leftward::common_bases(kBases + 5, kBases + 10, 2), 2);
  EXPECT_EQ(Leftward::common_bases(kBases + 4, kBases + 10, 4), 0);
  // The character itself is the first that is read, the base before the edge is.
  EXPECT_EQ(Leftward::common_characters(kBases + 5, kBases + 9, 5), 4);
}

/// An array of the first `unit_length` bases, where few bases differ, at times none.
std::string draw_near_array(RandomEngine& engine, std::size_t unit_length, std::size_t length) {
  const std::string unit = testing::draw_letters(engine, unit_length, "AC");
  std::string bases;
  while (bases.size() < length) bases += unit;
  bases.resize(length);
  for (std::size_t hits = testing::draw_between(engine, 0, 2); hits > 0; --hits) {
    bases[testing::draw_between(engine, unit_length, length - 1)] = 'G';
  }
  return bases;
}

/// The unit that is read lies in a block of its own, as does the text.
void expect_matches_of_all_phases(const std::string& text, const std::string& unit,
                                  std::int64_t edge, std::int64_t limit) {
  const CBases bases(text);
  const CBases characters(unit);
  const auto unit_length = static_cast<std::int64_t>(unit.size());
  for (std::int64_t phase = 0; phase < unit_length; ++phase) {
    std::int64_t to_right = 0;
    while (edge + to_right < limit &&
           text[static_cast<std::size_t>(edge + to_right)] ==
               unit[static_cast<std::size_t>((phase + to_right) % unit_length)]) {
      ++to_right;
    }
    // To the left everything is mirrored: the edge as far from the end, the phase from the last.
    const auto text_length = static_cast<std::int64_t>(text.size());
    const std::string mirrored_text(text.rbegin(), text.rend());
    const std::string mirrored_unit(unit.rbegin(), unit.rend());
    const CBases mirrored_bases(mirrored_text);
    const CBases mirrored_characters(mirrored_unit);
    ASSERT_EQ(
        matches_beyond<Rightward>(bases.begin() + edge, characters.begin() + phase,
                                  characters.begin(), characters.end(), bases.begin() + limit),
        to_right)
        << text << " edge " << edge << " limit " << limit << " unit " << unit << " phase " << phase;
    ASSERT_EQ(
        matches_beyond<Leftward>(mirrored_bases.end() - edge, mirrored_characters.end() - 1 - phase,
                                 mirrored_characters.begin(), mirrored_characters.end(),
                                 mirrored_bases.before() + (text_length - limit)),
        to_right)
        << mirrored_text << " edge " << edge << " limit " << limit << " unit " << mirrored_unit
        << " phase " << phase;
  }
}

TEST(MatchesBeyond, is_as_many_as_a_loop_over_the_unit_counts) {
  RandomEngine engine(31);
  for (std::size_t unit_length = 1; unit_length <= 20; ++unit_length) {
    for (int round = 0; round < 60; ++round) {
      const std::size_t length = testing::draw_between(engine, unit_length + 1, 90);
      const std::string text = draw_near_array(engine, unit_length, length);
      const auto edge = static_cast<std::int64_t>(testing::draw_between(engine, 0, length));
      const auto limit = static_cast<std::int64_t>(
          testing::draw_chance(engine, 50)
              ? length
              : testing::draw_between(engine, static_cast<std::size_t>(edge), length));
      ASSERT_NO_FATAL_FAILURE(
          expect_matches_of_all_phases(text, text.substr(0, unit_length), edge, limit));
    }
  }
}

}  // namespace
}  // namespace quorix
