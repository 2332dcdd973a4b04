#include "sequence/inflater.h"

#include <gtest/gtest.h>

#include "support/gzip_text.h"
#include "unpacked_text.h"

namespace quorix {
namespace {

using testing::crc32_of;
using testing::deflated;
using testing::stored;
using testing::varied_fasta;
using Outcome = CInflater::Outcome;

struct Inflated {
  std::string text;
  Outcome outcome;
  std::size_t taken;  ///< of all pieces
};

/// Inflates data that come in pieces of one length into rooms of one length, until it ends, fails
/// or needs what there is not.
Inflated inflate_all(CInflater& inflater, std::string_view data, std::size_t piece_length,
                     std::size_t room) {
  std::string block(room, '\0');
  Inflated all{{}, Outcome::kMore, 0};
  inflater.begin();
  while (all.outcome == Outcome::kMore) {
    const std::string_view piece = data.substr(all.taken, piece_length);
    const CInflater::Step step = inflater.inflate(piece, block);
    EXPECT_LE(step.taken, piece.size());
    EXPECT_LE(step.made, room);
    all.outcome = step.outcome;
    all.taken += step.taken;
    all.text.append(block, 0, step.made);
    if (step.taken == 0 && step.made == 0) break;
  }
  return all;
}

TEST(Inflater, makes_the_text_and_stops_after_its_data) {
  CInflater inflater;
  for (const std::string& text : {std::string(), std::string("A"), varied_fasta(100'000)}) {
    for (const std::string& data : {deflated(text), deflated(text, 1), stored(text)}) {
      for (const std::size_t piece_length : {1U, 5U, 4096U, 10'000'000U}) {
        for (const std::size_t room : {1U, 100U, 10'000'000U}) {
          const Inflated all = inflate_all(inflater, data + "trailer!", piece_length, room);
          EXPECT_EQ(all.outcome, Outcome::kEnd);
          EXPECT_EQ(all.taken, data.size());
          EXPECT_TRUE(all.text == text);
          EXPECT_EQ(inflater.checksum(), crc32_of(text));
          EXPECT_EQ(inflater.length(), text.size());
        }
      }
    }
  }
}

TEST(Inflater, makes_what_it_can_of_data_that_are_cut_short) {
  CInflater inflater;
  const std::string text = varied_fasta(300);
  for (const std::string& data : {deflated(text), stored(text)}) {
    for (std::size_t length = 0; length < data.size(); ++length) {
      const Inflated all = inflate_all(inflater, std::string_view(data).substr(0, length), 7, 100);
      EXPECT_EQ(all.outcome, Outcome::kMore);
      EXPECT_EQ(all.taken, length);
      EXPECT_TRUE(text.starts_with(all.text));
    }
  }
}

// Copies from before the beginning of a text would show memory, such as that of the text before.
TEST(Inflater, begins_every_text_with_nothing_to_copy_from) {
  CInflater inflater;
  const std::string secret(40'000, 's');
  EXPECT_EQ(inflate_all(inflater, deflated(secret), 1000, 1000).outcome, Outcome::kEnd);
  // One block with fixed codes: a copy of three characters from one before.
  const Inflated all = inflate_all(inflater, std::string("\x03\x02\x00\x00", 4), 1000, 1000);
  EXPECT_EQ(all.outcome, Outcome::kDamaged);
  EXPECT_EQ(all.text, "");
}

TEST(Inflater, makes_the_same_text_before_a_copy_from_nowhere_in_all_pieces) {
  CInflater inflater;
  const std::string data =
      "\xb3\xcb\xcfK\xe5rtv\x0f\x81" + std::string("a.\xbb\x92\xf2|") + std::string(60, '\n');
  for (const std::size_t piece_length : {1U, 2U, 7U, 64U, 100U}) {
    for (const std::size_t room : {1U, 5U, 100'000U}) {
      const Inflated all = inflate_all(inflater, data, piece_length, room);
      EXPECT_EQ(all.outcome, Outcome::kDamaged);
      EXPECT_EQ(all.text, ">one\nACGTACGTACGT\n>two");
    }
  }
}

TEST(Inflater, tells_damaged_data_after_the_text_before_them) {
  CInflater inflater;
  std::string data = stored(std::string(70'000, 'A'));
  data[5 + 65'535] = '\7';  // the head of the second block
  for (const std::size_t piece_length : {1U, 1000U, 100'000U}) {
    const Inflated all = inflate_all(inflater, data, piece_length, 1000);
    EXPECT_EQ(all.outcome, Outcome::kDamaged);
    EXPECT_TRUE(all.text == std::string(65'535, 'A'));
  }
}

TEST(ExtendChecksum, is_that_of_the_whole_text) {
  const std::string text = varied_fasta(1000);
  EXPECT_EQ(extend_checksum(0, ""), 0U);
  EXPECT_EQ(extend_checksum(0, "123456789"), 0xcbf43926U);
  for (const std::size_t first : {0U, 1U, 17U, 999U}) {
    const std::uint32_t checksum = extend_checksum(0, std::string_view(text).substr(0, first));
    EXPECT_EQ(extend_checksum(checksum, std::string_view(text).substr(first)), crc32_of(text));
  }
}

}  // namespace
}  // namespace quorix
