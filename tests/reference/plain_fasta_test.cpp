#include "reference/plain_fasta.h"

#include <gtest/gtest.h>

namespace quorix::reference {
namespace {

using Records = std::vector<FastaRecord>;

Records records_of(const std::string& text) {
  const FastaText fasta = read_fasta(text);
  EXPECT_EQ(fasta.error_line, 0) << text;
  return fasta.records;
}

TEST(PlainFasta, reads_every_kind_of_line_end_the_same_way) {
  const Records expected = {{"a b", "ACGT"}, {"c", "GG"}};
  EXPECT_EQ(records_of(">a b\nAC\nGT\n>c\nGG\n"), expected);
  EXPECT_EQ(records_of(">a b\r\nAC\r\nGT\r\n>c\r\nGG"), expected);
  EXPECT_EQ(records_of(">a b\rAC\rGT\r>c\rGG\r"), expected);
  EXPECT_EQ(records_of(">a b\n\nA\tC\n \nG-T*\n>c\nGG\n\n"), expected);
}

TEST(PlainFasta, turns_letters_into_bases) {
  EXPECT_EQ(records_of(">a\nacgtnu\n"), (Records{{"a", "ACGTNT"}}));
  EXPECT_EQ(records_of(">a\nXRYKMSWBDHVrykmswbdhvx"), (Records{{"a", std::string(22, 'N')}}));
}

TEST(PlainFasta, skips_blank_and_comment_lines_before_the_first_header_alone) {
  EXPECT_EQ(records_of("\n # one\n#two\r\n  >a\nA"), (Records{{"a", "A"}}));
  const FastaText fasta = read_fasta(">a\nA\n>b\n#two\nA\n");
  EXPECT_EQ(fasta.records, (Records{{"a", "A"}}));
  EXPECT_EQ(fasta.error_line, 4);
}

TEST(PlainFasta, keeps_empty_records) {
  EXPECT_EQ(records_of(">a\n>b\nA\n>"), (Records{{"a", ""}, {"b", "A"}, {"", ""}}));
  EXPECT_EQ(records_of(">a"), (Records{{"a", ""}}));
}

TEST(PlainFasta, stops_in_the_line_of_a_character_that_is_not_allowed) {
  for (const std::string bad : {"1", "E", "@", "\x80", ">"}) {
    const FastaText fasta = read_fasta(">a\r\nAC\r\nA" + bad);
    EXPECT_EQ(fasta.error_line, 3) << bad;
    EXPECT_TRUE(fasta.records.empty()) << bad;
  }
  EXPECT_EQ(read_fasta(std::string(">a\n\0", 4)).error_line, 2);
}

TEST(PlainFasta, needs_a_header) {
  EXPECT_EQ(read_fasta("").error_line, 1);
  EXPECT_EQ(read_fasta("\n\n").error_line, 3);
  EXPECT_EQ(read_fasta("# only a comment").error_line, 1);
  EXPECT_EQ(read_fasta("\nACGT\n").error_line, 2);
}

TEST(PlainFasta, writes_lines_of_the_given_width) {
  EXPECT_EQ(write_fasta({"a", "ACGTACGT"}, 4), ">a\nACGT\nACGT\n");
  EXPECT_EQ(write_fasta({"a", "ACGTA"}, 4), ">a\nACGT\nA\n");
  EXPECT_EQ(write_fasta({"a", ""}, 4), ">a\n");
  EXPECT_EQ(write_fasta({std::string("a\0b", 3), "A"}, 4), ">a\nA\n");
}

}  // namespace
}  // namespace quorix::reference
