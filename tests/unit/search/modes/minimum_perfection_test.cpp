// Exact repeats reported by their perfection: whole, or broken up where their N's count as
// mismatches.

#include <string>
#include <string_view>

#include "support/memory_stream.h"
#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CRecordedStream;
using testing::CSearchedSequence;
using testing::printed_by;

// Two parts of eight bases around two N's: 16 of 18 bases are matched, 88.9 %.
constexpr char kBrokenByNs[] = "ACACACACNNACACACAC";

class MinimumPerfection : public testing::CSearchSettings {
 protected:
  MinimumPerfection() { set_report_format(); }

  static void set_report_format() {
    search_units_of(2);
    global_print_sat_mode = kFormatSputnik;
    global_print_sat_seq_mode = kPrintNoSequence;
    global_report_unit_mode = kUnitAsFound;
  }

  /// The repeat lines of the exact repeats, without the head.
  static std::string reported(std::string_view bases) {
    CSearchedSequence sequence(bases, "chr1");
    sequence.search.exact_search_2();
    const std::string report = printed_by(
        [&](std::FILE* out) { sequence.search.report_exact_sat_with_minimum_perfection(out); });
    const std::string head = ">chr1\nsequence length: " + std::to_string(bases.size()) + "\n";
    EXPECT_EQ(report.substr(0, head.size()), head);
    return report.substr(head.size());
  }

  /// The best part, from `from` on, of a repeat that covers the whole sequence.
  static Csat best_part(const CSearchedSequence& sequence, const Csat& whole, std::size_t from) {
    Csat best;
    best.score = 99;
    best.mismatches = best.n_count = 9;
    best.missense.push_back({sequence.at(0), 'M'});
    CSearchController::
        find_one_exact_sat_with_minimum_perfection_in_previously_determined_exact_repeat(
            whole, sequence.at(from), best);
    EXPECT_TRUE(best.missense.empty());
    return best;
  }

  /// A repeat of the first unit over the whole sequence.
  static Csat whole_of(const CSearchedSequence& sequence, std::size_t unit_length) {
    Csat whole;
    whole.init_from_unit(sequence.at(0), sequence.at(unit_length));
    whole.end = sequence.end();
    return whole;
  }

  static std::string in_words(const CSearchedSequence& sequence, const Csat& sat) {
    return testing::in_words(sat, sequence.at(0));
  }
};

TEST_F(MinimumPerfection, tells_a_repeat_whole_that_reaches_it) {
  for (const float minimum : {0.0F, 88.8F}) {
    global_perfection_minimum = minimum;
    EXPECT_EQ(reported(kBrokenByNs),
              "dinucleotide 1 : 18 -- length 18 score 14 perfection 89 unit AC\n");
  }
  // 16 of 20 are 80 %.
  global_perfection_minimum = 80.0F;
  EXPECT_EQ(reported("ACACACACNNNNACACACAC"),
            "dinucleotide 1 : 20 -- length 20 score 14 perfection 80 unit AC\n");
}

// What the search kept is not held against the thresholds once more, as parts of it are.
TEST_F(MinimumPerfection, tells_a_repeat_whole_that_reaches_it_exactly_whatever_its_score) {
  CSearchedSequence sequence("ACACACACNNNNACACACAC", "chr1");
  sequence.search.exact_search_2();
  const CThresholdTable out_of_reach({1000, 0, 0.0F}, 2);
  CSearchController::minScores = &out_of_reach;
  global_perfection_minimum = 80.0F;
  EXPECT_EQ(printed_by([&](std::FILE* out) {
              sequence.search.report_exact_sat_with_minimum_perfection(out);
            }),
            ">chr1\nsequence length: 20\n"
            "dinucleotide 1 : 20 -- length 20 score 14 perfection 80 unit AC\n");
}

TEST_F(MinimumPerfection, breaks_a_repeat_up_at_its_Ns) {
  global_perfection_minimum = 90.0F;
  EXPECT_EQ(reported(kBrokenByNs),
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
            "dinucleotide 11 : 18 -- length 8 score 6 perfection 100 unit AC\n");
}

TEST_F(MinimumPerfection, asks_parts_for_the_minimum_score) {
  global_perfection_minimum = 90.0F;
  EXPECT_EQ(reported("ACACACACNNACACACA"),
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n");
}

TEST_F(MinimumPerfection, asks_parts_for_the_minimum_length) {
  global_perfection_minimum = 90.0F;
  require_length(8);
  EXPECT_EQ(reported(kBrokenByNs),
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
            "dinucleotide 11 : 18 -- length 8 score 6 perfection 100 unit AC\n");
  reset();
  set_report_format();
  global_perfection_minimum = 90.0F;
  require_length(9);
  EXPECT_EQ(reported(kBrokenByNs), "");
}

// Where nothing begins that is good enough, there is nothing to hold against thresholds either.
TEST_F(MinimumPerfection, tells_nothing_for_a_base_without_a_part_however_lax_the_thresholds) {
  global_perfection_minimum = 90.0F;
  require_score(-10);
  global_min_score_a = -10;
  require_length(0);
  EXPECT_EQ(reported(kBrokenByNs),
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
            "dinucleotide 11 : 18 -- length 8 score 6 perfection 100 unit AC\n");
}

TEST_F(MinimumPerfection, goes_on_after_a_part_and_one_base_further_where_there_is_none) {
  require_score(2);
  global_perfection_minimum = 100.0F;
  EXPECT_EQ(reported("ACACNNACACACNNACAC"),
            "dinucleotide 1 : 4 -- length 4 score 2 perfection 100 unit AC\n"
            "dinucleotide 7 : 12 -- length 6 score 4 perfection 100 unit AC\n"
            "dinucleotide 15 : 18 -- length 4 score 2 perfection 100 unit AC\n");
}

TEST_F(MinimumPerfection, tells_a_repeat_whole_where_Ns_do_not_count_as_mismatches) {
  global_perfection_minimum = 100.0F;
  for (const int mode : {kNAsNeutral, kNAsMatch}) {
    global_N_and_perfection_mode = mode;
    EXPECT_EQ(reported(kBrokenByNs),
              "dinucleotide 1 : 18 -- length 18 score 14 perfection 100 unit AC\n");
  }
}

TEST_F(MinimumPerfection, never_breaks_up_a_repeat_in_those_modes) {
  CSearchedSequence sequence("ACACTCACAC", "chr1");
  Csat whole = whole_of(sequence, 2);
  whole.mismatches = 1;
  whole.score = 5;
  global_perfection_minimum = 95.0F;
  for (const int mode : {kNAsNeutral, kNAsMatch}) {
    global_N_and_perfection_mode = mode;
    EXPECT_EQ(
        printed_by([&](std::FILE* out) {
          sequence.search
              .find_and_report_all_sat_with_minimum_perfection_in_previously_determined_exact_sat(
                  out, whole);
        }),
        "dinucleotide 1 : 10 -- length 10 score 5 perfection 90 unit AC\n");
  }
}

TEST_F(MinimumPerfection, prints_no_closing_line_and_does_not_flush) {
  CSearchedSequence sequence("ACACACAC", "chr1");
  const CRecordedStream stream;
  sequence.search.report_exact_sat_with_minimum_perfection(stream.stream());
  EXPECT_EQ(stream.received(), "");
  std::fflush(stream.stream());
  EXPECT_EQ(stream.received(), ">chr1\nsequence length: 8\n");
}

// A part scores what it has beyond its first unit. The T costs nothing but perfection: it counts as
// a mismatch, and the C after it is the one that the unit expects there.
TEST_F(MinimumPerfection, counts_a_base_that_is_neither_expected_nor_N_as_a_mismatch) {
  const CSearchedSequence sequence("ACACTCACAC");
  const Csat whole = whole_of(sequence, 2);
  global_perfection_minimum = 85.0F;
  EXPECT_EQ(in_words(sequence, best_part(sequence, whole, 0)), "[0,10) AC@0 score 7 mis 1");
  // 9 of 10 is too little; so is every part that holds the T.
  global_perfection_minimum = 91.0F;
  EXPECT_EQ(in_words(sequence, best_part(sequence, whole, 0)), "[0,4) AC@0 score 2");
}

TEST_F(MinimumPerfection, prefers_the_longer_of_two_parts_of_equal_score) {
  const CSearchedSequence sequence("ACACNN");
  const Csat whole = whole_of(sequence, 2);
  global_perfection_minimum = 60.0F;
  EXPECT_EQ(in_words(sequence, best_part(sequence, whole, 0)), "[0,6) AC@0 score 2 N 2");
  // 4 of 6 is 66.7 %, 4 of 5 is 80 %.
  global_perfection_minimum = 80.0F;
  EXPECT_EQ(in_words(sequence, best_part(sequence, whole, 0)), "[0,5) AC@0 score 2 N 1");
  global_perfection_minimum = 80.1F;
  EXPECT_EQ(in_words(sequence, best_part(sequence, whole, 0)), "[0,4) AC@0 score 2");
}

TEST_F(MinimumPerfection, finds_no_part_that_begins_with_too_many_Ns) {
  const CSearchedSequence sequence("ACNNAC");
  const Csat whole = whole_of(sequence, 2);
  global_perfection_minimum = 60.0F;
  const Csat best = best_part(sequence, whole, 2);
  EXPECT_EQ(best.start, nullptr);
  EXPECT_EQ(best.end, nullptr);
  EXPECT_EQ(best.unit_begin, nullptr);
  EXPECT_EQ(best.n_count, 0);
  EXPECT_EQ(best.mismatches, 0);
  EXPECT_EQ(best.score, -2);
}

TEST_F(MinimumPerfection, of_0_takes_a_part_of_Ns_alone) {
  const CSearchedSequence sequence("ACNNTT");
  Csat whole = whole_of(sequence, 2);
  whole.end = sequence.at(4);
  EXPECT_EQ(in_words(sequence, best_part(sequence, whole, 2)), "[2,4) AC@0 score -2 N 2");
}

// The repeat's unit is ACG at 2, so its first base, C, is the unit's second. From there each base
// of the sequence has its place in the unit.
TEST_F(MinimumPerfection, begins_a_part_in_the_phase_of_its_first_base) {
  const CSearchedSequence sequence("CGACGACGACG");
  Csat whole;
  whole.init_from_unit(sequence.at(2), sequence.at(5));
  whole.start = sequence.at(0);
  whole.end = sequence.end();
  whole.unit_pos_left = sequence.at(2);
  for (std::size_t from = 0; from < 10; ++from) {
    const Csat best = best_part(sequence, whole, from);
    EXPECT_EQ(in_words(sequence, best), "[" + std::to_string(from) + ",11) ACG@2 score " +
                                            std::to_string(11 - 3 - static_cast<int>(from)));
    EXPECT_EQ(best.unit_pos_right, best.unit_begin) << from;
    // The character before that of the first base: G before A, A before C, C before G.
    const std::ptrdiff_t before_first = static_cast<std::ptrdiff_t>(from) % 3;
    EXPECT_EQ(best.unit_pos_left - best.unit_begin, before_first) << from;
  }
}

}  // namespace
}  // namespace quorix
