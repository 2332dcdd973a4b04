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
              "search: seeds 23494, extended over edits 308\n"
              "look-ahead: calls 3476, windows 2987, wavefronts 9903, states 122704, unwindowed "
              "runs 110908, runs of N's 37127\n"
              "memo: hits 137, misses 3134, stored 3161, moved 1800\n"
              "paths: misses 1\n",
              "runs: lags 7, words 494, runs 1226\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "asked: batches 667, singles 341\n"
              "group bound:\n"
              "batch bound: tables 1330, rows 50394, cells 257195\n"
              "single bound: tables 637, rows 29093, cells 465488\n");
}

TEST_F(SearchWork, of_short_units_with_mild_penalties) {
  set_penalties(-4, -7);
  require_score(9);
  search_units_from_to(1, 12);
  expect_work(hard_text().substr(1300, 1500), search_imperfect,
              "search: seeds 8267, extended over edits 210\n"
              "look-ahead: calls 2189, windows 1726, wavefronts 5366, states 58121, unwindowed "
              "runs 44447, runs of N's 12639\n"
              "memo: hits 354, misses 2155, stored 2189, moved 1812\n"
              "paths: misses 20, stored 18\n",
              "runs: lags 5, words 92, runs 365\n"
              "lag sieve:\n"
              "asked: batches 145, singles 23\n"
              "group bound:\n"
              "batch bound: tables 276, rows 15680, cells 46090\n"
              "single bound: tables 42, rows 1559, cells 24944\n");
}

TEST_F(SearchWork, of_short_units_with_high_penalties) {
  set_penalties(-14, -12);
  require_score(20);
  search_units_from_to(1, 60);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 26157, extended over edits 726\n"
              "look-ahead: calls 1626, windows 1031, wavefronts 3033, states 21322, unwindowed "
              "runs 30961, runs of N's 7764\n"
              "memo: hits 855, misses 1307, stored 1426, moved 332\n"
              "paths:\n",
              "runs: lags 13, words 1005, runs 1288\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "asked: batches 567, singles 110\n"
              "group bound:\n"
              "batch bound: tables 1134, rows 67299, cells 245620\n"
              "single bound: tables 214, rows 11332, cells 181312\n");
}

TEST_F(SearchWork, of_long_units) {
  search_units_from_to(110, 400);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 8510, extended over edits 75\n"
              "look-ahead: calls 1143, windows 1143, wavefronts 4572, states 62773, unwindowed "
              "runs 59861, runs of N's 36903\n"
              "memo:\n"
              "paths:\n",
              "runs:\n"
              "lag sieve: tables 6, rows 26358, cells 7591104\n"
              "asked: groups 235, batches 167, singles 6\n"
              "group bound: tables 470, rows 133584\n"
              "batch bound: tables 364, rows 76841, cells 2157892\n"
              "single bound: tables 12, rows 1687, cells 107968\n");
}

TEST_F(SearchWork, of_long_units_beside_an_array_of_short_ones) {
  RandomEngine engine(5);
  // One after the other: compilers differ in which side of a sum they draw first.
  std::string text = draw_letters(engine, 700, "ACGT");
  text += draw_array(engine, 1200, 12, 12);
  text += draw_letters(engine, 700, "ACGT");
  search_units_from_to(120, 360);
  expect_work(text, search_imperfect,
              "search: seeds 79255\n"
              "look-ahead:\n"
              "memo:\n"
              "paths:\n",
              "runs:\n"
              "lag sieve: tables 4, rows 11365, cells 2909440\n"
              "asked: groups 1399, batches 114, singles 25\n"
              "group bound: tables 2798, rows 865473\n"
              "batch bound: tables 230, rows 28760, cells 622722\n"
              "single bound: tables 50, rows 5799, cells 371136\n");
}

TEST_F(SearchWork, of_units_too_long_for_the_lag_sieve) {
  search_units_from_to(749, 760);
  expect_work(hard_text().substr(3000), search_imperfect,
              "search: seeds 1639, extended over edits 1\n"
              "look-ahead: calls 242, windows 240, wavefronts 88, states 392, unwindowed runs 879, "
              "runs of N's 1\n"
              "memo:\n"
              "paths:\n",
              "runs:\n"
              "lag sieve: tables 2, rows 11212, cells 3229056\n"
              "asked: groups 31, singles 1\n"
              "group bound: tables 62, rows 35137\n"
              "batch bound:\n"
              "single bound: tables 1, rows 76, cells 19456\n");
}

TEST_F(SearchWork, where_a_score_reduction_limits_extension) {
  global_maximum_scorereduction = 15;
  search_units_from_to(1, 30);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 23494, extended over edits 283\n"
              "look-ahead: calls 1798, all paths 4470, states 136071, runs of N's 13385\n"
              "memo:\n"
              "paths:\n",
              "runs: lags 7, words 494, runs 1226\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "asked: batches 648, singles 335\n"
              "group bound:\n"
              "batch bound: tables 1292, rows 46117, cells 232912\n"
              "single bound: tables 632, rows 27715, cells 443440\n");
}

TEST_F(SearchWork, of_deep_look_aheads) {
  global_maximum_recursion_depth = 9;
  search_units_from_to(2, 9);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 7739, extended over edits 72\n"
              "look-ahead: calls 745, wavefronts 3291, states 57781, unwindowed runs 105309, runs "
              "of N's 9253\n"
              "memo: hits 28, misses 745, stored 745, moved 457\n"
              "paths:\n",
              "runs: lags 7, words 405, runs 1184\n"
              "lag sieve:\n"
              "asked: batches 271, singles 39\n"
              "group bound:\n"
              "batch bound: tables 542, rows 13007, cells 39153\n"
              "single bound: tables 75, rows 2151, cells 34416\n");
}

TEST_F(SearchWork, of_shallow_look_aheads) {
  global_maximum_recursion_depth = 2;
  search_units_from_to(2, 30);
  expect_work(hard_text(), search_imperfect,
              "search: seeds 22741, extended over edits 252\n"
              "look-ahead: calls 3465, windows 3050, wavefronts 2589, states 11638, unwindowed "
              "runs 14952, runs of N's 4767\n"
              "memo: hits 195, misses 3189, stored 3197, moved 1939\n"
              "paths:\n",
              "runs: lags 7, words 405, runs 1184\n"
              "lag sieve: tables 2, rows 23212, cells 742784\n"
              "asked: batches 688, singles 334\n"
              "group bound:\n"
              "batch bound: tables 1372, rows 55786, cells 310573\n"
              "single bound: tables 627, rows 30427, cells 486832\n");
}

TEST_F(SearchWork, along_a_long_array) {
  RandomEngine engine(9);
  search_units_from_to(1, 12);
  expect_work(draw_array(engine, 20'000, 6, 4), search_imperfect,
              "search: seeds 155168, extended over edits 648\n"
              "look-ahead: calls 11764, windows 11041, wavefronts 41977, states 654330, unwindowed "
              "runs 451761, runs of N's 24775\n"
              "memo: hits 2768, misses 11753, stored 11764, moved 1697\n"
              "paths: hits 43, misses 2372, steps 99, stored 2322, placed 3072\n",
              "runs: lags 7, words 1567, runs 2536\n"
              "lag sieve:\n"
              "asked: batches 299, singles 339\n"
              "group bound:\n"
              "batch bound: tables 598, rows 25656, cells 105173\n"
              "single bound: tables 516, rows 24582, cells 393312\n");
}

TEST_F(SearchWork, among_gaps) {
  RandomEngine engine(11);
  std::string text;
  for (int i = 0; i < 12; ++i) text += draw_array(engine, 150, 20, 8) + "NN";
  text += std::string(500, 'N') + draw_array(engine, 300, 20, 5) + text;
  global_Ns_allowed_in_a_row = 3;
  search_units_from_to(1, 40);
  expect_work(text, search_imperfect,
              "search: seeds 60280, extended over edits 777\n"
              "look-ahead: calls 6986, windows 5448, wavefronts 14238, states 149192, unwindowed "
              "runs 124103, runs of N's 11254\n"
              "memo: hits 800, misses 5272, stored 5438, moved 1460\n"
              "paths:\n",
              "runs: lags 7, words 366, runs 1214\n"
              "lag sieve: tables 2, rows 17792, cells 569344\n"
              "asked: batches 824, singles 541\n"
              "group bound:\n"
              "batch bound: tables 1620, rows 137545, cells 721062\n"
              "single bound: tables 991, rows 93294, cells 1492704\n");
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
      "look-ahead: calls 496, windows 344, wavefronts 958, states 10260, unwindowed runs 11603, "
      "runs of N's 3283\n"
      "memo: hits 394, misses 450, stored 475, moved 113\n"
      "paths:\n",
      "runs: lags 60, words 5409, runs 617\n"
      "lag sieve:\n"
      "asked:\n"
      "group bound:\n"
      "batch bound:\n"
      "single bound:\n");
}

}  // namespace
}  // namespace quorix::testing
