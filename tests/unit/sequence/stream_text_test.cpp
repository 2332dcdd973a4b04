#include "sequence/stream_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <span>
#include <string>

#include "support/memory_stream.h"

namespace quorix {
namespace {

using testing::CMemoryStream;
using testing::printed_by;

TEST(StreamText, reaches_the_stream_when_it_is_handed_over_or_ends) {
  const CMemoryStream memory;
  {
    std::array<char, 8> block{};
    CStreamText text(memory.stream(), block);
    text.add("ACG");
    text.add('T');
    text.add(3, '*');
    EXPECT_EQ(memory.text(), "");
    text.hand_over();
    EXPECT_EQ(memory.text(), "ACGT***");
    text.hand_over();
    text.add("GG");
    EXPECT_EQ(memory.text(), "ACGT***");
  }
  EXPECT_EQ(memory.text(), "ACGT***GG");
}

TEST(StreamText, fills_its_block_to_the_last_byte) {
  const CMemoryStream memory;
  std::array<char, 4> block{};
  CStreamText text(memory.stream(), block);
  text.add("ACGT");
  EXPECT_EQ(memory.text(), "");
  text.add('N');
  EXPECT_EQ(memory.text(), "ACGT");
}

TEST(StreamText, keeps_the_order_of_pieces_of_any_length) {
  for (std::size_t block_size = 0; block_size <= 5; ++block_size) {
    std::string expected;
    const std::string printed = printed_by([&](std::FILE* stream) {
      std::array<char, 5> block{};
      CStreamText text(stream, std::span(block).first(block_size));
      for (const std::size_t length : {0U, 1U, 3U, 2U, 5U, 4U, 9U, 1U, 1U, 6U, 0U}) {
        const std::string piece(length, static_cast<char>('a' + length));
        text.add(piece);
        text.add('.');
        expected += piece + ".";
      }
    });
    EXPECT_EQ(printed, expected) << "in a block of " << block_size;
  }
}

TEST(StreamText, leaves_a_failed_write_to_the_stream) {
  std::FILE* const full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  {
    std::array<char, 4> block{};
    CStreamText text(full, block);
    for (int i = 0; i < 100'000; ++i) text.add('A');
  }
  EXPECT_NE(std::ferror(full), 0);
  std::fclose(full);
}

}  // namespace
}  // namespace quorix
