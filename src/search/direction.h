#pragma once

/// @file
/// The two directions in which a repeat grows. They are mirror images, so an algorithm is written
/// once, against these names, and compiled for both.
///
/// An edge lies between two bases: the base just beyond it is the next to be read. `limit` is the
/// bound of its direction: one past the last base, or the position before the first one.

#include <cstddef>
#include <cstdint>

#include "report/csat.h"

namespace quorix {

struct Rightward {
  static constexpr std::size_t kIndex = 0;

  static const char*& edge(Csat& sat) { return sat.end; }
  static const char*& unit_cursor(Csat& sat) { return sat.unit_pos_right; }

  static bool is_at_limit(const char* edge, const char* limit) { return edge == limit; }
  static const char* base_beyond(const char* edge) { return edge; }
  static const char* edge_beyond(const char* edge) { return edge + 1; }

  /// The unit character that follows, cyclically.
  static const char* next_in_unit(const char* character, const char* unit_begin,
                                  const char* unit_end) {
    ++character;
    return character == unit_end ? unit_begin : character;
  }

  /// Bases from `edge` to `farther`, which lies in this direction.
  static std::int64_t distance(const char* edge, const char* farther) { return farther - edge; }

  /// The unit character `count` characters on, cyclically.
  static const char* character_beyond(const char* character, std::int64_t count,
                                      const char* unit_begin, const char* unit_end) {
    return unit_begin + ((character - unit_begin) + count) % (unit_end - unit_begin);
  }
};

struct Leftward {
  static constexpr std::size_t kIndex = 1;

  static const char*& edge(Csat& sat) { return sat.start; }
  static const char*& unit_cursor(Csat& sat) { return sat.unit_pos_left; }

  static bool is_at_limit(const char* edge, const char* limit) { return edge == limit + 1; }
  static const char* base_beyond(const char* edge) { return edge - 1; }
  static const char* edge_beyond(const char* edge) { return edge - 1; }

  static const char* next_in_unit(const char* character, const char* unit_begin,
                                  const char* unit_end) {
    return (character == unit_begin ? unit_end : character) - 1;
  }

  static std::int64_t distance(const char* edge, const char* farther) { return edge - farther; }

  static const char* character_beyond(const char* character, std::int64_t count,
                                      const char* unit_begin, const char* unit_end) {
    return unit_end - 1 - ((unit_end - 1 - character) + count) % (unit_end - unit_begin);
  }
};

}  // namespace quorix
