#include "sequence/gzip_header.h"

#include <gtest/gtest.h>

#include "support/gzip_text.h"
#include "support/scripted_source.h"

namespace quorix {
namespace {

using testing::gzip_header;
using std::string_literals::operator""s;

/// What became of taking a header.
struct TakenHeader {
  bool is_bgzf;
  std::uint64_t position;  ///< after it
  std::string fault;
};

/// Takes the header at the beginning of `bytes`.
TakenHeader take_header(const std::string& bytes) {
  testing::CScriptedSource source(testing::in_pieces(bytes, 3));
  CCompressedBytes compressed(source, "");
  EXPECT_EQ(compressed.take_byte(), kGzipFirstByte);
  EXPECT_EQ(compressed.take_byte(), kGzipSecondByte);
  TakenHeader taken{false, 0, {}};
  try {
    taken.is_bgzf = take_gzip_header(compressed).is_bgzf;
  } catch (const DamagedMember& member) {
    taken.fault = member.fault;
  } catch (const EndOfCompressedBytes&) {
    taken.fault = "end";
  }
  taken.position = compressed.position();
  return taken;
}

/// A header with this extra field.
std::string with_extra_field(const std::string& field) {
  return gzip_header({.extra = field});
}

TEST(GzipHeader, ends_before_the_data) {
  for (int parts = 0; parts < 16; ++parts) {
    const std::string header = gzip_header({.extra = (parts & 1) != 0 ? "XY\1\0?"s : "",
                                            .has_name = (parts & 2) != 0,
                                            .has_comment = (parts & 4) != 0,
                                            .has_checksum = (parts & 8) != 0});
    const TakenHeader taken = take_header(header + "data");
    EXPECT_EQ(taken.fault, "");
    EXPECT_EQ(taken.position, header.size());
    EXPECT_FALSE(taken.is_bgzf);
  }
}

TEST(GzipHeader, with_a_long_name_is_taken_too) {
  std::string header = gzip_header();
  header[3] = '\x8';
  header += std::string(1'000'000, 'n') + "\0"s;
  EXPECT_EQ(take_header(header + "data").position, header.size());
}

TEST(GzipHeader, of_bgzf_has_a_part_bc_of_two_bytes) {
  EXPECT_TRUE(take_header(with_extra_field("BC\2\0??"s)).is_bgzf);
  EXPECT_TRUE(take_header(with_extra_field("XY\3\0abcBC\2\0??"s)).is_bgzf);
  EXPECT_TRUE(take_header(with_extra_field("BC\2\0??XY\0\0"s)).is_bgzf);
  for (const std::string& field :
       {"BC\3\0???"s, "BC\0\0"s, "CB\2\0??"s, "BX\2\0??"s, "XC\2\0??"s, "XY\6\0BC\2\0??"s}) {
    EXPECT_FALSE(take_header(with_extra_field(field)).is_bgzf) << field;
  }
}

TEST(GzipHeader, with_an_extra_field_that_its_parts_do_not_fill_is_damaged) {
  for (const std::string& field :
       {"B"s, "BC\2"s, "BC\2\0?"s, "XY\0\1"s, "BC\2\0??X"s, "BC\2\0??XY\1\0"s}) {
    EXPECT_EQ(take_header(with_extra_field(field)).fault, "its extra field is damaged");
  }
}

TEST(GzipHeader, of_another_method_or_with_unknown_flags_is_damaged) {
  std::string header = gzip_header();
  for (const char method : {'\0', '\7', '\x9', '\xff'}) {
    header[2] = method;
    EXPECT_EQ(take_header(header).fault, "its compression method is unknown");
  }
  for (const int flag : {0x20, 0x40, 0x80}) {
    header = gzip_header();
    header[3] = static_cast<char>(flag);
    EXPECT_EQ(take_header(header).fault, "its header has unknown flags");
  }
  header = gzip_header();
  header[3] = 1;  // it is a text, which changes nothing
  EXPECT_EQ(take_header(header).fault, "");
}

TEST(GzipHeader, that_does_not_match_its_checksum_is_damaged) {
  std::string header = gzip_header({.has_name = true, .has_checksum = true});
  EXPECT_EQ(take_header(header).fault, "");
  for (const std::size_t i : {4U, 12U}) {
    std::string bad = header;
    bad[i] = static_cast<char>(bad[i] ^ 1);
    EXPECT_EQ(take_header(bad).fault, "its header does not match the checksum of the header");
  }
  for (const std::size_t from_end : {1U, 2U}) {
    std::string bad = header;
    bad[bad.size() - from_end] = static_cast<char>(bad[bad.size() - from_end] ^ 1);
    EXPECT_EQ(take_header(bad).fault, "its header does not match the checksum of the header");
  }
}

TEST(GzipHeader, that_is_cut_short_ends_the_bytes) {
  const std::string header = gzip_header(
      {.extra = "XY\1\0?"s, .has_name = true, .has_comment = true, .has_checksum = true});
  for (std::size_t length = 2; length < header.size(); ++length) {
    EXPECT_EQ(take_header(header.substr(0, length)).fault, "end");
  }
}

}  // namespace
}  // namespace quorix
