#pragma once

/// @file
/// The slow twin of search/bits/match_window.h: each bit by itself.

#include <algorithm>
#include <cstdint>
#include <string>

#include "search/bits/match_window.h"
#include "search/extension/direction.h"

namespace quorix::testing {

/// The unit character that base `offset` meets on `diagonal`, if the first one meets the one at
/// `phase` on diagonal 0.
inline char plain_character(const std::string& unit, std::int64_t phase, std::int64_t offset,
                            std::ptrdiff_t diagonal) {
  const auto length = static_cast<std::int64_t>(unit.size());
  const std::int64_t index = (phase + offset - diagonal) % length;
  return unit[static_cast<std::size_t>(index < 0 ? index + length : index)];
}

/// Returns a word whose bit i is set if base i of the first `size` ones equals its unit character.
/// Both texts are in the order in which they are read.
inline std::uint64_t plain_match_row(const std::string& text, const std::string& unit,
                                     std::int64_t phase, std::ptrdiff_t diagonal,
                                     std::int64_t size) {
  std::uint64_t row = 0;
  for (std::int64_t i = 0; i < size; ++i) {
    const bool is_match =
        text[static_cast<std::size_t>(i)] == plain_character(unit, phase, i, diagonal);
    row |= static_cast<std::uint64_t>(is_match) << static_cast<unsigned>(i);
  }
  return row;
}

/// From `kMaxDiagonal` before the phase on.
inline constexpr std::int64_t kCharactersMet =
    CMatchWindow::kMaxBases + 2 * CMatchWindow::kMaxDiagonal;

/// Reads `text`, which begins at `bases`, against `unit`, which begins at `characters`, from that
/// end of the text on where `Direction` begins and from the character `phase` on, counted in that
/// direction. Returns what differs from the twin, "" if nothing does.
template <class Direction>
std::string fault_of_match_window(const char* bases, std::string text, const char* characters,
                                  std::string unit, std::int64_t phase) {
  const char* const bases_end = bases + text.size();
  const char* const characters_end = characters + unit.size();
  const bool is_rightward = Direction::kIndex == Rightward::kIndex;
  CMatchWindow window;
  window.read<Direction>(is_rightward ? bases : bases_end, is_rightward ? bases_end : bases - 1,
                         is_rightward ? characters + phase : characters_end - 1 - phase, characters,
                         characters_end);
  if (!is_rightward) {
    std::reverse(text.begin(), text.end());
    std::reverse(unit.begin(), unit.end());
  }
  const std::size_t bases_held = std::min(text.find('N'), text.size());
  std::int64_t size = std::min(CMatchWindow::kMaxBases, static_cast<std::int64_t>(bases_held));
  // An N among the characters that any base may meet leaves nothing to hold.
  for (std::int64_t i = 0; i < kCharactersMet; ++i) {
    if (plain_character(unit, phase, i, CMatchWindow::kMaxDiagonal) == 'N') size = 0;
  }
  if (window.size() != size) return "a window of " + std::to_string(window.size()) + " bases";
  if (size == 0) return "";
  for (std::ptrdiff_t diagonal = -CMatchWindow::kMaxDiagonal;
       diagonal <= CMatchWindow::kMaxDiagonal; ++diagonal) {
    if (window.row(diagonal) != plain_match_row(text, unit, phase, diagonal, size)) {
      return "the row of diagonal " + std::to_string(diagonal);
    }
  }
  return "";
}

}  // namespace quorix::testing
