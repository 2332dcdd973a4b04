// A block of input may end anywhere: no character, line end or step back may notice.

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "record_reading.h"
#include "sequence/file.h"

namespace quorix {
namespace {

using testing::CScriptedFile;
using testing::CScriptedSource;
using testing::in_pieces;
using testing::read_of;

constexpr std::size_t kBlockLength = 1'000'000;

std::string fold_line_ends(std::string_view bytes) {
  std::string folded;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\n' && i > 0 && bytes[i - 1] == '\r') continue;
    folded += bytes[i] == '\r' ? '\n' : bytes[i];
  }
  return folded;
}

/// Reads all of `folded`, and each character from `first_twice` on twice, with a step back between.
void expect_steps_back(CFile& file, std::string_view folded, std::size_t first_twice) {
  std::string once;
  while (once.size() < first_twice) once += static_cast<char>(file.getchar());
  ASSERT_TRUE(folded.starts_with(once));
  std::uint64_t line_number = file.line_number();
  for (std::size_t i = first_twice; i < folded.size(); ++i) {
    const int expected = folded[i];
    ASSERT_EQ(file.getchar(), expected) << "at " << i;
    file.ungetchar();
    ASSERT_EQ(file.line_number(), line_number) << "at " << i;
    ASSERT_EQ(file.getchar(), expected) << "at " << i;
    if (expected == '\n') ++line_number;
    ASSERT_EQ(file.line_number(), line_number) << "at " << i;
  }
  ASSERT_EQ(file.state(), CFile::kGood);
  ASSERT_EQ(file.getchar(), 0);
  ASSERT_EQ(file.state(), 5);
  ASSERT_EQ(file.line_number(), line_number);
}

TEST(FileRefill, leaves_one_step_back_possible_after_every_character) {
  // All line ends, next to each other in all ways, each after and before a letter too.
  const std::string bytes = "A\nC\rG\r\nT\n\nA\n\rC\r\rG\r\r\nT\r\n\nA\r\n\rC\r\n\r\nG";
  for (const std::size_t piece_length : {1U, 2U, 3U, 4U, 5U, 7U, 64U}) {
    CScriptedFile file(in_pieces(bytes, piece_length));
    ASSERT_EQ(file.line_number(), 1U);
    expect_steps_back(file, fold_line_ends(bytes), 0);
  }
}

TEST(FileRefill, keeps_line_ends_whole_where_a_full_block_ends) {
  for (const std::string_view line_end : {"\n", "\r", "\r\n", "\r\r", "\n\r"}) {
    for (std::size_t start = kBlockLength - 2; start <= kBlockLength; ++start) {
      const std::string before(start, 'A');
      const std::string after = std::string(line_end) + "CGT";
      CScriptedFile file(in_pieces(before + after, 2 * kBlockLength));
      expect_steps_back(file, before + fold_line_ends(after), kBlockLength - 10);
    }
  }
}

TEST(FileRefill, reads_blocks_of_1000000_bytes_with_the_last_character_kept_in_front) {
  const std::string bytes(2 * kBlockLength + 100, 'A');
  auto owned_source = std::make_unique<CScriptedSource>(in_pieces(bytes, bytes.size()));
  const CScriptedSource& source = *owned_source;
  CFile file;
  file.open(std::move(owned_source));
  EXPECT_TRUE(source.rooms_asked().empty());

  std::size_t count = 0;
  for (file.getchar(); !file.is_at_end(); file.getchar()) ++count;
  EXPECT_EQ(count, bytes.size());
  // 1000000 bytes, 999999 bytes, the remaining 101, and the end.
  const std::vector<std::size_t> rooms = {1'000'000, 999'999, 999'999, 999'999};
  EXPECT_EQ(source.rooms_asked(), rooms);
}

TEST(FileRefill, keeps_as_many_characters_as_asked_for) {
  CScriptedFile file({read_of("ACGTAC"), read_of("GT")});
  for (int i = 0; i < 6; ++i) file.getchar();
  EXPECT_EQ(file.fill_buffer(4), 4U);
  EXPECT_EQ(file.getchar(), 'G');
  for (int i = 0; i < 5; ++i) file.ungetchar();  // over the G and the four kept
  EXPECT_EQ(file.state(), CFile::kGood);
  for (const int expected : {'G', 'T', 'A', 'C', 'G', 'T'}) EXPECT_EQ(file.getchar(), expected);
}

TEST(FileRefill, keeps_no_more_characters_than_there_are) {
  CScriptedFile file({read_of("AC"), read_of("GT")});
  EXPECT_EQ(file.fill_buffer(7), 0U);
  file.getchar();
  file.getchar();
  EXPECT_EQ(file.fill_buffer(7), 2U);
  EXPECT_EQ(file.getchar(), 'G');
  for (int i = 0; i < 3; ++i) file.ungetchar();
  EXPECT_EQ(file.state(), CFile::kGood);
  EXPECT_EQ(file.getchar(), 'A');
}

TEST(FileRefill, can_forget_all_characters_and_then_not_step_back) {
  CScriptedFile file({read_of("AC"), read_of("GT")});
  file.getchar();
  EXPECT_EQ(file.fill_buffer(0), 0U);
  file.ungetchar();
  EXPECT_EQ(file.state(), CFile::kEnd);
}

TEST(FileRefill, that_reads_nothing_keeps_the_characters_and_sets_fail_and_end) {
  CScriptedFile file({read_of("AC")});
  file.getchar();
  file.getchar();
  EXPECT_EQ(file.fill_buffer(1), 1U);
  EXPECT_EQ(file.state(), 5);
  file.ungetchar();
  EXPECT_EQ(file.getchar(), 'C');
}

}  // namespace
}  // namespace quorix
