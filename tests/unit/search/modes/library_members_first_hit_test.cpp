// The first-hit scan: each repeat is reported at once, and the scan goes on after it.

#include <limits>
#include <list>
#include <string>
#include <string_view>

#include "report/sat_pool.h"
#include "support/memory_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CSearchedSequence;
using testing::printed_by;
using testing::Words;

class SimpleSearch : public testing::CSearchSettings {
 protected:
  struct Outcome {
    std::string report;
    Words repeats;
  };

  /// What the scan prints, one line a repeat, and what it keeps.
  static Outcome scan(std::string_view bases) {
    global_print_sat_mode = kFormatSputnik;
    global_print_sat_seq_mode = kPrintNoSequence;
    global_report_unit_mode = kUnitAsFound;
    CSearchedSequence sequence(bases, "chr1");
    const std::string report =
        printed_by([&](std::FILE* out) { sequence.search.simple_imperfect_search(out); });
    return {report, sequence.imperfect()};
  }
};

// The C at 7 belongs to the first repeat, so the second one may not have it.
TEST_F(SimpleSearch, reports_each_repeat_and_does_not_extend_into_the_one_before) {
  require_score(5);
  const auto [report, repeats] = scan("ACACACACGCGCGCG");
  EXPECT_EQ(report,
            ">chr1\nsequence length: 15\n"
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
            "dinucleotide 9 : 15 -- length 7 score 5 perfection 100 unit GC\n");
  EXPECT_EQ(repeats, (Words{"[0,8) AC@0 score 6", "[8,15) GC@8 score 5"}));
}

TEST_F(SimpleSearch, goes_on_at_the_base_after_a_repeat) {
  EXPECT_EQ(scan("AAAAAAACCCCCCC").repeats, (Words{"[0,7) A@0 score 6", "[7,14) C@7 score 6"}));
}

TEST_F(SimpleSearch, takes_the_shortest_unit_that_is_accepted) {
  require_score(4);
  EXPECT_EQ(scan("ATATATATGG").repeats, Words{"[0,8) AT@0 score 6"});
  reset();
  require_score(4);
  search_units_from_to(3, 6);
  EXPECT_EQ(scan("ATATATATGG").repeats, Words{"[0,8) ATAT@0 score 4"});
}

// The unit of nine bases is accepted at base 0, before the run of T at 3 has its turn.
TEST_F(SimpleSearch, takes_the_first_base_that_any_unit_is_accepted_at) {
  require_score(5);
  search_units_from_to(1, 9);
  EXPECT_EQ(scan("ACGTTTTTTACGTTTTTT").repeats, Words{"[0,18) ACGTTTTTT@0 score 9"});
  reset();
  require_score(5);
  search_units_from_to(1, 8);
  EXPECT_EQ(scan("ACGTTTTTTACGTTTTTT").repeats,
            (Words{"[3,9) T@3 score 5", "[12,18) T@12 score 5"}));
}

TEST_F(SimpleSearch, extends_over_edits) {
  const auto [report, repeats] = scan("TACGACGACGTACGACGACGA");
  EXPECT_EQ(repeats, Words{"[1,21) ACG@1 score 10 ins 1 10I"});
  EXPECT_EQ(report,
            ">chr1\nsequence length: 21\n"
            "trinucleotide 2 : 21 -- length 19 score 10 perfection 95 unit ACG\n");
}

TEST_F(SimpleSearch, extends_to_the_left_up_to_the_start_of_the_sequence) {
  // No unit may hold the N, so the repeat is found from base 2 on.
  EXPECT_EQ(scan("ANACACACAC").repeats, Words{"[0,10) AC@2 score 7 N 1"});
}

TEST_F(SimpleSearch, needs_a_base_after_the_first_unit) {
  allow_no_edits();
  require_score(0);
  search_units_of(2);
  EXPECT_EQ(scan("ACG").repeats, Words{"[0,2) AC@0 score 0"});
  EXPECT_EQ(scan("AC").repeats, Words{});
}

TEST_F(SimpleSearch, takes_no_unit_with_an_N_or_of_one_base_repeated) {
  allow_no_edits();
  require_score(0);
  global_Ns_allowed_in_a_row = 0;
  search_units_of(2);
  EXPECT_EQ(scan("AANCG").repeats, Words{});
  EXPECT_EQ(scan("AANCGT").repeats, Words{"[3,5) CG@3 score 0"});
}

TEST_F(SimpleSearch, prints_the_head_alone_where_there_is_nothing_to_find) {
  EXPECT_EQ(scan("").report, ">chr1\nsequence length: 0\n");
  EXPECT_EQ(scan("A").report, ">chr1\nsequence length: 1\n");
  EXPECT_EQ(scan("NNNNNNNN").report, ">chr1\nsequence length: 8\n");
  EXPECT_EQ(scan("ACGTTGCA").report, ">chr1\nsequence length: 8\n");
}

TEST_F(SimpleSearch, finds_nothing_of_unit_length_0) {
  search_units_from_to(0, 1);
  EXPECT_EQ(scan("AAAAAAAA").repeats, Words{"[0,8) A@0 score 7"});
  reset();
  search_units_from_to(0, 0);
  EXPECT_EQ(scan("AAAAAAAA").repeats, Words{});
}

TEST_F(SimpleSearch, is_soon_done_with_unit_lengths_that_no_sequence_has) {
  search_units_from_to(2, std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(scan("TACACACACT").repeats, Words{"[1,9) AC@1 score 6"});
  EXPECT_EQ(scan("").repeats, Words{});
}

TEST_F(SimpleSearch, takes_records_from_the_end_of_the_pool_and_gives_its_spare_one_back) {
  CSearchedSequence sequence("ACACACACTG");
  for (Csat* const record : {sat_alloc.acquire(sequence.at(0), sequence.at(1)),
                             sat_alloc.acquire(sequence.at(0), sequence.at(1))}) {
    sat_alloc.release(record);
  }
  std::list<Csat*> expected = sat_alloc.spare_records();
  Csat* const used = expected.back();
  printed_by([&](std::FILE* out) { sequence.search.simple_imperfect_search(out); });
  EXPECT_EQ(sequence.search.imperfect_sat_list.sat_list, std::list<Csat*>{used});
  expected.pop_back();
  EXPECT_EQ(sat_alloc.spare_records(), expected);
}

}  // namespace
}  // namespace quorix
