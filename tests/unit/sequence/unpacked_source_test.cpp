#include "sequence/unpacked_source.h"

#include <gtest/gtest.h>

#include "support/gzip_text.h"
#include "unpacked_text.h"

namespace quorix {
namespace {

using testing::gzip_member;
using testing::in_pieces;
using testing::read_error;
using testing::unpack;
using testing::UnpackedText;
using std::string_literals::operator""s;

constexpr const char* kPlainLines = ">one\nACGT\n";

TEST(UnpackedSource, of_nothing_is_nothing) {
  EXPECT_EQ(unpacked(nullptr), nullptr);
}

TEST(UnpackedSource, gives_plain_bytes_as_they_are) {
  for (const std::string& bytes :
       {""s, ">"s, ">a"s, "\0"s, "\x1f"s, "\x1f\x1f"s, "\x8b\x1f"s, "\x1f\x9d\x90"s, "\x1e\x8b\b"s,
        "\x1f"s + kPlainLines, ">\x1f\x8b\b\n"s, std::string(kPlainLines)}) {
    for (const std::size_t piece_length : {1U, 2U, 3U, 100U}) {
      for (const std::size_t room : {1U, 2U, 100U}) {
        const UnpackedText all = unpack(bytes, piece_length, room);
        EXPECT_EQ(all.text, bytes);
        EXPECT_TRUE(all.is_good);
      }
    }
  }
}

TEST(UnpackedSource, reads_plain_bytes_straight_to_their_destination) {
  auto scripted = std::make_unique<testing::CScriptedSource>(in_pieces(kPlainLines, 5));
  const testing::CScriptedSource& script = *scripted;
  const auto source = unpacked(std::move(scripted));
  EXPECT_EQ(testing::read_all(*source, 777).text, kPlainLines);
  EXPECT_EQ(script.rooms_asked(), std::vector<std::size_t>(3, 777));  // two pieces and the end
}

TEST(UnpackedSource, reads_nothing_before_it_is_asked) {
  auto scripted = std::make_unique<testing::CScriptedSource>(in_pieces(kPlainLines, 5));
  const testing::CScriptedSource& script = *scripted;
  const auto source = unpacked(std::move(scripted));
  EXPECT_TRUE(script.rooms_asked().empty());
}

TEST(UnpackedSource, unpacks_what_begins_with_the_two_bytes_of_gzip) {
  const std::string bytes = gzip_member(kPlainLines);
  for (const std::size_t piece_length : {1U, 2U, 3U, 100U}) {
    for (const std::size_t room : {1U, 2U, 100U}) {
      const UnpackedText all = unpack(bytes, piece_length, room);
      EXPECT_EQ(all.text, kPlainLines);
      EXPECT_TRUE(all.is_good);
    }
  }
}

TEST(UnpackedSource, takes_two_bytes_of_gzip_for_gzip_that_is_cut_short) {
  for (const std::size_t piece_length : {1U, 2U}) {
    const UnpackedText all = unpack("\x1f\x8b", piece_length);
    EXPECT_EQ(all.text, "");
    EXPECT_EQ(all.reason, "Gzip member at offset 0: the input ends within its header.");
  }
}

TEST(UnpackedSource, fails_where_and_why_its_source_fails) {
  for (const std::string& bytes : {""s, ">"s, ">a\nAC"s, "\x1f"s, "\x1f\x1f"s}) {
    for (const std::size_t piece_length : {1U, 2U}) {
      const UnpackedText all = unpack(in_pieces(bytes, piece_length, read_error("no disk")));
      EXPECT_EQ(all.text, bytes);
      EXPECT_EQ(all.reason, "no disk");
    }
  }
}

TEST(UnpackedSource, of_gzip_fails_why_its_source_fails) {
  const std::string bytes = gzip_member(kPlainLines);
  for (std::size_t length = 2; length <= bytes.size(); ++length) {
    const UnpackedText all = unpack(in_pieces(bytes.substr(0, length), 7, read_error("no disk")));
    EXPECT_EQ(all.reason, "no disk");
    EXPECT_TRUE(std::string(kPlainLines).starts_with(all.text));
  }
}

}  // namespace
}  // namespace quorix
