#include "support/random_dna.h"

#include <array>

namespace quorix::testing {

namespace {

const std::string kBases = "ACGT";

/// The base, or what a mutation makes of it.
std::string mutate(RandomEngine& engine, char base) {
  switch (draw_between(engine, 0, 3)) {
    case 0:
      return draw_letters(engine, 1, kBases);
    case 1:
      return base + draw_letters(engine, draw_between(engine, 1, 2), kBases);
    case 2:
      return "";
    default:
      return std::string(draw_between(engine, 1, 6), 'N');
  }
}

}  // namespace

std::size_t draw_between(RandomEngine& engine, std::size_t first, std::size_t last) {
  return first + static_cast<std::size_t>(engine() % (last - first + 1));
}

std::int64_t draw_number(RandomEngine& engine, std::size_t first, std::size_t last) {
  return static_cast<std::int64_t>(draw_between(engine, first, last));
}

bool draw_chance(RandomEngine& engine, std::size_t percent) {
  return draw_between(engine, 1, 100) <= percent;
}

std::string draw_letters(RandomEngine& engine, std::size_t length, const std::string& alphabet) {
  std::string letters;
  for (std::size_t i = 0; i < length; ++i) {
    letters += alphabet[draw_between(engine, 0, alphabet.size() - 1)];
  }
  return letters;
}

std::string draw_array(RandomEngine& engine, std::size_t length, std::size_t longest_unit,
                       std::size_t divergence_percent) {
  const std::string unit = draw_letters(engine, draw_between(engine, 1, longest_unit), kBases);
  std::string array;
  for (std::size_t i = 0; array.size() < length; ++i) {
    const char base = unit[i % unit.size()];
    array += draw_chance(engine, divergence_percent) ? mutate(engine, base) : std::string(1, base);
  }
  array.resize(length);
  return array;
}

std::string draw_array_edited_alike(RandomEngine& engine, std::size_t length,
                                    std::size_t unit_length) {
  const std::string unit = draw_letters(engine, unit_length, kBases);
  const std::size_t kind = draw_between(engine, 0, 2);
  const bool is_same_place = draw_chance(engine, 30);
  std::size_t place = draw_between(engine, 0, unit_length - 1);
  std::string array = unit;
  while (array.size() < length) {
    std::string copy = unit;
    if (!is_same_place) place = draw_between(engine, 0, unit_length - 1);
    if (kind == 0) copy.replace(place, 1, draw_letters(engine, 1, kBases));
    if (kind == 1) copy.insert(place, draw_letters(engine, 1, kBases));
    if (kind == 2) copy.erase(place, 1);
    array += copy.empty() ? unit : copy;
  }
  array.resize(length);
  return array;
}

std::string draw_record(RandomEngine& engine, std::size_t longest, std::size_t longest_unit) {
  const std::size_t length = draw_between(engine, 0, longest);
  constexpr std::array<std::size_t, 4> kDivergences{0, 3, 10, 25};
  std::string bases;
  while (bases.size() < length) {
    const std::size_t piece = draw_between(engine, 1, 60);
    switch (draw_between(engine, 0, 5)) {
      case 0:
        bases += draw_letters(engine, piece / 2 + 1, kBases);
        break;
      case 1:
        bases += draw_letters(engine, piece / 2 + 1, "AAC");
        break;
      case 2:
        bases += std::string(draw_between(engine, 1, 7), 'N');
        break;
      case 3:  // the start of the record once more: overlapping and nested candidates
        bases += bases.substr(0, piece);
        bases += draw_letters(engine, 1, kBases);
        break;
      default:
        bases += draw_array(engine, piece, longest_unit,
                            kDivergences[draw_between(engine, 0, kDivergences.size() - 1)]);
    }
  }
  bases.resize(length);
  return bases;
}

}  // namespace quorix::testing
