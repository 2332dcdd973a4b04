#pragma once

/// @file
/// Which bases of a sequence may still seed a repeat: one mark a base, closed where an accepted
/// repeat lies. A guard mark on each side stays open.

#include <cstdint>
#include <vector>

#include "report/csat.h"

namespace quorix {

/// Marks of a base: it may be (part of) a seed, or it lies inside an accepted repeat.
inline constexpr char kOpenMark = 'a';
inline constexpr char kClosedMark = ' ';

/// The marks of one text. Repeats of all unit lengths of a search close the same marks.
class CAnchorSeq {
 public:
  /// All marks open. Throws: std::bad_alloc.
  CAnchorSeq(const char* first_base, std::uint64_t base_count)
      : seq_start(first_base),
        seq_length(base_count),
        mark_buffer(base_count + 3, kOpenMark),
        marks(mark_buffer.data() + 1),
        marks_end(marks + base_count) {
    mark_buffer.back() = '\0';
  }
  CAnchorSeq(const CAnchorSeq&) = delete;
  CAnchorSeq& operator=(const CAnchorSeq&) = delete;

  /// Opens all marks again.
  void open_all();

  /// Closes the bases of a repeat, except where its edits are: those stay open as seeds.
  void close_repeat(const Csat& repeat);

  /// True if a unit of `unit_length` at `position` may seed a repeat: its first base is open and
  /// so is its last or the one after it, or the base before it and its last one are open.
  [[nodiscard]] bool may_seed(const char* position, std::uint64_t unit_length) const {
    const char* const first = marks + (position - seq_start);
    const char* const after = first + unit_length;
    const bool is_last_open = after[-1] == kOpenMark;
    if (*first == kOpenMark && (is_last_open || *after == kOpenMark)) return true;
    return first[-1] == kOpenMark && is_last_open;
  }

  /// The same for 64 units at a time: bit k of the unit at `position` + k. Bits of units that reach
  /// beyond the sequence are clear.
  [[nodiscard]] std::uint64_t may_seed_from(const char* position, std::uint64_t unit_length) const;

  /// First base of the sequence, and how many there are.
  const char* seq_start;
  std::uint64_t seq_length;
  /// Guard, marks, guard, NUL.
  std::vector<char> mark_buffer;
  /// The mark of base i is marks[i].
  char* marks;
  char* marks_end;
};

}  // namespace quorix
