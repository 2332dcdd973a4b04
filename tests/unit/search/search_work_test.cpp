// How much work the searches do. A search that does more than it has to finds the same repeats, so
// the counts are pinned here. They were read off the program, whose results other tests show:
// another count is welcome if it is less work, or pays.

#include <gtest/gtest.h>

#include <string>

#include "support/filter/vector_targets.h"
#include "support/random_dna.h"
#include "unit/search/hard_text.h"
#include "unit/search/searched_sequence.h"
#include "unit/search/work_in_words.h"

namespace quorix::testing {
namespace {

class SearchWork : public CSearchSettings {
 protected:
  /// Searches `text` with the instructions of each kind of processor with vectors, and expects the
  /// counts to be the same everywhere. Narrow vectors stop earlier at the ends of a text, so that
  /// only what the sieves leave is the same with them.
  template <class Search>
  static void expect_work(const std::string& text, const Search& search,
                          const std::string& extensions, const std::string& filter) {
    const std::string seeds = extensions.substr(0, extensions.find_first_of(",\n"));
    const int targets = for_each_vector_target([&](const std::string& target) {
      CSearchedSequence sequence(text);
      search(sequence.search);
      const std::string done = extension_in_words(sequence.search);
      EXPECT_EQ(done.substr(0, done.find_first_of(",\n")), seeds) << target;
      if (!has_wide_vectors(target)) return;
      EXPECT_EQ(done, extensions) << target;
      EXPECT_EQ(in_words(sequence.search.last_seed_filter()->work()), filter) << target;
    });
    EXPECT_GT(targets, 0);
  }

  static void search_imperfect(CSearchController& search) {
    search.complete_imperfect_search(nullptr);
  }
};

TEST_F(SearchWork, of_short_units) {
  search_units_from_to(1, 30);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 23042, extended over edits 222\n"
              "look-ahead: calls 2883, choices 2702, explored 68947, undecided 12, wavefronts 48, "
              "states 818, windows 2702, unwindowed runs 101003, runs of N's 38303\n"
              "memo: hits 100, misses 2677, stored 2702, moved 1839\n"
              "paths: misses 1\n",
              "runs: lags 7, words 494, runs 1226\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "block sieve:\n"
              "asked: groups 190, batches 508, singles 250\n"
              "group bound: tables 366, rows 16586\n"
              "batch bound: tables 1012, rows 29124, cells 123483\n"
              "single bound: tables 469, rows 18146, cells 290336\n");
}

TEST_F(SearchWork, of_short_units_with_mild_penalties) {
  set_penalties(-4, -7);
  require_score(9);
  search_units_from_to(1, 12);
  expect_work(hard_text().substr(1300, 1500), search_imperfect,
              "search: seeds 8267, extended over edits 179\n"
              "look-ahead: calls 1957, choices 1674, explored 34900, windows 1674, unwindowed runs "
              "37888, runs of N's 12065\n"
              "memo: hits 256, misses 1931, stored 1957, moved 368\n"
              "paths: misses 20, stored 18\n",
              "runs: lags 5, words 92, runs 365\n"
              "lag sieve:\n"
              "block sieve:\n"
              "asked: batches 145, singles 23\n"
              "group bound:\n"
              "batch bound: tables 276, rows 12696, cells 36603\n"
              "single bound: tables 43, rows 1265, cells 20240\n");
}

TEST_F(SearchWork, of_short_units_with_high_penalties) {
  set_penalties(-14, -12);
  require_score(20);
  search_units_from_to(1, 60);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 25939, extended over edits 121\n"
              "look-ahead: calls 423, choices 305, explored 4853, windows 305, unwindowed runs "
              "7100, runs of N's 3491\n"
              "memo: hits 79, misses 235, stored 283, moved 54\n"
              "paths:\n",
              "runs: lags 13, words 1005, runs 1288\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "block sieve:\n"
              "asked: groups 152, batches 454, singles 78\n"
              "group bound: tables 292, rows 16798\n"
              "batch bound: tables 908, rows 35055, cells 110987\n"
              "single bound: tables 154, rows 4537, cells 72592\n");
}

TEST_F(SearchWork, of_long_units) {
  search_units_from_to(110, 400);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 1683\n"
              "look-ahead:\n"
              "memo:\n"
              "paths:\n",
              "runs:\n"
              "lag sieve: tables 6, rows 26358, cells 7591104\n"
              "block sieve: pieces 210, sides 4585\n"
              "asked: groups 61, batches 23\n"
              "group bound: tables 109, rows 43288\n"
              "batch bound: tables 46, rows 15865, cells 419522\n"
              "single bound:\n");
}

TEST_F(SearchWork, of_long_units_beside_an_array_of_short_ones) {
  RandomEngine engine(5);
  // One after the other: compilers differ in which side of a sum they draw first.
  std::string text = draw_letters(engine, 700, "ACGT");
  text += draw_array(engine, 1200, 12, 12);
  text += draw_letters(engine, 700, "ACGT");
  search_units_from_to(120, 360);
  expect_work(text, search_imperfect,
              "search:\n"
              "look-ahead:\n"
              "memo:\n"
              "paths:\n",
              "runs:\n"
              "lag sieve: tables 4, rows 11365, cells 2909440\n"
              "block sieve: pieces 227, sides 2548\n"
              "asked:\n"
              "group bound:\n"
              "batch bound:\n"
              "single bound:\n");
}

TEST_F(SearchWork, of_units_too_long_for_the_lag_sieve) {
  search_units_from_to(749, 760);
  expect_work(hard_text().substr(3000), search_imperfect,
              "search: seeds 14, extended over edits 1\n"
              "look-ahead: calls 242, choices 241, explored 353, windows 241, unwindowed runs 110, "
              "runs of N's 1\n"
              "memo: misses 236, stored 229, moved 125\n"
              "paths:\n",
              "runs:\n"
              "lag sieve: tables 2, rows 11212, cells 3229056\n"
              "block sieve: pieces 149, sides 130\n"
              "asked: groups 1, singles 1\n"
              "group bound: tables 2, rows 1204\n"
              "batch bound:\n"
              "single bound: tables 1, rows 76, cells 19456\n");
}

TEST_F(SearchWork, where_a_score_reduction_limits_extension) {
  global_maximum_scorereduction = 15;
  search_units_from_to(1, 30);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 23042, extended over edits 195\n"
              "look-ahead: calls 1344, all paths 3363, states 114969, runs of N's 11904\n"
              "memo:\n"
              "paths:\n",
              "runs: lags 7, words 494, runs 1226\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "block sieve:\n"
              "asked: groups 188, batches 489, singles 244\n"
              "group bound: tables 365, rows 16352\n"
              "batch bound: tables 974, rows 25325, cells 100302\n"
              "single bound: tables 462, rows 16513, cells 264208\n");
}

TEST_F(SearchWork, of_deep_look_aheads) {
  global_maximum_recursion_depth = 9;
  search_units_from_to(2, 9);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 7739, extended over edits 39\n"
              "look-ahead: calls 605, wavefronts 2939, states 55507, unwindowed runs 100292, runs "
              "of N's 8794\n"
              "memo: misses 605, stored 605, moved 463\n"
              "paths:\n",
              "runs: lags 7, words 405, runs 1184\n"
              "lag sieve:\n"
              "block sieve:\n"
              "asked: batches 271, singles 39\n"
              "group bound:\n"
              "batch bound: tables 542, rows 10752, cells 28890\n"
              "single bound: tables 75, rows 1490, cells 23840\n");
}

TEST_F(SearchWork, of_shallow_look_aheads) {
  global_maximum_recursion_depth = 2;
  search_units_from_to(2, 30);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 22289, extended over edits 164\n"
              "look-ahead: calls 2872, choices 2773, explored 7022, windows 2773, unwindowed runs "
              "6281, runs of N's 5116\n"
              "memo: hits 145, misses 2745, stored 2751, moved 1995\n"
              "paths:\n",
              "runs: lags 7, words 405, runs 1184\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "block sieve:\n"
              "asked: groups 194, batches 529, singles 243\n"
              "group bound: tables 375, rows 17886\n"
              "batch bound: tables 1054, rows 33124, cells 157139\n"
              "single bound: tables 460, rows 18604, cells 297664\n");
}

TEST_F(SearchWork, along_a_long_array) {
  RandomEngine engine(9);
  search_units_from_to(1, 12);
  expect_work(draw_array(engine, 20'000, 6, 4), search_imperfect,
              "search: seeds 155168, extended over edits 595\n"
              "look-ahead: calls 11687, choices 11439, explored 374364, undecided 428, wavefronts "
              "1712, states 34037, windows 11439, unwindowed runs 386312, runs of N's 18817\n"
              "memo: hits 2762, misses 11682, stored 11687, moved 1725\n"
              "paths: hits 43, misses 2372, steps 99, stored 2322, placed 3072\n",
              "runs: lags 7, words 1567, runs 2536\n"
              "lag sieve:\n"
              "block sieve:\n"
              "asked: batches 299, singles 339\n"
              "group bound:\n"
              "batch bound: tables 598, rows 21402, cells 89102\n"
              "single bound: tables 537, rows 22136, cells 354176\n");
}

TEST_F(SearchWork, among_gaps) {
  RandomEngine engine(11);
  std::string text;
  for (int i = 0; i < 12; ++i) text += draw_array(engine, 150, 20, 8) + "NN";
  text += std::string(500, 'N') + draw_array(engine, 300, 20, 5) + text;
  global_Ns_allowed_in_a_row = 3;
  search_units_from_to(1, 40);
  expect_work(text, search_imperfect,
              "search: seeds 60196, extended over edits 551\n"
              "look-ahead: calls 6193, choices 5558, explored 74645, windows 5558, unwindowed runs "
              "72292, runs of N's 6543\n"
              "memo: hits 543, misses 4894, stored 4985, moved 1532\n"
              "paths:\n",
              "runs: lags 7, words 366, runs 1214\n"
              "lag sieve: tables 2, rows 17792, cells 569344\n"
              "block sieve:\n"
              "asked: groups 252, batches 703, singles 380\n"
              "group bound: tables 490, rows 40262\n"
              "batch bound: tables 1378, rows 62468, cells 335877\n"
              "single bound: tables 685, rows 38738, cells 619808\n");
}

TEST_F(SearchWork, of_exact_repeats) {
  search_units_from_to(1, 300);
  expect_work(
      hard_text(), [](CSearchController& search) { search.exact_search_2(); },
      "search: seeds 9318, extended exactly 752\n"
      "look-ahead:\n"
      "memo:\n"
      "paths:\n",
      "runs: lags 300, words 26653, runs 606\n"
      "lag sieve:\n"
      "block sieve:\n"
      "asked:\n"
      "group bound:\n"
      "batch bound:\n"
      "single bound:\n");
}

TEST_F(SearchWork, of_exact_repeats_that_are_extended) {
  search_units_from_to(1, 60);
  expect_work(
      hard_text(),
      [](CSearchController& search) { search.search_exact_and_extend_to_imperfect_repeats(); },
      "search: seeds 9281, extended exactly 893, bounded 219, extended over edits 82\n"
      "look-ahead: calls 496, choices 420, explored 6642, windows 420, unwindowed runs 10188, runs "
      "of N's 3831\n"
      "memo: hits 394, misses 450, stored 475, moved 113\n"
      "paths:\n",
      "runs: lags 60, words 5409, runs 617\n"
      "lag sieve:\n"
      "block sieve:\n"
      "asked:\n"
      "group bound:\n"
      "batch bound:\n"
      "single bound:\n");
}

}  // namespace
}  // namespace quorix::testing
