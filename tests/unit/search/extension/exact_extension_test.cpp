// Extension over perfect copies. A match scores 1, the first copy nothing; the text has no
// terminator and lies in a block of its own size, so a read beyond a limit at its end would be
// seen.

#include <limits>
#include <string>
#include <string_view>

#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using ExactExtensionForward = testing::CSearchSettings;
using ExactExtensionBackward = testing::CSearchSettings;
using testing::CBases;
using testing::in_words;

constexpr int kHighest = std::numeric_limits<int>::max();
constexpr std::size_t kWholeText = std::string_view::npos;

/// What became of a repeat, and whether it stopped at a base that does not match.
struct Extended {
  bool is_at_mismatch;
  std::string repeat;
  std::ptrdiff_t cursor;  ///< the unit character that comes next, from 0

  bool operator==(const Extended&) const = default;
};

void PrintTo(const Extended& extended, std::ostream* out) {
  *out << extended.is_at_mismatch << ", " << extended.repeat << ", " << extended.cursor;
}

/// The unit is the first `unit_length` bases; nothing from `limit` on may be taken.
Extended extend_right(std::string_view text, std::size_t unit_length,
                      std::size_t limit = kWholeText) {
  const CBases bases(text);
  Csat sat = bases.unit_copy(0, unit_length);
  const bool is_at_mismatch = CSearchController::extend_exact_forward(
      sat, limit == kWholeText ? bases.end() : bases.at(limit));
  EXPECT_EQ(sat.unit_pos_left, sat.unit_end - 1);
  return {is_at_mismatch, in_words(sat, bases.begin()), sat.unit_pos_right - sat.unit_begin};
}

/// The unit is the last `unit_length` bases; nothing up to `limit` may be taken.
Extended extend_left(std::string_view text, std::size_t unit_length,
                     std::size_t limit = kWholeText) {
  const CBases bases(text);
  Csat sat = bases.unit_copy(text.size() - unit_length, unit_length);
  const bool is_at_mismatch = CSearchController::extend_exact_backward(
      sat, limit == kWholeText ? bases.before() : bases.at(limit));
  EXPECT_EQ(sat.unit_pos_right, sat.unit_begin);
  return {is_at_mismatch, in_words(sat, bases.begin()), sat.unit_pos_left - sat.unit_begin};
}

TEST_F(ExactExtensionForward, stops_with_true_at_a_base_that_differs) {
  EXPECT_EQ(extend_right("ACACAG", 2), (Extended{true, "[0,5) AC@0 score 3", 1}));
  EXPECT_EQ(extend_right("ACGACGACT", 3), (Extended{true, "[0,8) ACG@0 score 5", 2}));
  EXPECT_EQ(extend_right("ACG", 2), (Extended{true, "[0,2) AC@0 score 0", 0}));
}

TEST_F(ExactExtensionForward, stops_with_false_at_the_limit) {
  EXPECT_EQ(extend_right("ACACAC", 2), (Extended{false, "[0,6) AC@0 score 4", 0}));
  EXPECT_EQ(extend_right("AAA", 1), (Extended{false, "[0,3) A@0 score 2", 0}));
}

TEST_F(ExactExtensionForward, does_not_take_the_base_at_the_limit) {
  EXPECT_EQ(extend_right("ACACAC", 2, 5), (Extended{false, "[0,5) AC@0 score 3", 1}));
}

TEST_F(ExactExtensionForward, leaves_a_repeat_that_ends_at_the_limit_as_it_is) {
  EXPECT_EQ(extend_right("AC", 2), (Extended{false, "[0,2) AC@0 score 0", 0}));
  EXPECT_EQ(extend_right("ACAC", 2, 2), (Extended{false, "[0,2) AC@0 score 0", 0}));
}

TEST_F(ExactExtensionForward, walks_over_as_many_Ns_as_are_allowed_without_scoring_them) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_right("ACNNACG", 2), (Extended{true, "[0,6) AC@0 score 2 N 2", 0}));
  // An odd number of N's moves the phase: the C after them is the one that is expected.
  EXPECT_EQ(extend_right("ACNCAG", 2), (Extended{true, "[0,5) AC@0 score 2 N 1", 1}));
}

TEST_F(ExactExtensionForward, takes_no_base_of_a_longer_run_of_Ns_and_stops_with_false) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_right("ACACNNNAC", 2), (Extended{false, "[0,4) AC@0 score 2", 0}));
}

TEST_F(ExactExtensionForward, counts_each_run_of_Ns_by_itself) {
  global_Ns_allowed_in_a_row = 1;
  EXPECT_EQ(extend_right("ACNCNC", 2), (Extended{false, "[0,6) AC@0 score 2 N 2", 0}));
}

TEST_F(ExactExtensionForward, takes_a_run_of_Ns_that_reaches_the_limit) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_right("ACACNN", 2), (Extended{false, "[0,6) AC@0 score 2 N 2", 0}));
}

TEST_F(ExactExtensionForward, does_not_count_Ns_from_the_limit_on) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_right("ACNNNN", 2, 4), (Extended{false, "[0,4) AC@0 score 0 N 2", 0}));
}

TEST_F(ExactExtensionForward, takes_an_N_for_a_base_that_differs_where_none_is_allowed) {
  global_Ns_allowed_in_a_row = 0;
  EXPECT_EQ(extend_right("ACANAC", 2), (Extended{true, "[0,3) AC@0 score 1", 1}));
}

TEST_F(ExactExtensionForward, takes_an_N_for_a_base_that_differs_where_Ns_are_missense) {
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(extend_right("ACANAC", 2), (Extended{true, "[0,3) AC@0 score 1", 1}));
}

TEST_F(ExactExtensionForward, allows_as_many_Ns_as_a_setting_can_say) {
  global_Ns_allowed_in_a_row = kHighest;
  EXPECT_EQ(extend_right("ACNNNNNNNCA", 2), (Extended{false, "[0,11) AC@0 score 2 N 7", 1}));
}

TEST_F(ExactExtensionForward, keeps_the_score_at_the_highest_32_bit_number) {
  const CBases bases("AAAA");
  Csat sat = bases.unit_copy(0, 1);
  sat.score = kHighest - 1;
  EXPECT_FALSE(CSearchController::extend_exact_forward(sat, bases.end()));
  EXPECT_EQ(sat.score, kHighest);
  EXPECT_EQ(sat.end, bases.end());
}

TEST_F(ExactExtensionBackward, stops_with_true_at_a_base_that_differs) {
  EXPECT_EQ(extend_left("GACACA", 2), (Extended{true, "[1,6) CA@4 score 3", 0}));
  EXPECT_EQ(extend_left("TCAGCAGCA", 3), (Extended{true, "[1,9) GCA@6 score 5", 0}));
  EXPECT_EQ(extend_left("GAC", 2), (Extended{true, "[1,3) AC@1 score 0", 1}));
}

TEST_F(ExactExtensionBackward, stops_with_false_at_the_limit) {
  EXPECT_EQ(extend_left("ACACAC", 2), (Extended{false, "[0,6) AC@4 score 4", 1}));
  EXPECT_EQ(extend_left("AAA", 1), (Extended{false, "[0,3) A@2 score 2", 0}));
}

TEST_F(ExactExtensionBackward, does_not_take_the_base_at_the_limit) {
  EXPECT_EQ(extend_left("ACACAC", 2, 0), (Extended{false, "[1,6) AC@4 score 3", 0}));
}

TEST_F(ExactExtensionBackward, leaves_a_repeat_that_starts_after_the_limit_as_it_is) {
  EXPECT_EQ(extend_left("AC", 2), (Extended{false, "[0,2) AC@0 score 0", 1}));
  EXPECT_EQ(extend_left("ACAC", 2, 1), (Extended{false, "[2,4) AC@2 score 0", 1}));
}

TEST_F(ExactExtensionBackward, walks_over_as_many_Ns_as_are_allowed_without_scoring_them) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_left("GACNNAC", 2), (Extended{true, "[1,7) AC@5 score 2 N 2", 1}));
  EXPECT_EQ(extend_left("GCANAC", 2), (Extended{true, "[1,6) AC@4 score 2 N 1", 0}));
}

TEST_F(ExactExtensionBackward, takes_no_base_of_a_longer_run_of_Ns_and_stops_with_false) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_left("ACNNNACAC", 2), (Extended{false, "[5,9) AC@7 score 2", 1}));
}

TEST_F(ExactExtensionBackward, counts_each_run_of_Ns_by_itself) {
  global_Ns_allowed_in_a_row = 1;
  EXPECT_EQ(extend_left("ANANAC", 2), (Extended{false, "[0,6) AC@4 score 2 N 2", 1}));
}

TEST_F(ExactExtensionBackward, takes_a_run_of_Ns_that_reaches_the_limit) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_left("NNACAC", 2), (Extended{false, "[0,6) AC@4 score 2 N 2", 1}));
}

TEST_F(ExactExtensionBackward, does_not_count_Ns_up_to_the_limit) {
  global_Ns_allowed_in_a_row = 2;
  EXPECT_EQ(extend_left("NNNNAC", 2, 1), (Extended{false, "[2,6) AC@4 score 0 N 2", 1}));
}

TEST_F(ExactExtensionBackward, takes_an_N_for_a_base_that_differs_where_none_is_allowed) {
  global_Ns_allowed_in_a_row = 0;
  EXPECT_EQ(extend_left("ACNCAC", 2), (Extended{true, "[3,6) AC@4 score 1", 0}));
}

TEST_F(ExactExtensionBackward, takes_an_N_for_a_base_that_differs_where_Ns_are_missense) {
  global_treat_Ns_as_missense = true;
  EXPECT_EQ(extend_left("ACNCAC", 2), (Extended{true, "[3,6) AC@4 score 1", 0}));
}

TEST_F(ExactExtensionBackward, allows_as_many_Ns_as_a_setting_can_say) {
  global_Ns_allowed_in_a_row = kHighest;
  EXPECT_EQ(extend_left("CANNNNNNNAC", 2), (Extended{false, "[0,11) AC@9 score 2 N 7", 0}));
}

TEST_F(ExactExtensionBackward, keeps_the_score_at_the_highest_32_bit_number) {
  const CBases bases("AAAA");
  Csat sat = bases.unit_copy(3, 1);
  sat.score = kHighest - 1;
  EXPECT_FALSE(CSearchController::extend_exact_backward(sat, bases.before()));
  EXPECT_EQ(sat.score, kHighest);
  EXPECT_EQ(sat.start, bases.begin());
}

}  // namespace
}  // namespace quorix
