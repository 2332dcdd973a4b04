#pragma once

/// @file
/// The bases that one search works on.

#include <cstdint>

namespace quorix {

/// The text [begin, end) of a record. It does not own the bases.
struct SearchedText {
  const char* begin;  ///< first base
  const char* end;    ///< one past the last base

  /// Bases of the text.
  [[nodiscard]] std::uint64_t length() const { return static_cast<std::uint64_t>(end - begin); }
  /// The limit of an extension to the left that may take every base.
  [[nodiscard]] const char* before() const { return begin - 1; }
};

}  // namespace quorix
