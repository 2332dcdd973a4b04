// The program's reader against the plain one: the same records, or the same error at the same line,
// whatever the text and however its bytes come.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "reference/plain_fasta.h"
#include "sequence/sequence_mol.h"
#include "support/random_dna.h"
#include "support/scripted_source.h"

namespace quorix::testing {
namespace {

reference::FastaText read_with_program(const std::string& text, std::size_t piece_length) {
  static CSequence_Mol record;
  static CFile input;
  reference::FastaText result{{}, 0};
  input.open(std::make_unique<CScriptedSource>(in_pieces(text, piece_length)));
  while (!input.has_ended_cleanly()) {
    record.readFastaSequence(input);
    if (input.has_format_error()) {
      result.error_line = static_cast<std::int64_t>(input.line_number());
      break;
    }
    result.records.push_back(
        {record.name, std::string(record.sequence.data(), record.sequence.size())});
  }
  return result;
}

void compare_readers(const std::string& text, std::size_t piece_length) {
  const reference::FastaText program = read_with_program(text, piece_length);
  const reference::FastaText plain = reference::read_fasta(text);
  ASSERT_EQ(program.error_line, plain.error_line)
      << ::testing::PrintToString(text) << " in pieces of " << piece_length;
  ASSERT_EQ(program.records, plain.records)
      << ::testing::PrintToString(text) << " in pieces of " << piece_length;
}

TEST(Reader, agrees_with_its_plain_twin_on_all_short_texts) {
  const std::string alphabet = ">#\n\r A7";
  constexpr std::size_t kLongestText = 6;
  std::vector<std::string> texts{""};
  for (std::size_t shorter = 0; texts[shorter].size() < kLongestText; ++shorter) {
    for (const char letter : alphabet) texts.push_back(texts[shorter] + letter);
  }
  ASSERT_EQ(texts.size(), 137257U);
  for (const std::string& text : texts) {
    ASSERT_NO_FATAL_FAILURE(compare_readers(text, 1));
    ASSERT_NO_FATAL_FAILURE(compare_readers(text, 1'000'000));
  }
}

TEST(Reader, agrees_with_its_plain_twin_on_random_texts) {
  constexpr std::uint64_t kCaseCount = 50'000;
  const std::string common = "ACGTNacgtnURYKMSWBDHVX>\n\n\n\r -*#\t";
  for (std::uint64_t seed = 1; seed <= kCaseCount; ++seed) {
    RandomEngine engine(seed);
    std::string text = ">";
    const std::size_t length = draw_between(engine, 0, 80);
    while (text.size() < length) {
      if (draw_chance(engine, 5)) {
        text += "\n>name" + draw_letters(engine, 2, common);
      } else if (draw_chance(engine, 1)) {
        text += static_cast<char>(draw_between(engine, 0, 255));
      } else {
        text += draw_letters(engine, 1, common);
      }
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    ASSERT_NO_FATAL_FAILURE(compare_readers(text, draw_between(engine, 1, 9)));
  }
}

/// A line of up to `longest` characters, with an odd one at some places.
std::string draw_line(RandomEngine& engine, std::size_t longest) {
  const std::string letters = draw_chance(engine, 50) ? "ACGT" : "ACGTNacgtn";
  const std::string odd_letters = "URyk- *\r\t>#7\xC1";
  std::string line = draw_letters(engine, draw_between(engine, 0, longest), letters);
  if (line.empty() || draw_chance(engine, 50)) return line;
  for (std::size_t count = draw_between(engine, 1, 3); count > 0; --count) {
    line[draw_between(engine, 0, line.size() - 1)] =
        odd_letters[draw_between(engine, 0, draw_chance(engine, 90) ? 8 : odd_letters.size() - 1)];
  }
  return line;
}

TEST(Reader, agrees_with_its_plain_twin_on_texts_of_long_lines) {
  constexpr std::uint64_t kCaseCount = 20'000;
  for (std::uint64_t seed = 1; seed <= kCaseCount; ++seed) {
    RandomEngine engine(seed);
    const std::size_t longest = draw_chance(engine, 10) ? 1500 : 90;
    const std::string line_end = draw_chance(engine, 50) ? "\n" : "\r\n";
    std::string text;
    for (std::size_t count = draw_between(engine, 1, 8); count > 0; --count) {
      if (text.empty() || draw_chance(engine, 20)) {
        text += ">" + draw_letters(engine, draw_between(engine, 0, longest), "name >") + line_end;
      }
      text += draw_line(engine, longest) + line_end;
    }
    if (draw_chance(engine, 20)) text.resize(draw_between(engine, 0, text.size()));
    SCOPED_TRACE("seed " + std::to_string(seed));
    ASSERT_NO_FATAL_FAILURE(compare_readers(text, draw_between(engine, 1, 100)));
    ASSERT_NO_FATAL_FAILURE(compare_readers(text, 1'000'000));
  }
}

}  // namespace
}  // namespace quorix::testing
