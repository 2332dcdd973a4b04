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
///
/// Assumptions, which the caller ensures (see `CKeptWay`), and why the result is that of a fresh
/// extension:
///
/// - The edit at a stop, and with it the next stop and the points gained on the way there, is a
///   function of edge, unit code and score; from the free score on, of edge and unit code. That
///   needs one limit for each direction, no limit of the score reduction, and settings that stay
///   the same. The best score so far has no influence.
/// - So an extension that arrives at a kept stop with the kept score, or with both scores free,
///   makes the kept edit and gains as much. This holds edge by edge of the tree. It holds for a
///   whole jump if every stop before its end is free and the least score met there is still free,
///   or if the extension that was kept arrived with the same score and had it up to the root.
/// - An extension that joined a kept path with another score does not go on to the root for sure.
///   Therefore heights are sums along the tree, and no score of a stop is derived from the root's.
/// - A height is a sum of matches, of which a text that is served has at most `kHighestScore`, and
///   of penalties. An edit needs a score near its penalty, and only matches before it give that.

#include <cstddef>
#include <cstdint>
#include <memory>
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
  /// Stops that are kept at most unless said otherwise, in 30 MB.
  static constexpr std::size_t kMaxStops = std::size_t{1} << 19U;

  /// Keeps no more than `max_stops`. Stops noted when there is no room for them are dropped, and
  /// the next way begins with nothing kept. REQUIRES: max_stops <= `kMaxStops`.
  explicit CGrowthPaths(std::size_t max_stops = kMaxStops) : max_stops_(max_stops) {}

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

  /// Bits of an id, and of a count of stops.
  static constexpr unsigned kIdBits = 20;
  static constexpr std::uint32_t kIdMask = (1U << kIdBits) - 1;

  /// Sums are those to the root, the last stop of a way. Long arrays fill the cache, so a stop is
  /// packed as close as it goes.
  struct Stop {
    const char* edge;
    std::uint64_t unit_code;
    std::int32_t score;                  ///< with which it was come to
    std::int32_t height;                 ///< score above that of the root
    std::int32_t lowest;                 ///< height of the stops before `jump`, this one included
    std::int32_t highest;                ///< height of those after this one, up to `jump`
    std::uint64_t next : kIdBits;        ///< means nothing at the root
    std::uint64_t jump : kIdBits;        ///< farther on; the root itself at the root
    std::uint64_t highest_at : kIdBits;  ///< the first of those that are `highest`
    std::uint64_t is_free : 1;           ///< the edit holds for all scores that are high enough
    std::uint64_t is_jump_free : 1;      ///< and so do all up to `jump`
    /// An extension that arrives with `score` has the scores of all stops to the root.
    std::uint64_t is_score_of_root : 1;
    std::uint64_t is_root : 1;
    std::uint64_t edits : kIdBits;
    std::uint64_t mismatches : kIdBits;
    std::uint64_t insertions : kIdBits;
    std::uint64_t kind : 2;  ///< of the edit that is made here, as an index of `kKinds`
  };
  static_assert(sizeof(Stop) == 48);

  static constexpr unsigned kBlockBits = 8;
  static constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;

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
  [[nodiscard]] StopId keep(const Stop& stop, std::uint32_t n_count);
  void keep_n_count(StopId id, std::uint32_t n_count);
  [[nodiscard]] std::uint32_t n_count_at(StopId id) const {
    return n_counts_.empty() ? 0 : n_counts_[id];
  }
  [[nodiscard]] const Stop& stop_at(StopId id) const {
    return blocks_[id >> kBlockBits][id & (kBlockSize - 1)];
  }
  void make_places(std::size_t count);

  std::size_t max_stops_;
  std::vector<NotedStop> noted_;
  std::vector<std::unique_ptr<Stop[]>> blocks_;  ///< of `kBlockSize` stops each
  StopId stop_count_ = 0;
  /// The N's from each stop to its root. Most texts have none there, and then there are no counts.
  std::vector<std::uint32_t> n_counts_;
  /// Edge of the first stop: places do not depend on addresses.
  const char* origin_ = nullptr;
  std::vector<StopId> places_;  ///< a power of two of them; none until the first stop is kept
  bool is_full_ = false;
  GrowthPathsWork work_;
};

}  // namespace quorix
