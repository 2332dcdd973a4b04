#pragma once

/// @file
/// The ways that growth went before.
///
/// A growing repeat goes from stop to stop, and where it goes on from a stop does not depend on how
/// it got there. In a long array each seed would go the same way to its end once more, stop by
/// stop, which costs the square of the length. Here the ways are kept: the stops are the nodes of
/// trees in which the next stop is the parent, and besides it each knows one stop farther on, so
/// that a way is followed over n stops in O(log n) steps (Myers, An applicative random-access
/// stack, Information Processing Letters 17, 1983). What lies between is summed up; the edits are
/// read off when they are asked for.
///
/// The edit made at a stop may depend on the score, if that is low. Stops with a score that is high
/// enough for every look-ahead to make all its edits stand for all such scores.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "report/csat.h"

namespace quorix {

/// Where a growing repeat stands, at a stop of one of its sides.
struct GrowthStop {
  const char* edge;
  std::uint64_t unit_code;  ///< see `CEditMemo::code_of`
  std::int32_t score;
  std::int64_t mismatches;
  std::int64_t insertions;
  std::int64_t deletions;
  std::int64_t n_count;
};

/// What was asked of kept ways since they were first kept.
struct GrowthPathsWork {
  std::uint64_t hits = 0;       ///< stops from which a kept way led on
  std::uint64_t misses = 0;     ///< stops from which none did
  std::uint64_t steps = 0;      ///< on kept ways, a jump over many stops being one
  std::uint64_t stored = 0;     ///< stops that were kept
  std::uint64_t forgotten = 0;  ///< stops that were forgotten for want of room
  std::uint64_t placed = 0;     ///< stops that got a place again when places were added
};

class CGrowthPaths {
 public:
  using StopId = std::uint32_t;
  static constexpr StopId kNone = 0xFFFFFFFFU;

  /// Part of a way that was kept: from a stop over the best one that beats what was reached before,
  /// `kNone` if none does, to the last one that is sure.
  struct Way {
    StopId from;
    StopId best;
    StopId to;
  };

  /// The sums of what lies between two stops.
  struct Stretch {
    const char* edge;  ///< at the later one
    std::int64_t score;
    std::int64_t mismatches;
    std::int64_t insertions;
    std::int64_t deletions;
    std::int64_t n_count;
  };

  /// Scores and lengths up to which sums fit.
  static constexpr std::int64_t kHighestScore = std::int64_t{1} << 30U;

  /// Begins a way. What `follow` gave on another one is not to be used any more.
  void begin_way();

  /// Keeps what was noted of the way. Throws: std::bad_alloc.
  void end_way();

  /// Notes that the edit `kind` is made at `stop`, on the way that is being walked. `free_score` is
  /// the score from which on the edit does not depend on it. Throws: std::bad_alloc.
  void note(const GrowthStop& stop, std::int64_t free_score, char kind);

  /// Follows what is kept from `stop` on, as long as it holds for its score too. `from` is `kNone`
  /// if nothing is kept that leads on. The noted stops are kept. Throws: std::bad_alloc.
  [[nodiscard]] Way follow(const GrowthStop& stop, std::int64_t free_score,
                           std::int64_t best_score);

  /// What lies between two stops of a way, of which `from` comes first.
  [[nodiscard]] Stretch between(StopId from, StopId to) const;

  /// Appends the edits from `from` up to, but not at, `to`. The base beyond an edge is
  /// `base_offset` bases behind it. Throws: std::bad_alloc.
  void append_edits(StopId from, StopId to, std::ptrdiff_t base_offset,
                    fastvector<Edit>& edits) const;

  /// Forgets everything: the text or the settings are others.
  void clear();

  [[nodiscard]] const GrowthPathsWork& work() const { return work_; }

 private:
  struct NotedStop {
    GrowthStop stop;
    std::int64_t free_score;
    char kind;
  };

  /// Sums are those to the root, the last stop of a way.
  struct Stop {
    const char* edge;
    std::uint64_t unit_code;
    std::int32_t score;   ///< with which it was come to
    std::int32_t height;  ///< score above that of the root
    StopId next;          ///< `kNone` at the root
    StopId jump;          ///< farther on; the root itself at the root
    std::uint32_t edits;
    std::uint32_t mismatches;
    std::uint32_t insertions;
    std::uint32_t n_count;
    std::int32_t lowest;    ///< height of the stops before `jump`, this one included
    std::int32_t highest;   ///< height of those behind this one, up to `jump`
    StopId highest_at;      ///< the first of them
    char kind;              ///< of the edit that is made here
    bool is_free;           ///< the edit holds for all scores that are high enough
    bool is_jump_free;      ///< and so do all up to `jump`
    bool is_score_of_root;  ///< who comes with `score` meets the scores of all stops to the root
  };

  /// Where a stop is looked for; all scores that are free are one.
  [[nodiscard]] std::size_t place_of(const char* edge, std::uint64_t unit_code, std::int32_t score,
                                     bool is_free) const;
  [[nodiscard]] StopId find(const GrowthStop& stop, std::int64_t free_score) const;
  [[nodiscard]] Way follow_kept(StopId from, std::int64_t score, std::int64_t free_score,
                                std::int64_t best_score);
  void keep_noted_before(StopId id, const GrowthStop& stop);
  [[nodiscard]] bool has_room_for_noted();
  [[nodiscard]] StopId keep_root(const NotedStop& last);
  void set_jump(Stop& stop) const;
  [[nodiscard]] StopId keep(const Stop& stop);
  void make_places(std::size_t count);

  std::vector<NotedStop> noted_;
  std::deque<Stop> stops_;
  /// Edge of the first of them: places do not depend on addresses.
  const char* origin_ = nullptr;
  std::vector<StopId> places_;  ///< a power of two of them; none until the first stop is kept
  bool is_full_ = false;
  GrowthPathsWork work_;
};

}  // namespace quorix
