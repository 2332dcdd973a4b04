#include "sequence/dna_string.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <string_view>

namespace quorix {
namespace {

struct Complemented {
  std::string text;
  std::int32_t unknown_count;
};

Complemented reverse_complement(std::string_view text) {
  CDnaString result;
  const std::int32_t unknown_count = result.setToReverseComplementOf(CDnaString(text));
  return {std::string(result.view()), unknown_count};
}

struct Rotated {
  std::string text;
  bool is_reducible;
  bool operator==(const Rotated&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Rotated& rotated) {
  return stream << rotated.text << (rotated.is_reducible ? " (reducible)" : "");
}

Rotated least_rotation(std::string_view text) {
  CDnaString result;
  const bool is_reducible = result.setToMinAlphaRepModCyclicPermOf(CDnaString(text));
  return {std::string(result.view()), is_reducible};
}

/// The rule as it is stated: every rotation is compared with the best one so far.
Rotated plain_least_rotation(const std::string& text) {
  const std::string twice = text + text;
  Rotated best{text, false};
  for (std::size_t start = 1; start < text.size(); ++start) {
    const std::string rotation = twice.substr(start, text.size());
    if (rotation < best.text) {
      best.text = rotation;
    } else if (rotation == best.text) {
      best.is_reducible = true;
    }
  }
  return best;
}

/// What a report prints of a unit that counts for both strands: the lesser of both least rotations.
std::string form_of_both_strands(std::string_view unit) {
  return std::min(least_rotation(unit).text, least_rotation(reverse_complement(unit).text).text);
}

TEST(DnaString, is_empty_without_a_block_at_first) {
  const CDnaString text;
  EXPECT_EQ(text.data(), nullptr);
  EXPECT_EQ(text.capacity(), 0U);
  EXPECT_EQ(text.view(), "");
}

TEST(DnaString, starts_with_4_bytes_and_doubles_like_every_buffer) {
  CDnaString text;
  text.push_back('A');
  EXPECT_EQ(text.capacity(), 4U);
  for (const char letter : std::string_view("CGTA")) text.push_back(letter);
  EXPECT_EQ(text.capacity(), 8U);
  EXPECT_EQ(text.view(), "ACGTA");
}

TEST(DnaString, takes_exactly_one_byte_more_than_the_text_it_is_given) {
  const CDnaString made("ACGTA");
  EXPECT_EQ(made.view(), "ACGTA");
  EXPECT_EQ(made.capacity(), 6U);

  CDnaString assigned("AC");
  assigned.assign("ACGTACG");
  EXPECT_EQ(assigned.view(), "ACGTACG");
  EXPECT_EQ(assigned.capacity(), 8U);
}

TEST(DnaString, keeps_a_larger_block_for_a_shorter_text) {
  CDnaString text("ACGTACG");
  const char* const block = text.data();
  text.assign("TT");
  EXPECT_EQ(text.view(), "TT");
  EXPECT_EQ(text.capacity(), 8U);
  EXPECT_EQ(text.data(), block);
}

TEST(DnaString, needs_no_more_room_for_the_terminator_of_an_assigned_text) {
  CDnaString text("ACG");
  EXPECT_STREQ(text.c_str(), "ACG");
  EXPECT_EQ(text.capacity(), 4U);
}

TEST(ReverseComplement, of_ACGTN_is_NACGT_and_of_GATTACA_is_TGTAATC) {
  EXPECT_EQ(reverse_complement("ACGTN").text, "NACGT");
  EXPECT_EQ(reverse_complement("ACGTN").unknown_count, 0);
  EXPECT_EQ(reverse_complement("GATTACA").text, "TGTAATC");
  EXPECT_EQ(reverse_complement("GATTACA").unknown_count, 0);
}

TEST(ReverseComplement, of_ACSW_has_two_letters_without_a_complement) {
  EXPECT_EQ(reverse_complement("ACSW").text, "??GT");
  EXPECT_EQ(reverse_complement("ACSW").unknown_count, 2);
}

TEST(ReverseComplement, maps_every_byte_value_as_the_table_says) {
  // Rows of 16 values. Only upper-case letters have a complement, and S, W and U have none.
  const std::string none(16, '?');
  const std::array<std::string, 16> rows = {
      none,
      none,
      none,
      none,                // control characters, punctuation, digits
      "?TVGH??CD??M?KN?",  // @ABCDEFGHIJKLMNO
      "??Y?A?B??R??????",  // PQRSTUVWXYZ[\]^_
      none,
      none,  // lower case
      none,
      none,
      none,
      none,
      none,
      none,
      none,
      none,
  };
  for (unsigned value = 0; value < 256; ++value) {
    const char expected = rows[value / 16][value % 16];
    const std::string letter(1, static_cast<char>(value));
    const Complemented complemented = reverse_complement(letter);
    EXPECT_EQ(complemented.text, std::string(1, expected)) << "value " << value;
    EXPECT_EQ(complemented.unknown_count, expected == '?' ? 1 : 0) << "value " << value;
  }
}

TEST(ReverseComplement, of_nothing_is_nothing) {
  EXPECT_EQ(reverse_complement("").text, "");
  EXPECT_EQ(reverse_complement("").unknown_count, 0);
}

TEST(ReverseComplement, replaces_what_was_there_and_makes_room_for_exactly_one_byte_more) {
  CDnaString result("C");
  result.setToReverseComplementOf(CDnaString("ACGTN"));
  EXPECT_EQ(result.view(), "NACGT");
  EXPECT_EQ(result.capacity(), 6U);

  result.setToReverseComplementOf(CDnaString("AAC"));
  EXPECT_EQ(result.view(), "GTT");
  EXPECT_EQ(result.capacity(), 6U);
}

TEST(ReverseComplement, of_a_text_may_take_its_place) {
  CDnaString text("AACG");
  text.setToReverseComplementOf(text);
  EXPECT_EQ(text.view(), "CGTT");
}

TEST(LeastRotation, of_GCA_is_AGC_and_of_TTA_is_ATT) {
  EXPECT_EQ(least_rotation("GCA"), (Rotated{"AGC", false}));
  EXPECT_EQ(least_rotation("TTA"), (Rotated{"ATT", false}));
}

TEST(LeastRotation, of_a_single_letter_is_that_letter_and_never_reducible) {
  EXPECT_EQ(least_rotation("A"), (Rotated{"A", false}));
  EXPECT_EQ(least_rotation("T"), (Rotated{"T", false}));
}

TEST(LeastRotation, of_ATAT_of_TATA_and_of_AAAAA_is_reducible) {
  EXPECT_EQ(least_rotation("ATAT"), (Rotated{"ATAT", true}));
  EXPECT_EQ(least_rotation("TATA"), (Rotated{"ATAT", true}));
  EXPECT_EQ(least_rotation("AAAAA"), (Rotated{"AAAAA", true}));
}

TEST(LeastRotation, orders_letters_as_bytes) {
  EXPECT_EQ(least_rotation("NTGCA").text, "ANTGC");  // A before N
  EXPECT_EQ(least_rotation("TNG").text, "GTN");
  EXPECT_EQ(least_rotation("TN").text, "NT");  // N before T
  EXPECT_EQ(least_rotation("\xE9T").text, "T\xE9");
}

TEST(LeastRotation, agrees_with_the_plain_rule_on_all_texts_up_to_length_8) {
  for (std::size_t length = 1; length <= 8; ++length) {
    const std::size_t text_count = std::size_t{1} << (2 * length);
    for (std::size_t number = 0; number < text_count; ++number) {
      std::string text(length, '\0');
      for (std::size_t i = 0; i < length; ++i) text[i] = "ACGT"[(number >> (2 * i)) % 4];
      ASSERT_EQ(least_rotation(text), plain_least_rotation(text)) << "of " << text;
    }
  }
}

TEST(LeastRotation, agrees_with_the_plain_rule_on_random_texts) {
  constexpr unsigned kSeed = 20250117;
  std::mt19937 random(kSeed);
  const auto number_up_to = [&random](std::size_t last) { return random() % (last + 1); };
  for (int round = 0; round < 3000; ++round) {
    // Few letters and short blocks make long common beginnings and reducible texts likely.
    const std::string_view letters = std::string_view("ACGTN").substr(0, 2 + number_up_to(3));
    std::string block(1 + number_up_to(60), '\0');
    for (char& letter : block) letter = letters[number_up_to(letters.size() - 1)];
    std::string text;
    for (std::size_t copies = 1 + number_up_to(4); copies > 0; --copies) text += block;
    if (number_up_to(2) == 0) text[number_up_to(text.size() - 1)] = 'A';
    ASSERT_EQ(least_rotation(text), plain_least_rotation(text)) << "seed " << kSeed << ", " << text;
  }
}

TEST(LeastRotation, replaces_what_was_there) {
  CDnaString result("CCCCCCCCC");
  result.setToMinAlphaRepModCyclicPermOf(CDnaString("GCA"));
  EXPECT_EQ(result.view(), "AGC");
  EXPECT_STREQ(result.c_str(), "AGC");
  EXPECT_EQ(result.capacity(), 10U);
}

TEST(LeastRotation, of_a_text_may_take_its_place) {
  CDnaString text("TATA");
  EXPECT_TRUE(text.setToMinAlphaRepModCyclicPermOf(text));
  EXPECT_EQ(text.view(), "ATAT");
}

TEST(LeastRotation, leaves_the_source_as_it_was) {
  const CDnaString source("GCA");
  CDnaString result;
  result.setToMinAlphaRepModCyclicPermOf(source);
  EXPECT_EQ(source.view(), "GCA");
}

TEST(FormOfBothStrands, of_GTT_is_AAC_of_ACG_is_ACG_and_of_TTTG_is_AAAC) {
  EXPECT_EQ(form_of_both_strands("GTT"), "AAC");
  EXPECT_EQ(form_of_both_strands("ACG"), "ACG");
  EXPECT_EQ(least_rotation("TTTG").text, "GTTT");
  EXPECT_EQ(form_of_both_strands("TTTG"), "AAAC");
}

}  // namespace
}  // namespace quorix
