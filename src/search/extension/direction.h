#pragma once

/// @file
/// The two directions in which a repeat is extended. They are mirror images, so an algorithm is
/// written once, against these names, and compiled for both.
///
/// An edge lies between two bases: the base just beyond it is the next to be read. `limit` is the
/// bound of its direction: one past the last base, or the position before the first one.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "report/csat.h"
#include "search/bits/byte_bits.h"
#include "search/bits/match_run.h"

namespace quorix {

struct Rightward {
  static constexpr std::size_t kIndex = 0;

  /// The edge of the repeat on this side.
  static const char*& edge(Csat& sat) { return sat.end; }
  /// The unit character that the base beyond that edge has to match.
  static const char*& unit_cursor(Csat& sat) { return sat.unit_pos_right; }

  /// True if no base may be read beyond `edge`.
  static bool is_at_limit(const char* edge, const char* limit) { return edge == limit; }
  /// The base just beyond `edge`.
  static const char* base_beyond(const char* edge) { return edge; }
  /// The edge beyond which `base` is the next one.
  static const char* edge_before(const char* base) { return base; }
  /// The edge one base on.
  static const char* edge_beyond(const char* edge) { return edge + 1; }

  /// The unit character that follows, cyclically.
  static const char* next_in_unit(const char* character, const char* unit_begin,
                                  const char* unit_end) {
    ++character;
    return character == unit_end ? unit_begin : character;
  }

  /// Bases from `edge` to `farther`, which lies in this direction.
  static std::int64_t distance(const char* edge, const char* farther) { return farther - edge; }

  /// The edge `count` bases on.
  static const char* edge_beyond(const char* edge, std::int64_t count) { return edge + count; }

  /// Bases that may be read beyond `edge`.
  static std::int64_t bases_beyond(const char* edge, const char* limit) { return limit - edge; }

  /// Characters from `character` on to the end of the unit, itself included.
  static std::int64_t characters_left(const char* character, const char* /*unit_begin*/,
                                      const char* unit_end) {
    return unit_end - character;
  }

  /// The eight bases beyond `edge`, the next to be read lowest; zero from `count` on, if it is
  /// less.
  static std::uint64_t eight_bases(const char* edge, std::int64_t count) {
    return load_up_to_eight(edge, count);
  }

  /// How many bases beyond `edge`, up to `max_count`, equal those beyond `other`.
  static std::int64_t common_bases(const char* edge, const char* other, std::int64_t max_count) {
    return common_prefix(edge, other, max_count);
  }
  /// The same with the characters from `character` on.
  static std::int64_t common_characters(const char* edge, const char* character,
                                        std::int64_t max_count) {
    return common_prefix(edge, character, max_count);
  }

  /// The unit character `count` characters on, cyclically.
  static const char* character_beyond(const char* character, std::int64_t count,
                                      const char* unit_begin, const char* unit_end) {
    const std::int64_t offset = (character - unit_begin) + count;
    const std::int64_t unit_length = unit_end - unit_begin;
    return unit_begin + (offset < unit_length ? offset : offset % unit_length);
  }
};

struct Leftward {
  static constexpr std::size_t kIndex = 1;

  static const char*& edge(Csat& sat) { return sat.start; }
  static const char*& unit_cursor(Csat& sat) { return sat.unit_pos_left; }

  static bool is_at_limit(const char* edge, const char* limit) { return edge == limit + 1; }
  static const char* base_beyond(const char* edge) { return edge - 1; }
  static const char* edge_before(const char* base) { return base + 1; }
  static const char* edge_beyond(const char* edge) { return edge - 1; }

  static const char* next_in_unit(const char* character, const char* unit_begin,
                                  const char* unit_end) {
    return (character == unit_begin ? unit_end : character) - 1;
  }

  static std::int64_t distance(const char* edge, const char* farther) { return edge - farther; }

  static const char* edge_beyond(const char* edge, std::int64_t count) { return edge - count; }

  static std::int64_t bases_beyond(const char* edge, const char* limit) {
    return edge - (limit + 1);
  }

  static std::int64_t characters_left(const char* character, const char* unit_begin,
                                      const char* /*unit_end*/) {
    return character - unit_begin + 1;
  }

  static std::uint64_t eight_bases(const char* edge, std::int64_t count) {
    if (count >= 8) return reverse_bytes(load_eight(edge - 8));
    return reverse_bytes(load_up_to_eight(edge - count, count)) >> (64U - 8U * count);
  }

  static std::int64_t common_bases(const char* edge, const char* other, std::int64_t max_count) {
    return common_suffix(edge, other, max_count);
  }
  static std::int64_t common_characters(const char* edge, const char* character,
                                        std::int64_t max_count) {
    return common_suffix(edge, character + 1, max_count);
  }

  static const char* character_beyond(const char* character, std::int64_t count,
                                      const char* unit_begin, const char* unit_end) {
    const std::int64_t offset = (unit_end - 1 - character) + count;
    const std::int64_t unit_length = unit_end - unit_begin;
    return unit_end - 1 - (offset < unit_length ? offset : offset % unit_length);
  }
};

/// Returns how many bases beyond `edge`, up to `limit`, equal the unit read cyclically from
/// `character` on. The first difference ends the count.
template <class Direction>
[[nodiscard]] std::int64_t matches_beyond(const char* edge, const char* character,
                                          const char* unit_begin, const char* unit_end,
                                          const char* limit) {
  const std::int64_t unit_length = unit_end - unit_begin;
  const std::int64_t room = Direction::bases_beyond(edge, limit);
  const std::int64_t first_part =
      std::min(room, Direction::characters_left(character, unit_begin, unit_end));
  std::int64_t matches = Direction::common_characters(edge, character, first_part);
  if (matches < first_part || matches == room) return matches;

  const char* const wrapped =
      Direction::character_beyond(character, first_part, unit_begin, unit_end);
  const std::int64_t first_copy = std::min(room, unit_length);
  matches += Direction::common_characters(Direction::edge_beyond(edge, matches), wrapped,
                                          first_copy - matches);
  if (matches < first_copy) return matches;

  // A whole copy matches. From here on each base is compared with the one a unit length before it,
  // so the comparison never has to wrap around again.
  return matches + Direction::common_bases(Direction::edge_beyond(edge, matches),
                                           Direction::edge_beyond(edge, matches - unit_length),
                                           room - matches);
}

}  // namespace quorix
