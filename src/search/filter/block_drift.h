#pragma once

/// @file
/// The extensions of the seeds of one block over blocks, by lag: dearer than the highest net of any
/// lag in reach, and much sharper, since a path pays for every lag that it drifts.
///
/// Between two blocks there is the highest score of a path for each bucket of 16 lags. In the next
/// one, a path that enters in bucket i and leaves in bucket j gains no more than
///
/// - the highest net of the paths that enter in bucket i, and
/// - for |i - j| = d >= 2, the matches of a block less the 16 (d - 1) + 1 indels or more that lead
///   from one bucket to the other.
///
/// ```
///     bucket          i - 2     i - 1      i      i + 1     i + 2
///     before            .         .        s        .         .
///     after        s+32-17p    s+net    s+net    s+net    s+32-17p      p: of an indel
/// ```
///
/// Where the unit wraps, the lag grows by the unit length. Scores at or below minus the longest
/// unit length are dead. Lags are 1 or more: to the right every base lies after the unit, to the
/// left before it.
///
/// A part in which the unit may end or begin is as for `CBlockSide` in
/// search/filter/block_sieve.cpp: a path may end or begin at any character of it.

#include <algorithm>
#include <array>
#include <cstdint>

#include "search/filter/block_nets.h"
#include "search/filter/block_side.h"

namespace quorix {

class CBlockDrift {
 public:
  /// `nets` must outlive it and know lags up to `max_lag`; at longer ones paths are not followed.
  CBlockDrift(CBlockNets& nets, BlockSide side, std::int64_t max_lag, std::int64_t indel_penalty)
      : nets_(nets),
        side_(side),
        max_lag_(max_lag),
        indel_penalty_(std::min(indel_penalty, kMaxIndelPenalty)) {}

  /// Follows seeds of `block` whose score on entry is `entry`, up to their end or the minimum
  /// score. REQUIRES: units.last <= kMaxBlockUnit, units.last - units.first < kUnitsAtOnce,
  /// entry < 2^24.
  SideReach follow(std::int64_t block, const UnitLengths& units, std::int64_t entry);

 private:
  /// What needs more buckets than these is not followed: room for paths over units of
  /// `kMaxBlockUnit` bases at the default penalties, and for those that begin in a block.
  static constexpr std::int64_t kMaxBuckets =
      CBlockNets::kMaxBuckets - kBeginSpread / CBlockNets::kBucketLags;

  /// Dearer indels count as this much. No score on entry pays for one, and the scores have room for
  /// the price of two buckets.
  static constexpr std::int64_t kMaxIndelPenalty = 1 << 24;

  /// The highest scores by bucket, of the buckets from `first` on.
  struct LagScores {
    std::int64_t first = 0;
    std::int64_t count = 0;  ///< 0: no path is alive
    std::array<std::int32_t, kMaxBuckets> scores = {};
  };

  // Each of these returns false if no path is alive after it, or if the end has come.

  bool read_copy_rightward(std::int64_t block, std::int64_t tail);
  bool read_copy_leftward(std::int64_t block, std::int64_t tail);
  /// Moves `paths` over a block and raises `best_`. They leave it by `leaving` paths, or end.
  bool add_block(BlockPath leaving, BlockPath ending, std::int64_t block, LagScores& paths);
  /// Moves `paths`, with their nets over a block, to the buckets in which they may leave it.
  bool drift(const CBlockNets::BucketNets& nets, LagScores& paths);
  /// Lets the lags grow by a unit length.
  bool wrap();

  /// Reads the nets of the buckets of `paths` in a block.
  void read_nets(BlockPath path, std::int64_t block, const LagScores& paths,
                 CBlockNets::BucketNets& nets);
  /// Raises `paths` to `others`.
  void raise(LagScores& paths, const LagScores& others);
  /// False, and the end has come, if `count` buckets are too many.
  bool has_room_for(std::int64_t count) {
    is_open_ = is_open_ || count > kMaxBuckets;
    return !is_open_;
  }
  [[nodiscard]] bool is_at_end() const { return is_open_ || best_ >= units_.min_score; }

  CBlockNets& nets_;
  BlockSide side_;
  std::int64_t max_lag_;
  std::int64_t indel_penalty_;

  UnitLengths units_ = {};
  LagScores paths_;        ///< between two parts
  std::int64_t best_ = 0;  ///< the highest score of all
  bool is_open_ = false;   ///< paths were left that are not followed
};

}  // namespace quorix
