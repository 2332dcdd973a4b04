// The masked copy of the input.

#include <gtest/gtest.h>

#include <string>

#include "unit/driver/run_folder.h"
#include "unit/driver/run_texts.h"

namespace quorix {
namespace {

using testing::ProcessResult;

using MaskedCopy = testing::CInRunFolder;

TEST_F(MaskedCopy, is_not_written_unless_asked_for) {
  folder_.write("in.fa", ">a\nACACACACAC\n");
  EXPECT_EQ(folder_.run({"in.fa"}).status, 0);
  EXPECT_FALSE(folder_.has("in.fa.masked"));
}

TEST_F(MaskedCopy, holds_the_records_of_the_range_with_repeats_as_X) {
  folder_.write("reads.fasta",
                ">one\nACACACACAC\n>two words\nGTACACACACACTG\n>three\nACGTTGCACC\n>four\nACAC\n");
  const ProcessResult result =
      folder_.run({"--maskX", "--firstSeq", "2", "--lastSeq", "3", "reads.fasta", "report.txt"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(folder_.text("reads.fasta.masked"), ">two words\nGTXXXXXXXXXXTG\n>three\nACGTTGCACC\n");
  EXPECT_FALSE(folder_.has("report.txt.masked"));
}

TEST_F(MaskedCopy, has_lines_of_80_bases) {
  // 30 + 132 + 8 bases in lines of 34; the repeat is at 31 to 162.
  const std::string before = "GATTGCCATGACCTGTTAGGCTTACCGTAG";
  std::string repeat;
  while (repeat.size() < 132) repeat += "ATC";
  const std::string bases = before + repeat + "GGTTACGA";
  ASSERT_EQ(bases.size(), 170U);
  std::string fasta = ">long\n";
  for (std::size_t start = 0; start < bases.size(); start += 34) {
    fasta += bases.substr(start, 34) + "\n";
  }
  folder_.write("in.fa", fasta);

  const ProcessResult result =
      folder_.run({"--maskX", "-M", "exact", "-u", "3", "-U", "3", "in.fa"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(folder_.text("in.fa.masked"), ">long\n" + before + std::string(50, 'X') + "\n" +
                                              std::string(80, 'X') + "\n" + "XXGGTTACGA\n");
}

TEST_F(MaskedCopy, changes_nothing_in_the_report) {
  folder_.write("in.fa", ">a\nGTACACACACACTG\n");
  const std::string masked_blocks = testing::blocks_of(folder_.run({"--maskX", "in.fa"}).out);
  EXPECT_EQ(masked_blocks, testing::blocks_of(folder_.run({"in.fa"}).out));
  EXPECT_TRUE(testing::contains(masked_blocks, "\nACACACACAC\n||||||||||\nACACACACAC\n"));
}

TEST_F(MaskedCopy, replaces_an_older_one) {
  folder_.write("in.fa", ">a\nACGT\n");
  folder_.write("in.fa.masked", "a longer text of an earlier run");
  EXPECT_EQ(folder_.run({"--maskX", "in.fa"}).status, 0);
  EXPECT_EQ(folder_.text("in.fa.masked"), ">a\nACGT\n");
}

TEST_F(MaskedCopy, holds_the_header_of_a_record_without_bases) {
  folder_.write("in.fa", ">empty\n>b%s\nacgu\n");
  EXPECT_EQ(folder_.run({"--maskX", "in.fa"}).status, 0);
  EXPECT_EQ(folder_.text("in.fa.masked"), ">empty\n>b%s\nACGT\n");
}

TEST_F(MaskedCopy, is_empty_when_no_record_is_in_the_range) {
  folder_.write("in.fa", ">a\nACGT\n");
  EXPECT_EQ(folder_.run({"--maskX", "--lastSeq", "0", "in.fa"}).status, 0);
  EXPECT_TRUE(folder_.has("in.fa.masked"));
  EXPECT_EQ(folder_.text("in.fa.masked"), "");
}

TEST_F(MaskedCopy, keeps_the_records_before_a_malformed_one) {
  folder_.write("in.fa", ">a\nACACACACAC\n>b\nAC!\n");
  EXPECT_EQ(folder_.run({"--maskX", "in.fa"}).status, 231);
  EXPECT_EQ(folder_.text("in.fa.masked"), ">a\nXXXXXXXXXX\n");
}

TEST_F(MaskedCopy, that_cannot_be_created_ends_the_run_at_the_first_record) {
  folder_.write("in.fa", ">a\nACGTTGCACC\n>b\nACGTTGCACC\n");
  folder_.make_folder("in.fa.masked");
  const ProcessResult result = folder_.run({"--maskX", "in.fa"});
  EXPECT_EQ(result.status, 153);
  // The report of the record is written first; nothing is said before.
  EXPECT_EQ(testing::blocks_of(result.out), testing::empty_block("a"));
  EXPECT_EQ(testing::progress_of(result.err),
            "00.00.00 - #   1 -    1bp - a\n"
            "Sorry! Failed to open file\n   \"in.fa.masked\"\nas output file.\n" +
                testing::aborted_with(-103));
}

TEST_F(MaskedCopy, that_cannot_be_created_does_no_harm_when_no_record_is_in_the_range) {
  folder_.write("in.fa", ">a\nACGT\n");
  folder_.make_folder("in.fa.masked");
  const ProcessResult result = folder_.run({"--maskX", "--lastSeq", "0", "in.fa"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(testing::blocks_of(result.out), testing::kSuccessMark);
  EXPECT_EQ(testing::progress_of(result.err), testing::kGoodBye);
}

}  // namespace
}  // namespace quorix
