#include "shapes/words.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace quorix::bench {

namespace {

constexpr std::string_view kLetters = "ACGT";

/// Returns the letter of a number modulo `letter_count`, which is at most four.
char letter_of(int number, int letter_count) {
  return kLetters[static_cast<std::size_t>(number % letter_count)];
}

}  // namespace

std::string copies(std::string_view unit, std::size_t length) {
  std::string bases(length, ' ');
  for (std::size_t i = 0; i < length; ++i) bases[i] = unit[i % unit.size()];
  return bases;
}

std::string substitution_word(std::size_t length, std::string_view letters,
                              const std::string_view (&rules)[4], char first) {
  std::string word(rules[letters.find(first)]);
  // The letter at i decides what is appended.
  for (std::size_t i = 1; word.size() < length; ++i) word += rules[letters.find(word[i])];
  word.resize(length);
  return word;
}

// The Lyndon words whose length divides the order, in their order, one after the other.
std::string de_bruijn_word(std::size_t length, std::string_view letters, std::size_t order) {
  const std::size_t letter_count = letters.size();
  std::string cycle;
  std::vector<std::size_t> lyndon{0};
  while (!lyndon.empty() && cycle.size() < length) {
    if (order % lyndon.size() == 0) {
      for (const std::size_t letter : lyndon) cycle += letters[letter];
    }
    const std::size_t period = lyndon.size();
    while (lyndon.size() < order) lyndon.push_back(lyndon[lyndon.size() - period]);
    while (!lyndon.empty() && lyndon.back() == letter_count - 1) lyndon.pop_back();
    if (!lyndon.empty()) ++lyndon.back();
  }
  return copies(cycle, length);
}

std::string rudin_shapiro_word(std::size_t length) {
  std::string word(length, ' ');
  for (std::size_t i = 0; i < length; ++i) word[i] = letter_of(std::popcount(i & (i >> 1)), 2);
  return word;
}

std::string ruler_word(std::size_t length) {
  std::string word(length, ' ');
  for (std::size_t i = 0; i < length; ++i) word[i] = letter_of(std::countr_zero(i + 1), 4);
  return word;
}

std::string counting_word(std::size_t length) {
  std::string word;
  for (std::size_t number = 1; word.size() < length; ++number) {
    for (int place = static_cast<int>(std::bit_width(number)) - 1; place >= 0; --place) {
      word += kLetters[(number >> place) % 2];
    }
  }
  word.resize(length);
  return word;
}

std::string chirp_word(std::size_t length, std::size_t slowness) {
  std::string word(length, ' ');
  for (std::size_t i = 0; i < length; ++i) word[i] = kLetters[i * i / slowness % 4];
  return word;
}

std::string other_strand(std::string_view bases) {
  std::string strand(bases.rbegin(), bases.rend());
  for (char& base : strand) base = kLetters[3 - kLetters.find(base)];
  return strand;
}

}  // namespace quorix::bench
