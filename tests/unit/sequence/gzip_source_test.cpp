#include "sequence/gzip_source.h"

#include <gtest/gtest.h>

#include "support/gzip_text.h"
#include "unpacked_text.h"

namespace quorix {
namespace {

using testing::bgzf;
using testing::bgzf_member;
using testing::deflated;
using testing::four_bytes;
using testing::gzip_header;
using testing::gzip_member;
using testing::gzip_trailer;
using testing::HeaderParts;
using testing::reason_of;
using testing::stored;
using testing::stored_member;
using testing::unpack;
using testing::UnpackedText;
using testing::varied_fasta;
using std::string_literals::operator""s;

constexpr const char* kTwoRecords = ">one\nACGTACGT\n>two\nGATTACA\n";
constexpr const char* kNoEndMark = "The BGZF input has no end mark, so its end may be missing.";

HeaderParts all_header_parts() {
  return {.extra = "XY\3\0abc"s, .has_name = true, .has_comment = true, .has_checksum = true};
}

void expect_text(const std::string& bytes, const std::string& text) {
  for (const std::size_t piece_length : {1U, 2U, 7U, 64U, 4096U, 1'000'000U}) {
    for (const std::size_t room : {1U, 3U, 1000U, 1'000'000U}) {
      if (room < 1000 && text.size() > 100'000) continue;
      const UnpackedText all = unpack(bytes, piece_length, room);
      ASSERT_TRUE(all.is_good) << all.reason;
      ASSERT_TRUE(all.text == text) << "pieces of " << piece_length << ", room " << room;
    }
  }
}

/// Fails with this reason, however the bytes come, after the same text.
void expect_failure(const std::string& bytes, const std::string& text, const std::string& reason) {
  for (const std::size_t piece_length : {1U, 2U, 7U, 1'000'000U}) {
    for (const std::size_t room : {1U, 3U, 1'000'000U}) {
      const UnpackedText all = unpack(bytes, piece_length, room);
      EXPECT_FALSE(all.is_good);
      EXPECT_EQ(all.reason, reason);
      EXPECT_EQ(all.text, text);
    }
  }
}

TEST(GzipSource, gives_the_text_of_a_member) {
  for (const std::string& text : {""s, "A"s, std::string(kTwoRecords), "\0\xff\x1f\x8b"s}) {
    expect_text(gzip_member(text), text);
    expect_text(stored_member(text), text);
  }
}

TEST(GzipSource, gives_long_texts) {
  const std::string varied = varied_fasta(120'000);
  const std::string uniform(120'000, 'A');
  for (const int level : {1, 6, 9}) {
    for (const std::string& text : {varied, uniform}) {
      expect_text(gzip_header() + deflated(text, level) + gzip_trailer(text), text);
    }
  }
  expect_text(stored_member(varied), varied);
}

TEST(GzipSource, gives_texts_of_many_times_every_buffer) {
  const std::string text(5'000'000, 'A');
  const UnpackedText uniform = unpack(gzip_member(text));
  EXPECT_TRUE(uniform.text == text);
  EXPECT_TRUE(uniform.is_good);
  const std::string bases = varied_fasta(1'500'000);
  const UnpackedText varied = unpack(stored_member(bases));
  EXPECT_TRUE(varied.text == bases);
  EXPECT_TRUE(varied.is_good);
}

TEST(GzipSource, takes_headers_with_all_optional_parts) {
  for (int parts = 0; parts < 16; ++parts) {
    const HeaderParts header{.extra = (parts & 1) != 0 ? "XY\3\0abcZZ\0\0"s : "",
                             .has_name = (parts & 2) != 0,
                             .has_comment = (parts & 4) != 0,
                             .has_checksum = (parts & 8) != 0};
    expect_text(gzip_member(kTwoRecords, header), kTwoRecords);
  }
}

TEST(GzipSource, joins_the_texts_of_members_in_a_row) {
  std::string bytes;
  std::string text;
  for (const char* const piece : {">o", "", "ne\nACG", "T\n>two\n", "", "", "GATT\n", ""}) {
    bytes += gzip_member(piece, all_header_parts()) + stored_member(piece);
    text += piece + std::string(piece);
  }
  expect_text(bytes, text);
  expect_text(gzip_member("") + gzip_member(""), "");
}

TEST(GzipSource, hands_over_the_text_of_all_members_at_hand_at_once) {
  const auto source = unpacked(
      std::make_unique<testing::CScriptedSource>(testing::in_pieces(bgzf(kTwoRecords, 5), 1000)));
  std::string block(1000, '\0');
  const CByteSource::ReadResult result = source->read(block.data(), block.size());
  EXPECT_EQ(block.substr(0, result.byte_count), kTwoRecords);
}

TEST(GzipSource, gives_the_text_of_bgzf) {
  for (const std::size_t piece_length : {1U, 5U, 100U}) {
    expect_text(bgzf(kTwoRecords, piece_length), kTwoRecords);
  }
  const std::string text = varied_fasta(400'000);
  const UnpackedText all = unpack(bgzf(text, 65'280));
  EXPECT_TRUE(all.text == text);
  EXPECT_TRUE(all.is_good);
}

TEST(GzipSource, takes_zeros_after_the_last_member_for_padding) {
  for (const std::size_t count : {1U, 2U, 7U, 512U, 300'000U}) {
    const UnpackedText all = unpack(gzip_member(kTwoRecords) + std::string(count, '\0'));
    EXPECT_EQ(all.text, kTwoRecords);
    EXPECT_TRUE(all.is_good);
  }
  expect_text(bgzf(kTwoRecords, 5) + "\0\0"s, kTwoRecords);
}

TEST(GzipSource, fails_where_something_else_follows_a_member) {
  const std::string member = gzip_member(kTwoRecords);
  const std::string offset = std::to_string(member.size());
  const std::string no_member =
      "Gzip input goes on at offset " + offset + " with bytes that begin no member.";
  for (const std::string& bytes : {"\n"s, ">three\nACGT\n"s, "\x1f\x1f"s, "\x8b\x1f"s, "\xff"s}) {
    expect_failure(member + bytes, kTwoRecords, no_member);
  }
  expect_failure(member + "\x1f", kTwoRecords,
                 "Gzip member at offset " + offset + ": the input ends within its header.");
  expect_failure(member + "\0\0"s + member, kTwoRecords,
                 "Gzip input goes on at offset " + std::to_string(member.size() + 2) +
                     " after zeros that should end it.");
}

// Whatever is cut off, the text before the cut is there, and it is no clean end.
TEST(GzipSource, fails_where_it_is_cut_at_any_byte) {
  const std::string header = gzip_header(all_header_parts());
  for (const std::string& data : {deflated(kTwoRecords), stored(kTwoRecords)}) {
    const std::string bytes = header + data + gzip_trailer(kTwoRecords);
    for (std::size_t length = 2; length < bytes.size(); ++length) {
      const std::string part = length < header.size()                 ? "header"
                               : length < header.size() + data.size() ? "compressed data"
                                                                      : "trailer";
      for (const std::size_t piece_length : {1U, 1000U}) {
        const UnpackedText all = unpack(bytes.substr(0, length), piece_length);
        EXPECT_TRUE(std::string(kTwoRecords).starts_with(all.text));
        EXPECT_EQ(all.reason, "Gzip member at offset 0: the input ends within its " + part + ".");
        EXPECT_TRUE(all.is_cut_short) << length;
      }
    }
  }
}

TEST(GzipSource, gives_the_text_before_a_cut) {
  const std::string text = kTwoRecords;
  const std::string data = stored(text);
  expect_failure(gzip_header() + data.substr(0, data.size() - 3), text.substr(0, text.size() - 3),
                 "Gzip member at offset 0: the input ends within its compressed data.");
}

// Two members in a row are two texts as well. Of BGZF the end is marked.
TEST(GzipSource, fails_where_bgzf_is_cut_at_any_byte) {
  const std::string bytes = bgzf(kTwoRecords, 10);
  for (std::size_t length = 2; length < bytes.size(); ++length) {
    const UnpackedText all = unpack(bytes.substr(0, length));
    EXPECT_FALSE(all.is_good) << length;
    EXPECT_NE(all.reason, "");
    EXPECT_TRUE(all.is_cut_short) << length;
    EXPECT_TRUE(std::string(kTwoRecords).starts_with(all.text));
  }
  expect_failure(bgzf_member(kTwoRecords), kTwoRecords, kNoEndMark);
  expect_failure(bgzf_member(kTwoRecords) + "\0"s, kTwoRecords, kNoEndMark);
  expect_text(bgzf_member(kTwoRecords) + gzip_member(""), kTwoRecords);
}

TEST(GzipSource, names_the_member_that_is_damaged) {
  const std::string good = gzip_member("ACGT");
  std::string bad = gzip_member(">GT");
  bad[bad.size() - 5] = static_cast<char>(bad[bad.size() - 5] ^ 1);
  expect_failure(good + bad, "ACGT>GT",
                 "Gzip member at offset " + std::to_string(good.size()) +
                     ": its text does not match its checksum.");
}

TEST(GzipSource, fails_where_the_length_is_wrong) {
  const std::string bytes = gzip_header() + deflated(kTwoRecords) +
                            gzip_trailer(kTwoRecords).substr(0, 4) +
                            four_bytes(std::string(kTwoRecords).size() + 1);
  expect_failure(
      bytes, kTwoRecords,
      "Gzip member at offset 0: its text does not have the length that its trailer states.");
}

TEST(GzipSource, tells_damage_from_a_cut) {
  const std::string member = gzip_member(kTwoRecords);
  for (const std::string& bytes : {gzip_header() + "\7" + gzip_trailer(""), member + "ACGT",
                                   member.substr(0, member.size() - 8) + gzip_trailer("other")}) {
    const UnpackedText all = unpack(bytes);
    EXPECT_FALSE(all.is_good);
    EXPECT_FALSE(all.is_cut_short) << all.reason;
  }
}

TEST(GzipSource, fails_where_the_data_are_damaged) {
  expect_failure(gzip_header() + "\7" + gzip_trailer(""),
                 "",  // a kind of block that does not exist
                 "Gzip member at offset 0: its compressed data are damaged.");
}

// Every bit matters but those of the time, the system, the name and the comment, if the header has
// no checksum.
TEST(GzipSource, notices_every_flipped_bit) {
  const std::string base = bgzf(kTwoRecords, 16) + gzip_member("A", all_header_parts());
  std::size_t unnoticed_count = 0;
  for (std::size_t i = 2; i < base.size(); ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string bytes = base;
      bytes[i] = static_cast<char>(bytes[i] ^ (1 << bit));
      for (const std::size_t piece_length : {1U, 1000U}) {
        const UnpackedText all = unpack(bytes, piece_length, 100);
        if (!all.is_good) continue;
        EXPECT_EQ(all.text, kTwoRecords + "A"s) << "byte " << i << ", bit " << bit;
        ++unnoticed_count;
      }
    }
  }
  EXPECT_GT(unnoticed_count, 0U);
}

TEST(GzipSource, with_a_checksum_of_the_header_notices_every_flipped_bit_of_the_header) {
  const std::string base = gzip_member(kTwoRecords, all_header_parts());
  const std::size_t length = gzip_header(all_header_parts()).size();
  for (std::size_t i = 2; i < length; ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string bytes = base;
      bytes[i] = static_cast<char>(bytes[i] ^ (1 << bit));
      EXPECT_FALSE(unpack(bytes).is_good) << "byte " << i << ", bit " << bit;
    }
  }
}

TEST(GzipSource, stays_at_its_end_and_at_its_failure) {
  for (const bool is_good : {true, false}) {
    const std::string bytes = gzip_member(kTwoRecords) + (is_good ? "" : "\x1f");
    CGzipSource source(std::make_unique<testing::CScriptedSource>(testing::in_pieces(bytes, 5)),
                       "");
    const UnpackedText all = testing::read_all(source, 1000);
    EXPECT_EQ(all.is_good, is_good);
    char character = '\0';
    EXPECT_EQ(source.read(&character, 1).outcome,
              is_good ? CByteSource::Outcome::kEnd : CByteSource::Outcome::kError);
  }
}

}  // namespace
}  // namespace quorix
