// Extension over edits. Unless a test says otherwise a match scores 1 and an edit -6; the first
// copy of the unit scores nothing.

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using ImperfectExtension = testing::CSearchSettings;
using testing::CBases;
using testing::CSearchedSequence;
using testing::extended_left;
using testing::extended_right;
using testing::in_words;

/// A text whose first unit is extended to the right; read backwards, its last unit to the left.
struct ExtensionCase {
  const char* fact;
  const char* text;
  std::size_t unit_length;
  const char* to_the_right;
  const char* to_the_left;
  int mismatch_score = -6;
  int indel_score = -6;
  int depth = 5;

  friend void PrintTo(const ExtensionCase& row, std::ostream* out) { *out << row.text; }
};

void expect_extensions(std::string_view text, std::size_t unit_length, const char* to_the_right,
                       const char* to_the_left) {
  EXPECT_EQ(extended_right(text, unit_length), to_the_right);
  EXPECT_EQ(extended_left(std::string(text.rbegin(), text.rend()), unit_length), to_the_left);
}

class ImperfectExtensionOf : public ImperfectExtension,
                             public ::testing::WithParamInterface<ExtensionCase> {};

TEST_P(ImperfectExtensionOf, a_text_in_both_directions) {
  const ExtensionCase& row = GetParam();
  set_penalties(row.mismatch_score, row.indel_score);
  global_maximum_recursion_depth = row.depth;
  expect_extensions(row.text, row.unit_length, row.to_the_right, row.to_the_left);
}

const ExtensionCase kExtensionCases[] = {
    // Six matches up to the G. A mismatch there leaves 0, six matches after it make 6 again, which
    // only ties; the mismatch at the T is undone with the rest when the text ends.
    {"ends_before_a_mismatch_that_only_wins_back_what_it_cost", "ACACACACGCACACAT", 2,
     "[0,8) AC@0 score 6", "[8,16) CA@14 score 6"},
    // A seventh match makes 7. The mismatch at the T is undone.
    {"keeps_a_mismatch_that_one_match_more_pays_for", "ACACACACGCACACACT", 2,
     "[0,16) AC@0 score 7 mis 1 8M", "[1,17) CA@15 score 7 mis 1 8M"},
    {"leaves_a_seed_at_the_limit_as_it_is", "AC", 2, "[0,2) AC@0 score 0", "[0,2) CA@0 score 0"},

    // 6 - 6 + 9. The inserted base is the T.
    {"inserts_a_base_between_two_unit_characters", "ACGACGACGTACGACGACG", 3,
     "[0,19) ACG@0 score 9 ins 1 9I", "[0,19) GCA@16 score 9 ins 1 9I"},
    // 8 - 6 + 11. An A is missing between 11 and 12, and so is one between 10 and 11 of the other
    // text: on either side the entry stands at the base to the right of the gap.
    {"deletes_a_unit_character_left_of_the_base_where_it_is_noted", "ACGTACGTACGTCGTACGTACGT", 4,
     "[0,23) ACGT@0 score 13 del 1 12D", "[0,23) TGCA@19 score 13 del 1 11D"},

    // With a unit of one base either edit leads to the same place: 6 - 6 + 8.
    {"prefers_a_mismatch_to_an_insertion_of_equal_worth", "AAAAAAAGAAAAAAAA", 1,
     "[0,16) A@0 score 8 mis 1 7M", "[0,16) A@15 score 8 mis 1 8M"},
    // Depth 1: each edit is judged by one run of matches. After three matches comes A where G is
    // expected. Mismatch: 1, then A matches. Insertion: 1, then A for G. Deletion of the G: 1, then
    // A matches, then A for T. After the mismatch, C stands for T and another one leads over GATGAT
    // to 6.
    {"prefers_a_mismatch_to_a_deletion_of_equal_worth", "GATGATAACGATGAT", 3,
     "[0,15) GAT@0 score 6 mis 2 6M 8M", "[0,15) TAG@12 score 6 mis 2 8M 6M", -2, -2, 1},
    // Depth 1, no mismatches. After three matches comes A where G is expected. Insertion of the A:
    // 1, then G matches, then C for A. Deletion of the G: 1, then A matches, then G for T. After
    // the insertion another one, of the C, leads over eight matches to 8.
    {"prefers_an_insertion_to_a_deletion_of_equal_worth", "GATGATAGCATGATGAT", 3,
     "[0,17) GAT@0 score 8 ins 2 6I 8I", "[0,17) TAG@14 score 8 ins 2 10I 8I", -20, -2, 1},

    // Depth 1: the mismatch at 6 leads to 4 - 2 + 1, less than what is there already. The next one,
    // at 8, leads to 3 - 2 + 6.
    {"applies_an_edit_although_it_is_worth_less_than_the_score", "ACACACGCGCACACA", 2,
     "[0,15) AC@0 score 7 mis 2 6M 8M", "[0,15) CA@13 score 7 mis 2 8M 6M", -2, -2, 1},
    {"takes_back_edits_that_lead_to_nothing_better", "ACACACGCG", 2, "[0,6) AC@0 score 4",
     "[3,9) CA@7 score 4", -2, -2, 1},
    // A deletion at 12 leads to 8 - 6 + 4.
    {"takes_back_a_deletion", "ACGTACGTACGTCGTA", 4, "[0,12) ACGT@0 score 8",
     "[4,16) TGCA@12 score 8"},
    // An insertion at 9 leads to 6 - 6 + 3.
    {"takes_back_an_insertion", "ACGACGACGTACG", 3, "[0,9) ACG@0 score 6", "[4,13) GCA@10 score 6"},

    // 6, 0 after the G, 2 before the T, where no edit is allowed.
    {"restores_the_best_state_where_no_edit_is_allowed_and_the_score_is_lower", "ACACACACGCATTTTT",
     2, "[0,8) AC@0 score 6", "[8,16) CA@14 score 6"},
    // As long as the score only ties, the end of the text gives back the six matches after the G.
    {"restores_the_shorter_of_two_equal_states_at_the_end_of_the_text", "ACACACACGCACACA", 2,
     "[0,8) AC@0 score 6", "[7,15) CA@13 score 6"},
    {"gives_back_Ns_at_the_end_of_the_text", "ACNN", 2, "[0,2) AC@0 score 0", "[2,4) CA@2 score 0"},
    // Five N's are one too many, so extension ends before them as it does at the end of a text.
    {"restores_the_shorter_of_two_equal_states_before_a_long_run_of_Ns", "ACACACACGCACACANNNNNC", 2,
     "[0,8) AC@0 score 6", "[13,21) CA@19 score 6"},
    // The two N's neither raise the score nor lower it.
    {"keeps_the_current_one_of_two_equal_states_where_no_edit_is_allowed", "ACNNTT", 2,
     "[0,4) AC@0 score 0 N 2", "[2,6) CA@4 score 0 N 2"},

    {"takes_in_runs_of_as_many_Ns_as_are_allowed", "ACACNNNNACACNC", 2, "[0,14) AC@0 score 7 N 5",
     "[0,14) CA@12 score 7 N 5"},
    {"ends_before_a_longer_run_of_Ns", "ACACACACNNNNNCACACACACAC", 2, "[0,8) AC@0 score 6",
     "[16,24) CA@22 score 6"},
    // The look-ahead sees ten matches after the N's and would choose the mismatch for them.
    {"ends_before_a_longer_run_of_Ns_although_the_look_ahead_passes_it", "ACACACACGNNNNNACACACACAC",
     2, "[0,8) AC@0 score 6", "[16,24) CA@22 score 6"},
};

INSTANTIATE_TEST_SUITE_P(Case, ImperfectExtensionOf, ::testing::ValuesIn(kExtensionCases),
                         [](const auto& row) { return std::string(row.param.fact); });

TEST_F(ImperfectExtension, makes_a_mismatch_of_an_N_where_Ns_are_missense_or_none_is_allowed) {
  const char* const text = "AAAAAAANAAAAAAAA";
  expect_extensions(text, 1, "[0,16) A@0 score 14 N 1", "[0,16) A@15 score 14 N 1");
  global_treat_Ns_as_missense = true;
  expect_extensions(text, 1, "[0,16) A@0 score 8 mis 1 7M", "[0,16) A@15 score 8 mis 1 8M");
  reset();
  global_Ns_allowed_in_a_row = 0;
  expect_extensions(text, 1, "[0,16) A@0 score 8 mis 1 7M", "[0,16) A@15 score 8 mis 1 8M");
}

// The mismatch at 10 is paid for to the right. To the left the one at 1 is tried and taken back:
// the edit list is what it was before.
TEST_F(ImperfectExtension, to_the_left_keeps_the_edits_of_the_extension_to_the_right) {
  const CBases bases("GTACACACACGCACACACA");
  CSearchedSequence any("A");
  Csat sat = bases.unit_copy(2, 2);
  any.search.extend_imperfect_forward(sat, bases.end());
  EXPECT_EQ(in_words(sat, bases.begin()), "[2,19) AC@2 score 8 mis 1 10M");
  any.search.extend_imperfect_backward(sat, bases.before());
  EXPECT_EQ(in_words(sat, bases.begin()), "[2,19) AC@2 score 8 mis 1 10M");
}

TEST_F(ImperfectExtension, to_the_left_appends_its_edits_to_those_of_the_right) {
  set_penalties(-2, -2);
  const CBases bases("ACATACACACATACA");
  CSearchedSequence any("A");
  Csat sat = bases.unit_copy(4, 2);
  any.search.extend_imperfect_forward(sat, bases.end());
  any.search.extend_imperfect_backward(sat, bases.before());
  EXPECT_EQ(in_words(sat, bases.begin()), "[0,15) AC@4 score 7 mis 2 11M 3M");
}

// Where the two cursors stand decides in which phase a repeat is printed and extended further.
TEST_F(ImperfectExtension, leaves_the_cursor_at_the_unit_character_that_comes_next) {
  struct Case {
    const char* text;
    std::size_t unit_length;
    std::ptrdiff_t next;
  };
  const Case cases[] = {
      {"ACACACACGCACACACT", 2, 0},         // 16 bases
      {"ACGACGACGTACGACGACGA", 3, 1},      // 20 bases, one of them inserted
      {"ACGTACGTACGTCGTACGTACGTA", 4, 1},  // 24 bases, one more deleted
      {"ACACACACGCACACAT", 2, 0},          // restored to 8 bases
      {"ACACNNNCAT", 2, 1},                // 4 bases and 3 N's, then C and A
  };
  for (const auto& [text, unit_length, next] : cases) {
    const CBases bases(text);
    CSearchedSequence any("A");
    Csat right = bases.unit_copy(0, unit_length);
    any.search.extend_imperfect_forward(right, bases.end());
    EXPECT_EQ(right.unit_pos_right - right.unit_begin, next) << text;

    const std::string forward(text);
    const CBases mirrored(std::string(forward.rbegin(), forward.rend()));
    Csat left = mirrored.unit_copy(forward.size() - unit_length, unit_length);
    any.search.extend_imperfect_backward(left, mirrored.before());
    EXPECT_EQ(left.unit_end - 1 - left.unit_pos_left, next) << text;
  }
}

}  // namespace
}  // namespace quorix
