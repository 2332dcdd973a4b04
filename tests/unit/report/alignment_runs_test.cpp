// Alignments are put together run by run; column by column they have to come out the same.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "repeat_scene.h"
#include "report/alignment.h"

namespace quorix {
namespace {

using testing::CRepeatScene;

/// The three lines, one below the other.
std::string joined(const Alignment& alignment) {
  return alignment.bases + "\n" + alignment.marks + "\n" + alignment.unit + "\n";
}

Alignment aligned(const CRepeatScene& scene) {
  const faststring& text = scene.record.sequence;
  return align(scene.repeat, {text.data(), text.data() + text.size()}, 0);
}

/// The same, column by column.
Alignment aligned_by_columns(const CRepeatScene& scene) {
  const Csat& repeat = scene.repeat;
  Alignment alignment;
  std::size_t next_edit = 0;
  const char* unit = repeat.unit_pos_left;
  const auto take_unit = [&] {
    unit = unit + 1 == repeat.unit_end ? repeat.unit_begin : unit + 1;
    return *unit;
  };
  for (const char* base = repeat.start; base != repeat.end;) {
    const bool is_edit =
        next_edit < repeat.missense.size() && repeat.missense[next_edit].position == base;
    const char kind = is_edit ? repeat.missense[next_edit++].kind : ' ';
    alignment.unit += kind == 'I' ? '-' : take_unit();
    alignment.marks += is_edit ? ' ' : *base == 'N' ? '*' : '|';
    alignment.bases += kind == 'D' ? '-' : *base++;
  }
  return alignment;
}

TEST(AlignmentRuns, of_every_length_begin_at_every_character_of_the_unit) {
  const std::string unit = "ACGTNAACCGG";
  for (std::int64_t unit_length = 1; unit_length <= 11; ++unit_length) {
    for (std::size_t length = static_cast<std::size_t>(unit_length); length <= 50; ++length) {
      std::string bases = unit.substr(0, static_cast<std::size_t>(unit_length));
      while (bases.size() < length) bases += bases[bases.size() - bases.size() / 2];
      CRepeatScene scene("", bases, "", 1);
      for (std::int64_t first = 1; first <= unit_length; ++first) {
        scene.set_unit(1, unit_length, first);
        ASSERT_EQ(joined(aligned(scene)), joined(aligned_by_columns(scene)));
      }
    }
  }
}

TEST(AlignmentRuns, between_random_edits_are_as_their_columns) {
  constexpr unsigned kSeed = 31;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 3000; ++round) {
    const std::size_t length = 12 + random() % 200;
    std::string bases;
    while (bases.size() < length) bases += "AACCGGTTN"[random() % 9];
    CRepeatScene scene("T", bases, "A", 1);
    const std::int64_t unit_length = 1 + static_cast<std::int64_t>(random() % 12);
    scene.set_unit(1, unit_length, 1 + static_cast<std::int64_t>(random() % 12) % unit_length);
    const auto gap = static_cast<std::int64_t>(1 + random() % 40);
    // From before the repeat in a few cases, where an entry holds up all after it.
    std::int64_t position = random() % 20 == 0 ? 0 : 1;
    for (; position <= static_cast<std::int64_t>(length) + 1;
         position += static_cast<std::int64_t>(random()) % gap) {
      scene.add_edit(position, "DIM"[random() % 3]);
      if (gap == 1) ++position;
    }
    ASSERT_EQ(joined(aligned(scene)), joined(aligned_by_columns(scene))) << "round " << round;
  }
}

}  // namespace
}  // namespace quorix
