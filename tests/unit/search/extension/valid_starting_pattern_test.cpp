// Which units may start a repeat.

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CBases;

/// Both forms of the test on the whole of `unit`, which have to agree.
bool is_valid(std::string_view unit) {
  const CBases bases(unit);
  const char* const next_N = bases.at(std::min(unit.find('N'), unit.size()));
  const bool by_positions =
      CSearchController::valid_starting_pattern(bases.begin(), bases.end(), next_N);
  EXPECT_EQ(CSearchController::valid_starting_pattern(bases.unit_copy(0, unit.size())),
            by_positions)
      << unit;
  return by_positions;
}

TEST(ValidStartingPattern, is_any_single_base) {
  for (const char* const unit : {"A", "C", "G", "T"}) EXPECT_TRUE(is_valid(unit)) << unit;
}

TEST(ValidStartingPattern, holds_no_N) {
  for (const char* const unit : {"N", "NA", "AN", "ACNGT", "NACG", "ACGN", "NNN"}) {
    EXPECT_FALSE(is_valid(unit)) << unit;
  }
}

TEST(ValidStartingPattern, is_not_one_base_repeated) {
  for (const char* const unit : {"AA", "TTT", "CCCCCCC"}) EXPECT_FALSE(is_valid(unit)) << unit;
}

TEST(ValidStartingPattern, has_two_neighbours_that_differ_anywhere) {
  for (const char* const unit : {"AC", "AAC", "CAA", "ACA", "AAAAAAT", "TAAAAAA"}) {
    EXPECT_TRUE(is_valid(unit)) << unit;
  }
}

TEST(ValidStartingPattern, may_be_periodic_itself) {
  EXPECT_TRUE(is_valid("ATAT"));
  EXPECT_TRUE(is_valid("ACGACG"));
}

TEST(ValidStartingPattern, is_not_empty) {
  const CBases bases("ACG");
  EXPECT_FALSE(CSearchController::valid_starting_pattern(bases.unit_copy(1, 0)));
  EXPECT_FALSE(CSearchController::valid_starting_pattern(bases.at(1), bases.at(1), bases.end()));
}

TEST(ValidStartingPattern, ignores_an_N_after_the_unit) {
  const CBases bases("ACNACN");
  EXPECT_TRUE(CSearchController::valid_starting_pattern(bases.unit_copy(0, 2)));
  EXPECT_TRUE(CSearchController::valid_starting_pattern(bases.at(0), bases.at(2), bases.at(2)));
  EXPECT_TRUE(CSearchController::valid_starting_pattern(bases.at(3), bases.at(5), bases.at(5)));
}

TEST(ValidStartingPattern, trusts_the_position_of_the_next_N_that_it_is_given) {
  const CBases bases("ACGACG");
  EXPECT_FALSE(CSearchController::valid_starting_pattern(bases.at(1), bases.at(4), bases.at(1)));
  EXPECT_FALSE(CSearchController::valid_starting_pattern(bases.at(1), bases.at(4), bases.at(3)));
  EXPECT_TRUE(CSearchController::valid_starting_pattern(bases.at(1), bases.at(4), bases.at(4)));
  // One that lies before the unit is of no interest to it.
  EXPECT_TRUE(CSearchController::valid_starting_pattern(bases.at(1), bases.at(4), bases.at(0)));
}

}  // namespace
}  // namespace quorix
