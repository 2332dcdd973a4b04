#pragma once

/// @file
/// What paths can gain or lose over 32 unit characters, for all lags at once.
///
/// The lag of a base and the unit character that it is compared with is the distance between them
/// in the text (search/filter/lag_sieve.h). A block is 32 neighbouring bases of the text, read as
/// unit characters. A path of matches and edits crosses it with any insertions and deletions:
///
/// ```
///                          through     into     out of    within
///   before the block       enters      enters     -          -
///   first character        |           |          |          |
///   ...                    |           ends     begins    begins, ends
///   last character         |                      |          |
///   after the block        leaves        -      leaves       -
/// ```
///
/// The net of a path is its matches less its penalties. For each of the four kinds there is the
/// highest net by the lag at which the path enters or begins, in buckets of 16 lags. To the left
/// all of this is mirrored: the last character of a block comes first.
///
/// Nets are upper bounds. They never fall below `kMinNet`; lags above those that were filled count
/// as if everything matched there. Letters beyond the text match nothing.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "search/rules/scoring_rules.h"

namespace quorix {

/// Characters in a block.
inline constexpr std::int64_t kBlockCharacters = 32;

/// See the table above.
enum class BlockPath { kThrough, kInto, kOutOf, kWithin };
inline constexpr std::size_t kBlockPaths = 4;

/// Lags [low, high]; 0 <= low <= high.
struct LagRange {
  std::int64_t low;
  std::int64_t high;
};

/// The two sides to which a seed extends.
enum class BlockSide { kRight, kLeft };

class CBlockNets {
 public:
  static constexpr int kMinNet = -127;
  /// Lags in a bucket.
  static constexpr std::int64_t kBucketLags = 16;
  /// Buckets that are read at once, at most.
  static constexpr std::int64_t kMaxBuckets = 384;

  /// For the text [text, text + length), which must outlive it, and lags up to `max_lag`. Nets of
  /// `held_blocks` neighbouring blocks are remembered. Throws: std::bad_alloc.
  CBlockNets(const char* text, std::uint64_t length, const ScoringRules& scoring,
             std::int64_t max_lag, std::int64_t held_blocks);

  /// Returns the highest net of the paths of this kind over `block`, the bases from 32 x block on,
  /// that enter or begin at a lag in `lags`. REQUIRES: lags.high <= max_lag.
  [[nodiscard]] int highest(BlockSide side, BlockPath path, std::int64_t block,
                            const LagRange& lags);

  /// The nets of one bucket after the other.
  using BucketNets = std::array<std::int32_t, kMaxBuckets>;

  /// Writes the highest nets of the paths of this kind over `block` to `nets`: nets[i] is that of
  /// those that enter or begin at a lag of bucket `first_bucket` + i.
  /// REQUIRES: 0 <= count <= kMaxBuckets, the lags of all buckets are max_lag at most.
  void read(BlockSide side, BlockPath path, std::int64_t block, std::int64_t first_bucket,
            std::int64_t count, BucketNets& nets);

  /// Pieces of blocks filled so far.
  [[nodiscard]] std::uint64_t filled_count() const { return filled_count_; }

 private:
  static constexpr std::int64_t kChunkBuckets = 64;
  static constexpr std::int64_t kChunkLags = kBucketLags * kChunkBuckets;
  /// The highest of 1, 2, 4, ... 64 buckets from each one on.
  static constexpr std::size_t kSpans = 7;

  using Row = std::array<std::uint8_t, kChunkBuckets>;
  /// The nets of one block at the lags of one chunk, above `kMinNet`.
  struct Chunk {
    std::int64_t block = -1;
    std::array<std::array<Row, kSpans>, kBlockPaths> nets = {};
  };

  [[nodiscard]] const Chunk& chunk_of(BlockSide side, std::int64_t block, std::int64_t index);
  void fill(BlockSide side, std::int64_t block, std::int64_t index, Chunk& chunk);
  /// Copies `count` letters of the text from offset `first` on, upward or downward, to `to`;
  /// `filler` beyond its ends.
  void copy_letters(std::int64_t first, bool is_upward, std::int64_t count, std::uint8_t filler,
                    std::uint8_t* to) const;

  const char* text_;
  std::int64_t length_;
  ScoringRules scoring_;
  std::int64_t chunks_;  ///< of a block
  std::int64_t held_blocks_;
  std::array<std::vector<std::unique_ptr<Chunk>>, 2> held_;  ///< by side; null until first filled
  std::uint64_t filled_count_ = 0;
};

}  // namespace quorix
