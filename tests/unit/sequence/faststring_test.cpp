#include "sequence/faststring.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// So that memory that cannot be had is refused under the address sanitizer too, as it is without.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}

namespace quorix {
namespace {

void append(faststring& text, std::string_view characters) {
  for (const char character : characters) text.push_back(character);
}

std::string_view view_of(const faststring& text) {
  return {text.data(), text.size()};
}

TEST(Faststring, is_empty_without_a_block_at_first) {
  const faststring text;
  EXPECT_EQ(text.data(), nullptr);
  EXPECT_EQ(text.size(), 0U);
  EXPECT_EQ(text.capacity(), 0U);
}

TEST(Faststring, starts_with_4_bytes_and_doubles_only_when_full) {
  faststring text;
  std::vector<std::size_t> capacities;
  for (int count = 1; count <= 17; ++count) {
    text.push_back('A');
    capacities.push_back(text.capacity());
  }
  // After 1 to 4 characters, 5 to 8, 9 to 16, and 17.
  const std::vector<std::size_t> expected = {4,  4,  4,  4,  8,  8,  8,  8, 16,
                                             16, 16, 16, 16, 16, 16, 16, 32};
  EXPECT_EQ(capacities, expected);
}

TEST(Faststring, keeps_its_characters_when_the_block_grows) {
  faststring text;
  std::string expected;
  for (int count = 0; count < 1000; ++count) {
    const auto character = static_cast<char>('A' + count % 26);
    text.push_back(character);
    expected += character;
  }
  EXPECT_EQ(view_of(text), expected);
}

TEST(Faststring, takes_characters_that_were_written_into_its_spare_room) {
  faststring text;
  EXPECT_EQ(text.spare_room(), 0U);
  text.commit(0);
  append(text, "ACGTA");
  ASSERT_EQ(text.spare_room(), 3U);
  std::memcpy(text.spare_begin(), "CGT", 3);
  text.commit(2);
  EXPECT_EQ(view_of(text), "ACGTACG");
  EXPECT_EQ(text.spare_room(), 1U);
  text.commit(1);
  EXPECT_EQ(view_of(text), "ACGTACGT");
  EXPECT_EQ(text.spare_room(), 0U);
  EXPECT_EQ(text.capacity(), 8U);
}

TEST(Faststring, reserves_exactly_one_byte_more_than_asked_for) {
  faststring text;
  text.reserve(10);
  EXPECT_EQ(text.capacity(), 11U);
  EXPECT_EQ(text.size(), 0U);
  text.reserve(11);
  EXPECT_EQ(text.capacity(), 12U);
}

TEST(Faststring, reserves_one_byte_for_the_terminator_of_nothing) {
  faststring text;
  text.reserve(0);
  EXPECT_EQ(text.capacity(), 1U);
}

TEST(Faststring, leaves_a_block_alone_that_is_large_enough) {
  faststring text;
  text.reserve(10);
  const char* const block = text.data();
  text.reserve(10);
  text.reserve(3);
  EXPECT_EQ(text.capacity(), 11U);
  EXPECT_EQ(text.data(), block);
}

TEST(Faststring, keeps_its_characters_when_more_room_is_reserved) {
  faststring text;
  append(text, "ACGT");
  text.reserve(100'000);
  EXPECT_EQ(view_of(text), "ACGT");
  EXPECT_EQ(text.capacity(), 100'001U);
}

TEST(Faststring, doubles_a_reserved_block_when_that_is_full) {
  faststring text;
  text.reserve(2);
  append(text, "ACG");
  EXPECT_EQ(text.capacity(), 3U);
  text.push_back('T');
  EXPECT_EQ(text.capacity(), 6U);
}

TEST(Faststring, grows_a_full_block_by_exactly_one_byte_for_the_terminator) {
  faststring text;
  append(text, "ACGT");
  ASSERT_EQ(text.capacity(), 4U);
  EXPECT_STREQ(text.c_str(), "ACGT");
  EXPECT_EQ(text.capacity(), 5U);
  EXPECT_EQ(text.size(), 4U);
}

TEST(Faststring, terminates_in_place_when_there_is_room) {
  faststring text;
  append(text, "ACG");
  const char* const block = text.data();
  EXPECT_STREQ(text.c_str(), "ACG");
  EXPECT_EQ(text.capacity(), 4U);
  EXPECT_EQ(text.data(), block);
}

TEST(Faststring, terminates_an_empty_text_in_a_block_of_one_byte) {
  faststring text;
  EXPECT_STREQ(text.c_str(), "");
  EXPECT_EQ(text.capacity(), 1U);
  EXPECT_EQ(text.size(), 0U);
}

TEST(Faststring, overwrites_the_terminator_with_the_next_character) {
  faststring text;
  append(text, "ACGT");
  text.c_str();
  text.push_back('A');
  EXPECT_EQ(view_of(text), "ACGTA");
  EXPECT_EQ(text.capacity(), 5U);
  EXPECT_STREQ(text.c_str(), "ACGTA");
  EXPECT_EQ(text.capacity(), 6U);
}

TEST(Faststring, keeps_the_block_when_it_is_cleared) {
  faststring text;
  append(text, "ACGTACGT");
  const char* const block = text.data();
  text.clear();
  EXPECT_EQ(text.size(), 0U);
  EXPECT_EQ(text.capacity(), 8U);
  EXPECT_EQ(text.data(), block);
  append(text, "TT");
  EXPECT_EQ(view_of(text), "TT");
}

TEST(Faststring, hands_its_block_over_when_it_is_moved) {
  faststring source;
  append(source, "ACGTA");
  const char* const block = source.data();
  faststring made(std::move(source));
  EXPECT_EQ(made.data(), block);
  EXPECT_EQ(view_of(made), "ACGTA");
  EXPECT_EQ(made.capacity(), 8U);

  faststring assigned;
  append(assigned, "TT");
  assigned = std::move(made);
  EXPECT_EQ(assigned.data(), block);
  EXPECT_EQ(view_of(assigned), "ACGTA");
  EXPECT_EQ(assigned.capacity(), 8U);
}

TEST(Faststring, throws_when_there_cannot_be_that_much_memory_and_stays_as_it_was) {
  faststring text;
  append(text, "ACG");
  const volatile std::size_t most = SIZE_MAX;            // the compiler warns of what it knows
  EXPECT_THROW(text.reserve(most), std::bad_alloc);      // no terminator could be counted
  EXPECT_THROW(text.reserve(most - 1), std::bad_alloc);  // no memory is that large
  EXPECT_EQ(view_of(text), "ACG");
  EXPECT_EQ(text.capacity(), 4U);
}

}  // namespace
}  // namespace quorix
