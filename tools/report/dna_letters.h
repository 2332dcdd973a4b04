#pragma once

/// @file
/// The letters of bases as a report prints them.

#include <algorithm>
#include <array>
#include <string_view>

namespace quorix::tools {

namespace internal {

constexpr std::array<bool, 256> make_is_letter() {
  std::array<bool, 256> is_letter{};
  for (const char letter : std::string_view("ACGTN")) {
    is_letter[static_cast<unsigned char>(letter)] = true;
  }
  return is_letter;
}

inline constexpr std::array<bool, 256> kIsLetter = make_is_letter();

}  // namespace internal

/// True for A, C, G, T, and N for an unknown base.
[[nodiscard]] inline bool is_base_letter(char character) {
  return internal::kIsLetter[static_cast<unsigned char>(character)];
}

[[nodiscard]] inline bool are_base_letters(std::string_view text) {
  return std::all_of(text.begin(), text.end(), is_base_letter);
}

}  // namespace quorix::tools
