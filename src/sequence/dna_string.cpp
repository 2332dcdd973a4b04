#include "sequence/dna_string.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <string>

namespace quorix {

namespace {

constexpr char kNoComplement = '?';

constexpr std::array<char, 256> make_complement_table() {
  std::array<char, 256> complements{};
  for (char& complement : complements) complement = kNoComplement;
  constexpr std::string_view kLetters = "ATCGNRYKMBVDH";
  constexpr std::string_view kComplements = "TAGCNYRMKVBHD";
  for (std::size_t i = 0; i < kLetters.size(); ++i) {
    complements[static_cast<unsigned char>(kLetters[i])] = kComplements[i];
  }
  return complements;
}

constexpr std::array<char, 256> kComplementOf = make_complement_table();

struct LeastRotation {
  std::size_t start;  ///< where in the text the rotation begins, 0-based
  bool is_periodic;   ///< another rotation is equal to it
};

LeastRotation find_least_rotation(std::string_view text) {
  const std::size_t length = text.size();
  std::size_t best = 0;
  std::size_t rival = 1;
  std::size_t matched = 0;
  while (best < length && rival < length && matched < length) {
    const auto best_letter = static_cast<unsigned char>(text[(best + matched) % length]);
    const auto rival_letter = static_cast<unsigned char>(text[(rival + matched) % length]);
    if (best_letter == rival_letter) {
      ++matched;
      continue;
    }
    // The loser, and every start inside what it matched, is beaten by a rotation of the winner.
    (best_letter > rival_letter ? best : rival) += matched + 1;
    if (best == rival) ++rival;
    matched = 0;
  }
  return {std::min(best, rival), matched == length && length > 1};
}

}  // namespace

void CDnaString::assign(std::string_view text) {
  clear();
  reserve(text.size());
  for (const char letter : text) push_back(letter);
}

std::int32_t CDnaString::setToReverseComplementOf(const CDnaString& source) {
  const std::string letters(source.view());
  clear();
  reserve(letters.size());
  std::int32_t unknown_count = 0;
  for (auto letter = letters.rbegin(); letter != letters.rend(); ++letter) {
    const char complement = kComplementOf[static_cast<unsigned char>(*letter)];
    if (complement == kNoComplement) ++unknown_count;
    push_back(complement);
  }
  return unknown_count;
}

bool CDnaString::setToMinAlphaRepModCyclicPermOf(const CDnaString& source) {
  assert(source.size() > 0);
  const LeastRotation least = find_least_rotation(source.view());
  std::string rotated(source.view());
  std::rotate(rotated.begin(), rotated.begin() + static_cast<std::ptrdiff_t>(least.start),
              rotated.end());
  assign(rotated);
  return least.is_periodic;
}

}  // namespace quorix
