#pragma once

/// @file
/// Edits that were chosen before.
///
/// Many seeds grow over the same array: each base of it that is not closed begins one, with the
/// unit turned by a base. They all align it to the same characters, so they come to the same
/// stops, and there, as long as the score is high enough for every path of the look-ahead to make
/// all its edits, the choice depends on the bases and the characters alone. It is looked up.
///
/// That holds from the score on from which all edits that a look-ahead may make in a row, each at
/// the larger penalty and with no match between them, stay above the floor: then no path is cut
/// off, and another score moves the values of all paths by the same amount. Below it the score is
/// part of the site. The best score so far decides nothing unless the score reduction is limited,
/// and then nothing is kept. The limit is part of the site, since a look-ahead ends there. Values
/// of a look-ahead have 64 bits, so none is cut off at the limits of a score.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorix {

/// A stop of growth: the base beyond an edge differs from the character that it has to match.
struct EditSite {
  const char* edge;
  const char* limit;
  std::uint64_t unit_code;  ///< the unit read from that character on, its length and the direction
  std::int64_t score;       ///< one value for all scores that are high enough

  [[nodiscard]] bool operator==(const EditSite& other) const = default;
};

/// What was asked of a memo since it was made.
struct EditMemoWork {
  std::uint64_t hits = 0;    ///< edits that were known
  std::uint64_t misses = 0;  ///< edits that were not
  std::uint64_t stored = 0;  ///< edits that were kept
  std::uint64_t moved = 0;   ///< entries that got another place when room was made
};

class CEditMemo {
 public:
  /// The longest unit that a code has room for. The batch bound has the same limit for units that
  /// it gives up early.
  static constexpr std::int64_t kLongestUnit = 28;

  /// The code of the unit [unit_begin, unit_end) as it is read from `character` on: the same for
  /// all turns of a unit that have the same character next. REQUIRES: at most `kLongestUnit`
  /// characters, no N.
  [[nodiscard]] static std::uint64_t code_of(const char* character, const char* unit_begin,
                                             const char* unit_end, bool is_rightward);

  /// The edit chosen at `site`, or NUL if it is not known any more.
  [[nodiscard]] char find(const EditSite& site);

  /// Keeps the choice, in the place of another one. Throws: std::bad_alloc.
  void keep(const EditSite& site, char kind);

  /// Forgets everything: the text or the settings are others.
  void clear() {
    entries_.clear();
    kept_count_ = 0;
  }

  [[nodiscard]] const EditMemoWork& work() const { return work_; }

 private:
  struct Entry {
    EditSite site;
    char kind;
  };

  [[nodiscard]] std::size_t place_of(const EditSite& site) const;
  void make_room();

  std::vector<Entry> entries_;  ///< a power of two of them; none until the first is kept
  std::size_t kept_count_ = 0;  ///< since the last clearing, the forgotten ones included
  EditMemoWork work_;
};

}  // namespace quorix
