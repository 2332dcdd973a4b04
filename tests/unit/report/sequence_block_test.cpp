#include "report/sequence_block.h"

#include <gtest/gtest.h>

#include <string>

#include "sequence/sequence_mol.h"
#include "support/memory_stream.h"

namespace quorix {
namespace {

using testing::printed_by;

CSequence_Mol record_of(const std::string& name, std::size_t length) {
  CSequence_Mol record;
  record.name = name;
  for (std::size_t i = 0; i < length; ++i) record.sequence.push_back('A');
  return record;
}

TEST(SequenceBlock, begins_with_the_name_and_the_length_in_bases) {
  const CSequence_Mol record = record_of("chr1 of 100%s", 123);
  EXPECT_EQ(printed_by([&](std::FILE* out) { report_sequence_head(out, record); }),
            ">chr1 of 100%s\nsequence length: 123\n");
}

TEST(SequenceBlock, ends_with_the_name) {
  const CSequence_Mol record = record_of("chr1 of 100%s", 123);
  EXPECT_EQ(printed_by([&](std::FILE* out) { report_sequence_foot(out, record); }),
            "# Analysis of sequence \"chr1 of 100%s\" completed.\n");
}

TEST(SequenceBlock, may_have_no_name_and_no_bases) {
  const CSequence_Mol record = record_of("", 0);
  EXPECT_EQ(printed_by([&](std::FILE* out) {
              report_sequence_head(out, record);
              report_sequence_foot(out, record);
            }),
            ">\nsequence length: 0\n# Analysis of sequence \"\" completed.\n");
}

}  // namespace
}  // namespace quorix
