// Which records of a file are searched, and which are only read.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "unit/driver/run_folder.h"
#include "unit/driver/run_texts.h"

namespace quorix {
namespace {

using testing::empty_block;
using testing::ProcessResult;

class CSequenceRange : public testing::CInRunFolder {
 protected:
  /// Five records without repeats, of which the last one may be followed by more.
  void write_five_records(const std::string& more = "") const {
    std::string fasta;
    for (const char* const name : {"one", "two", "three", "four", "five"}) {
      fasta += std::string(">") + name + "\nACGTTGCACC\n";
    }
    folder_.write("in.fa", fasta + more);
  }

  /// Expects a run that ends well and reports these blocks, with these progress lines.
  void expect_run(std::initializer_list<const char*> arguments, const std::string& blocks,
                  const std::string& progress) const {
    const ProcessResult result = folder_.run(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(testing::blocks_of(result.out), blocks + testing::kSuccessMark);
    EXPECT_EQ(testing::progress_of(result.err), progress + testing::kGoodBye);
  }
};

using SequenceRange = CSequenceRange;

const std::string kAllBlocks = empty_block("one") + empty_block("two") + empty_block("three") +
                               empty_block("four") + empty_block("five");
const std::string kAllProgress =
    "00.00.00 - #   1 -    1bp - one\n"
    "00.00.00 - #   2 -    1bp - two\n"
    "00.00.00 - #   3 -    1bp - three\n"
    "00.00.00 - #   4 -    1bp - four\n"
    "00.00.00 - #   5 -    1bp - five\n";

TEST_F(SequenceRange, holds_all_records_by_default) {
  write_five_records();
  expect_run({"in.fa"}, kAllBlocks, kAllProgress);
  expect_run({"--lastSeq", "-1", "in.fa"}, kAllBlocks, kAllProgress);
}

TEST_F(SequenceRange, counts_positions_in_the_file_and_holds_both_ends) {
  write_five_records();
  expect_run({"--firstSeq", "2", "--lastSeq", "3", "in.fa"},
             empty_block("two") + empty_block("three"),
             "00.00.00 - #   2 -    1bp - two\n00.00.00 - #   3 -    1bp - three\n");
}

TEST_F(SequenceRange, may_be_one_record) {
  write_five_records();
  expect_run({"--firstSeq", "5", "--lastSeq", "5", "in.fa"}, empty_block("five"),
             "00.00.00 - #   5 -    1bp - five\n");
}

TEST_F(SequenceRange, that_ends_before_the_first_record_searches_nothing_and_ends_well) {
  write_five_records();
  expect_run({"--lastSeq", "0", "in.fa"}, "", "");
}

TEST_F(SequenceRange, that_begins_after_its_end_searches_nothing) {
  write_five_records();
  expect_run({"--firstSeq", "3", "--lastSeq", "2", "in.fa"}, "", "");
}

TEST_F(SequenceRange, that_begins_after_the_file_searches_nothing) {
  write_five_records();
  expect_run({"--firstSeq", "6", "in.fa"}, "", "");
  expect_run({"--firstSeq", "-1", "in.fa"}, "", "");
}

TEST_F(SequenceRange, may_end_after_the_file) {
  write_five_records();
  expect_run({"--lastSeq", "-2", "in.fa"}, kAllBlocks, kAllProgress);
}

TEST_F(SequenceRange, begins_with_the_first_record_also_from_zero) {
  write_five_records();
  expect_run({"--firstSeq", "0", "in.fa"}, kAllBlocks, kAllProgress);
}

TEST_F(SequenceRange, does_not_end_the_reading_at_a_malformed_record_after_it) {
  write_five_records(">six\nAC1GT\n");
  const ProcessResult result = folder_.run({"--firstSeq", "2", "--lastSeq", "2", "in.fa"});
  EXPECT_EQ(result.status, 231);
  // Ten lines of five records and the header of the sixth.
  EXPECT_EQ(testing::progress_of(result.err),
            "00.00.00 - #   2 -    1bp - two\n"
            "\n\n"
            "An error occurred while reading the input file. It might not be a valid fasta file.\n"
            "File position: line 12\n");
  EXPECT_EQ(testing::blocks_of(result.out), empty_block("two"));
}

TEST_F(SequenceRange, does_not_pass_over_a_malformed_record_before_it) {
  folder_.write("in.fa", ">one\nAC1GT\n>two\nACGTTGCACC\n");
  const ProcessResult result = folder_.run({"--firstSeq", "2", "in.fa"});
  EXPECT_EQ(result.status, 231);
  EXPECT_EQ(testing::blocks_of(result.out), "");
}

}  // namespace
}  // namespace quorix
