#include "sequence/compressed_bytes.h"

#include <gtest/gtest.h>

#include "support/scripted_source.h"

namespace quorix {
namespace {

using testing::CScriptedSource;
using testing::in_pieces;

TEST(CompressedBytes, begin_with_those_that_are_known) {
  CScriptedSource source(in_pieces("cdef", 3));
  CCompressedBytes bytes(source, "ab");
  EXPECT_EQ(bytes.unread(), "ab");
  EXPECT_TRUE(bytes.fill());
  EXPECT_EQ(bytes.unread(), "ab");
  bytes.take(2);
  EXPECT_EQ(bytes.unread(), "");
  EXPECT_TRUE(bytes.fill());
  EXPECT_EQ(bytes.unread(), "cde");
  bytes.take(1);
  EXPECT_EQ(bytes.unread(), "de");
  EXPECT_EQ(bytes.position(), 3U);
}

TEST(CompressedBytes, come_one_by_one_as_numbers_without_a_sign) {
  CScriptedSource source(in_pieces("\x7f\x80\xff", 1));
  CCompressedBytes bytes(source, "");
  EXPECT_EQ(bytes.take_byte(), 0x7fU);
  EXPECT_EQ(bytes.take_byte(), 0x80U);
  EXPECT_EQ(bytes.take_byte(), 0xffU);
  EXPECT_EQ(bytes.position(), 3U);
  EXPECT_THROW(static_cast<void>(bytes.take_byte()), EndOfCompressedBytes);
  EXPECT_EQ(bytes.position(), 3U);
}

TEST(CompressedBytes, may_be_known_in_any_number) {
  const std::string known(1'000'000, 'k');
  CScriptedSource source({});
  CCompressedBytes bytes(source, known);
  EXPECT_TRUE(bytes.unread() == known);
}

TEST(CompressedBytes, do_not_go_on_after_their_end) {
  CScriptedSource source({testing::read_of("a"), testing::end_of_input(), testing::read_of("b")});
  CCompressedBytes bytes(source, "");
  EXPECT_EQ(bytes.take_byte(), unsigned{'a'});
  EXPECT_FALSE(bytes.fill());
  EXPECT_FALSE(bytes.fill());
  EXPECT_EQ(source.rooms_asked().size(), 2U);
}

TEST(CompressedBytes, fail_with_the_reason_of_their_source) {
  CScriptedSource source({testing::read_error("no disk")});
  CCompressedBytes bytes(source, "");
  try {
    static_cast<void>(bytes.fill());
    FAIL() << "no failure";
  } catch (const UnreadableInput& input) {
    EXPECT_EQ(input.reason, "no disk");
  }
}

}  // namespace
}  // namespace quorix
