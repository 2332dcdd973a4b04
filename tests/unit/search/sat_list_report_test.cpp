// The report block of one sequence.

#include <list>
#include <string>

#include "support/memory_stream.h"
#include "unit/search/recorded_stream.h"
#include "unit/search/searched_sequence.h"

namespace quorix {
namespace {

using testing::CRecordedStream;
using testing::CSearchedSequence;
using testing::printed_by;

class SatListReport : public testing::CSearchSettings {
 protected:
  SatListReport() {
    global_print_sat_mode = kFormatSputnik;
    global_print_sat_seq_mode = kPrintNoSequence;
    global_report_unit_mode = kUnitAsFound;
  }
};

TEST_F(SatListReport, is_a_head_the_repeats_and_a_closing_line) {
  CSearchedSequence sequence("ACACACACTGTGTGTGTG", "chr1 of something");
  sequence.search.exact_search_2();
  EXPECT_EQ(printed_by([&](std::FILE* out) {
              sequence.search.report_SATList(out, sequence.search.exact_sat_list.sat_list);
            }),
            ">chr1 of something\nsequence length: 18\n"
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
            "dinucleotide 9 : 18 -- length 10 score 8 perfection 100 unit TG\n"
            "# Analysis of sequence \"chr1 of something\" completed.\n");
}

TEST_F(SatListReport, follows_the_order_of_the_list) {
  CSearchedSequence sequence("ACACACACTGTGTGTGTG", "chr1");
  sequence.search.exact_search_2();
  std::list<Csat*> backwards = sequence.search.exact_sat_list.sat_list;
  backwards.reverse();
  EXPECT_EQ(printed_by([&](std::FILE* out) { sequence.search.report_SATList(out, backwards); }),
            ">chr1\nsequence length: 18\n"
            "dinucleotide 9 : 18 -- length 10 score 8 perfection 100 unit TG\n"
            "dinucleotide 1 : 8 -- length 8 score 6 perfection 100 unit AC\n"
            "# Analysis of sequence \"chr1\" completed.\n");
  EXPECT_EQ(backwards.size(), 2U);
}

TEST_F(SatListReport, of_no_repeats_is_head_and_closing_line) {
  CSearchedSequence sequence("", "");
  EXPECT_EQ(printed_by([&](std::FILE* out) { sequence.search.report_SATList(out, {}); }),
            ">\nsequence length: 0\n# Analysis of sequence \"\" completed.\n");
}

TEST_F(SatListReport, prints_percent_signs_of_a_name_as_they_stand) {
  CSearchedSequence sequence("ACGT", "100%s of %n%%");
  EXPECT_EQ(printed_by([&](std::FILE* out) { sequence.search.report_SATList(out, {}); }),
            ">100%s of %n%%\nsequence length: 4\n"
            "# Analysis of sequence \"100%s of %n%%\" completed.\n");
}

TEST_F(SatListReport, is_flushed_at_its_end) {
  CSearchedSequence sequence("ACGT", "chr1");
  const CRecordedStream stream;
  sequence.search.report_SATList(stream.stream(), {});
  EXPECT_EQ(stream.received(),
            ">chr1\nsequence length: 4\n# Analysis of sequence \"chr1\" completed.\n");
}

}  // namespace
}  // namespace quorix
