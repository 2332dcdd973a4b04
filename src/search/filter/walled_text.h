#pragma once

/// @file
/// The text as extensions over edits can read it.
///
/// An extension takes a run of neutral N's with score 0, but ends before a run that is longer than
/// allowed. None of its states has a base in such a run: it meets a run at its first N, and edits
/// only where the base is no N. So for a filter the run is a wall, whose bases match nothing. If
/// they stayed neutral, each path near it could live on in it, for nothing, and no seed within
/// reach could be rejected.

#include <cstdint>
#include <optional>
#include <string>

#include "search/bits/bit_set.h"

namespace quorix {

/// Stands for a base in a wall: it equals no letter of a text and is not neutral. It equals itself;
/// a unit that is asked about holds none, and other pairs of walls only raise a bound.
inline constexpr char kWallLetter = '\x03';

/// A text with walls. It is a copy where there are any, else the text itself.
class CWalledText {
 public:
  /// Reads the text [text, text + bits_of_Ns.size()), which must outlive it, and where its N's are.
  /// A run of more than `max_Ns_in_a_row`, 0 or more, becomes a wall; without a maximum all N's
  /// stay. Throws: std::bad_alloc.
  CWalledText(const char* text, const CBitSet& bits_of_Ns,
              std::optional<std::int64_t> max_Ns_in_a_row);
  CWalledText(const CWalledText&) = delete;
  CWalledText& operator=(const CWalledText&) = delete;

  /// The first base.
  [[nodiscard]] const char* begin() const { return begin_; }

  /// True if N's are left beside the walls.
  [[nodiscard]] bool has_Ns() const { return has_Ns_; }

 private:
  const char* begin_;
  std::string copy_;  ///< empty without walls
  bool has_Ns_ = false;
};

}  // namespace quorix
