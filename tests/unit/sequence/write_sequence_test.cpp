#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "record_reading.h"
#include "sequence/sequence_mol.h"
#include "support/memory_stream.h"
#include "support/test_record.h"

namespace quorix {
namespace {

std::string written(std::string_view name, std::string_view bases, int width) {
  CSequence_Mol record;
  testing::set_record(record, name, bases);
  return testing::printed_by(
      [&record, width](std::FILE* stream) { record.writeSequence(stream, width); });
}

/// As many bases as asked for, in which every neighbourhood differs a little.
std::string bases_of_length(std::size_t length) {
  std::string bases;
  for (std::size_t i = 0; i < length; ++i) bases += "ACGTN"[(i * i / 3 + i) % 5];
  return bases;
}

TEST(WriteSequence, writes_the_header_line_alone_for_an_empty_record) {
  EXPECT_EQ(written("empty", "", 80), ">empty\n");
  EXPECT_EQ(written("", "", 80), ">\n");
}

TEST(WriteSequence, writes_up_to_80_bases_in_one_line_of_width_80) {
  for (const std::size_t length : {1U, 79U, 80U}) {
    const std::string bases = bases_of_length(length);
    EXPECT_EQ(written("s", bases, 80), ">s\n" + bases + "\n");
  }
}

TEST(WriteSequence, writes_the_81st_base_in_a_second_line) {
  const std::string bases = bases_of_length(81);
  EXPECT_EQ(written("s", bases, 80), ">s\n" + bases.substr(0, 80) + "\n" + bases.back() + "\n");
}

TEST(WriteSequence, writes_160_bases_in_two_full_lines_and_the_161st_in_a_third) {
  const std::string bases = bases_of_length(161);
  const std::string two_lines = ">s\n" + bases.substr(0, 80) + "\n" + bases.substr(80, 80) + "\n";
  EXPECT_EQ(written("s", bases.substr(0, 160), 80), two_lines);
  EXPECT_EQ(written("s", bases, 80), two_lines + bases.back() + "\n");
}

TEST(WriteSequence, keeps_to_any_width) {
  EXPECT_EQ(written("s", "ACGTA", 1), ">s\nA\nC\nG\nT\nA\n");
  EXPECT_EQ(written("s", "ACGTA", 2), ">s\nAC\nGT\nA\n");
  EXPECT_EQ(written("s", "ACGTA", 1000), ">s\nACGTA\n");
}

TEST(WriteSequence, writes_the_name_as_it_stands) {
  EXPECT_EQ(written("100%s %d \\n >x ", "AC", 80), ">100%s %d \\n >x \nAC\n");
}

TEST(WriteSequence, writes_masked_bases_like_others) {
  EXPECT_EQ(written("s", "ACXXGT", 80), ">s\nACXXGT\n");
}

TEST(WriteSequence, writes_a_name_up_to_its_first_nul) {
  EXPECT_EQ(written(std::string_view("a\0b", 3), "AC", 80), ">a\nAC\n");
}

TEST(WriteSequence, writes_more_than_is_gathered_at_a_time) {
  const std::string bases = bases_of_length(300'000);
  for (const int width : {80, 65'535, 65'536, 65'537, 300'000}) {
    std::string expected = ">s\n";
    for (std::size_t start = 0; start < bases.size(); start += static_cast<std::size_t>(width)) {
      expected += bases.substr(start, static_cast<std::size_t>(width)) + "\n";
    }
    EXPECT_TRUE(written("s", bases, width) == expected) << "in lines of " << width;
  }
}

TEST(WriteSequence, writes_what_reads_back_as_the_same_record) {
  const std::string bases = bases_of_length(333);
  const std::vector<testing::ReadRecord> expected = {{"a name", bases, testing::kCleanEnd, 7}};
  EXPECT_EQ(testing::read_records(written("a name", bases, 80)), expected);
}

}  // namespace
}  // namespace quorix
