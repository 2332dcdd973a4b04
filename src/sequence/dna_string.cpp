// The least rotation is found by a duel of two starts, `best` and `rival`. As long as their letters
// agree, neither wins. The first letters that differ rule out a whole stretch of starts at once, so
// the starts pass over the text once and no other rotation is ever built. Two starts that agree
// over the whole length show that the text repeats a shorter unit.

#include "sequence/dna_string.h"

#include <algorithm>
#include <array>
#include <cassert>

namespace quorix {

namespace {

/// Stands for the complement of a letter that has none.
constexpr char kNoComplement = '?';

constexpr std::array<char, 256> make_complement_table() {
  std::array<char, 256> complements{};
  complements.fill(kNoComplement);
  constexpr std::string_view kLetters = "ATCGNRYKMBVDH";
  constexpr std::string_view kComplements = "TAGCNYRMKVBHD";
  for (std::size_t i = 0; i < kLetters.size(); ++i) {
    complements[static_cast<unsigned char>(kLetters[i])] = kComplements[i];
  }
  return complements;
}

constexpr std::array<char, 256> kComplementOf = make_complement_table();

/// The rotation that comes first in byte order.
struct LeastRotation {
  std::size_t start;  ///< where in the text the rotation begins, 0-based
  bool is_periodic;   ///< another rotation equals it
};

LeastRotation find_least_rotation(std::string_view text) {
  const std::size_t length = text.size();
  // Both terms of an index are less than the length.
  const auto letter_at = [text, length](std::size_t index) {
    return static_cast<unsigned char>(text[index < length ? index : index - length]);
  };
  std::size_t best = 0;
  std::size_t rival = 1;
  std::size_t matched = 0;
  while (best < length && rival < length && matched < length) {
    const unsigned char best_letter = letter_at(best + matched);
    const unsigned char rival_letter = letter_at(rival + matched);
    if (best_letter == rival_letter) {
      ++matched;
      continue;
    }
    // A rotation of the winner beats the loser and every start inside the stretch that matched.
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
  text.copy(spare_begin(), text.size());
  commit(text.size());
}

std::int32_t CDnaString::setToReverseComplementOf(const CDnaString& source) {
  become(source);
  std::reverse(data(), data() + size());
  std::int32_t unknown_count = 0;
  for (char* letter = data(); letter != data() + size(); ++letter) {
    *letter = kComplementOf[static_cast<unsigned char>(*letter)];
    if (*letter == kNoComplement) ++unknown_count;
  }
  return unknown_count;
}

bool CDnaString::setToMinAlphaRepModCyclicPermOf(const CDnaString& source) {
  assert(source.size() > 0);
  become(source);
  const LeastRotation least = find_least_rotation(view());
  std::rotate(data(), data() + least.start, data() + size());
  return least.is_periodic;
}

void CDnaString::become(const CDnaString& source) {
  if (this == &source) {
    reserve(size());
  } else {
    assign(source.view());
  }
}

}  // namespace quorix
