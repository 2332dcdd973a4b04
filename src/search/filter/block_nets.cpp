// A lane is a character of the block, a row has the pairs of base and character with one sum of
// positions. Rows are filled by falling sum, so that what follows a pair is known:
//
//     character     0   1   2   3  ...  31   |  beyond
//     row t         .   .  <v>  .        .   |          <v> = max of
//     row t + 1     .   .  (n) (n)       .   |  e       (n) less an indel
//     row t + 2     .   .   .  [p]       .   |  e       [p] and a match or mismatch
//
// Beyond the last character a path has left the block with a net of 0 (e); for paths that end
// within it, it has gained 0, and so has one that ends at any pair.
//
// The lag of a pair is that of the row's first character less twice its lane. So a row belongs to
// the bucket of the lag of its first character, and who asks for paths that begin at any character
// asks for 2 x 32 lags more.
//
// Above the highest row, everything counts as matched: a net of 32. A path gets up by two rows with
// each match, so some more rows are filled than a chunk has lags.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/block_nets.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "search/filter/block_nets.h"
#include "search/filter/dp_cell.h"

#ifndef QUORIX_BLOCK_NETS_SHARED
#define QUORIX_BLOCK_NETS_SHARED

namespace quorix {

/// Values are nets above the lowest one.
inline constexpr std::uint8_t kZeroNet = 127;
/// The net of a block in which everything matches.
inline constexpr std::uint8_t kFullNet = kZeroNet + kBlockCharacters;

/// One block and the lags of a chunk.
struct BlockTask {
  const std::uint8_t* characters;  ///< of the block, the first to be read first
  /// `bases[k]` is compared with character k in the first row, `bases[k + 1]` in the next one, ...
  const std::uint8_t* bases;
  std::int64_t top_lag;    ///< of character 0 in the first row
  std::int64_t first_lag;  ///< of the chunk
  std::int64_t bucket_count;
  std::int64_t bucket_lags;
  ScoringRules scoring;
  std::array<std::uint8_t*, kBlockPaths> nets;  ///< by bucket
};

}  // namespace quorix

#endif

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions any net is possible.
void fill_block(const BlockTask& task) {
  for (std::uint8_t* const nets : task.nets) std::fill_n(nets, task.bucket_count, kFullNet);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// Characters in half of a block.
constexpr std::ptrdiff_t kHalf = 16;
static_assert(2 * kHalf == kBlockCharacters);

using Bytes = hn::Full128<std::uint8_t>;
using Vector = hn::Vec<Bytes>;

/// A row of values, one for each character.
struct BlockRow {
  Vector low;   ///< of characters 0 to 15
  Vector high;  ///< of 16 to 31
};

BlockRow higher(const BlockRow& a, const BlockRow& b) {
  return {hn::Max(a.low, b.low), hn::Max(a.high, b.high)};
}

std::uint8_t highest_of_all(const BlockRow& row) {
  std::array<std::uint8_t, kHalf> values = {};
  hn::StoreU(hn::Max(row.low, row.high), Bytes(), values.data());
  return *std::max_element(values.begin(), values.end());
}

/// The rows of one block, from the top one down.
class CBlockRows {
 public:
  explicit CBlockRows(const BlockTask& task)
      : bases_(task.bases),
        weights_(score_weights(Bytes(), task.scoring.mismatch_penalty, task.scoring.indel_penalty)),
        neutral_letter_(
            hn::Set(Bytes(), task.scoring.is_N_neutral ? std::uint8_t{'N'} : kNoNeutralLetter)),
        characters_{hn::LoadU(Bytes(), task.characters),
                    hn::LoadU(Bytes(), task.characters + kHalf)},
        zero_net_(hn::Set(Bytes(), kZeroNet)),
        leaving_{hn::Set(Bytes(), kFullNet), hn::Set(Bytes(), kFullNet)},
        leaving_before_(leaving_),
        ending_(leaving_),
        ending_before_(leaving_) {}

  /// Fills the next row.
  void step() {
    const Letters low = compared(0, characters_.low);
    const Letters high = compared(kHalf, characters_.high);
    ++bases_;
    fill(leaving_, leaving_before_, low, high);
    fill(ending_, ending_before_, low, high);
    ending_ = higher(ending_, {zero_net_, zero_net_});
  }

  /// The last row, of paths that leave the block and of those that end anywhere.
  [[nodiscard]] const BlockRow& leaving() const { return leaving_; }
  [[nodiscard]] const BlockRow& ending() const { return ending_; }

 private:
  using Letters = ComparedLetters<Vector>;

  [[nodiscard]] Letters compared(std::ptrdiff_t first, Vector characters) const {
    const Vector bases = hn::LoadU(Bytes(), bases_ + first);
    return compare_letters<true>(
        Bytes(), bases, hn::VecFromMask(Bytes(), hn::Eq(bases, characters)), neutral_letter_);
  }

  /// Fills a row from the two before it. Beyond the last character there is a net of 0.
  void fill(BlockRow& last, BlockRow& before, const Letters& low, const Letters& high) const {
    const Bytes d;
    const BlockRow previous = {hn::CombineShiftRightBytes<1>(d, before.high, before.low),
                               hn::CombineShiftRightBytes<1>(d, zero_net_, before.high)};
    const BlockRow beside = {hn::CombineShiftRightBytes<1>(d, last.high, last.low),
                             hn::CombineShiftRightBytes<1>(d, zero_net_, last.high)};
    const BlockRow neighbour = higher(last, beside);
    before = last;
    last = {beginning_cell(previous.low, neighbour.low, low, weights_),
            beginning_cell(previous.high, neighbour.high, high, weights_)};
  }

  const std::uint8_t* bases_;
  CellWeights<Vector> weights_;
  Vector neutral_letter_;
  BlockRow characters_;
  Vector zero_net_;
  BlockRow leaving_;
  BlockRow leaving_before_;
  BlockRow ending_;
  BlockRow ending_before_;
};

void fill_block(const BlockTask& task) {
  CBlockRows rows(task);
  for (std::int64_t bucket = (task.top_lag - task.first_lag) / task.bucket_lags; bucket >= 0;
       --bucket) {
    BlockRow leaving = {hn::Zero(Bytes()), hn::Zero(Bytes())};
    BlockRow ending = leaving;
    for (std::int64_t i = 0; i < task.bucket_lags; ++i) {
      rows.step();
      leaving = higher(leaving, rows.leaving());
      ending = higher(ending, rows.ending());
    }
    if (bucket >= task.bucket_count) continue;
    const auto nets = [&](BlockPath path) -> std::uint8_t& {
      return task.nets[static_cast<std::size_t>(path)][bucket];
    };
    nets(BlockPath::kThrough) = hn::GetLane(leaving.low);
    nets(BlockPath::kInto) = hn::GetLane(ending.low);
    nets(BlockPath::kOutOf) = highest_of_all(leaving);
    nets(BlockPath::kWithin) = highest_of_all(ending);
  }
}

#endif

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(fill_block);

/// Beyond the ends of the text: they equal no other letter.
constexpr std::uint8_t kNoCharacter = 1;
constexpr std::uint8_t kNoBase = 2;

/// Rows that are filled above those of a chunk. Over a block a path gets 2 x 32 rows up, and one
/// more with each insertion, so what is assumed above them is lost.
constexpr std::int64_t kLagsAbove = 4 * kBlockCharacters;

}  // namespace

CBlockNets::CBlockNets(const char* text, std::uint64_t length, const ScoringRules& scoring,
                       std::int64_t max_lag, std::int64_t held_blocks)
    : text_(text),
      length_(static_cast<std::int64_t>(length)),
      scoring_(scoring),
      chunks_(max_lag / kChunkLags + 1),
      held_blocks_(held_blocks) {
  for (auto& held : held_) {
    held.resize(static_cast<std::size_t>(held_blocks_ * chunks_));
  }
}

void CBlockNets::copy_letters(std::int64_t first, bool is_upward, std::int64_t count,
                              std::uint8_t filler, std::uint8_t* to) const {
  std::fill_n(to, count, filler);
  // The part [begin, end) of what is copied lies in the text.
  const std::int64_t below = is_upward ? -first : first - (length_ - 1);
  const std::int64_t begin = std::clamp<std::int64_t>(below, 0, count);
  const std::int64_t end =
      std::clamp<std::int64_t>(is_upward ? length_ - first : first + 1, begin, count);
  if (begin == end) return;
  if (is_upward) {
    std::copy_n(text_ + first + begin, end - begin, to + begin);
  } else {
    std::reverse_copy(text_ + (first - end + 1), text_ + (first - begin + 1), to + begin);
  }
}

void CBlockNets::fill(BlockSide side, std::int64_t block, std::int64_t index, Chunk& chunk) {
  const bool is_right = side == BlockSide::kRight;
  const std::int64_t character =
      block * kBlockCharacters + (is_right ? 0 : kBlockCharacters - 1);  // the first one read
  const std::int64_t top_lag = (index + 1) * kChunkLags + kLagsAbove - 1;
  std::array<std::uint8_t, kBlockCharacters> characters = {};
  std::array<std::uint8_t, kChunkLags + kLagsAbove + kBlockCharacters> bases = {};
  copy_letters(character, is_right, kBlockCharacters, kNoCharacter, characters.data());
  copy_letters(is_right ? character + top_lag : character - top_lag, !is_right,
               static_cast<std::int64_t>(bases.size()), kNoBase, bases.data());
  BlockTask task{characters.data(), bases.data(), top_lag,  index * kChunkLags,
                 kChunkBuckets,     kBucketLags,  scoring_, {}};
  for (std::size_t path = 0; path < kBlockPaths; ++path) {
    task.nets[path] = chunk.nets[path][0].data();
  }
  HWY_DYNAMIC_DISPATCH(fill_block)(task);
  for (auto& rows : chunk.nets) {
    for (std::size_t span = 1; span < kSpans; ++span) {
      const std::size_t half = std::size_t{1} << (span - 1);
      const Row& from = rows[span - 1];
      for (std::size_t i = 0; i + 2 * half <= from.size(); ++i) {
        rows[span][i] = std::max(from[i], from[i + half]);
      }
    }
  }
  chunk.block = block;
  ++filled_count_;
}

const CBlockNets::Chunk& CBlockNets::chunk_of(BlockSide side, std::int64_t block,
                                              std::int64_t index) {
  std::unique_ptr<Chunk>& held =
      held_[side == BlockSide::kRight ? 0 : 1]
           [static_cast<std::size_t>(block % held_blocks_ * chunks_ + index)];
  if (held == nullptr) held = std::make_unique<Chunk>();
  if (held->block != block) fill(side, block, index, *held);
  return *held;
}

void CBlockNets::read(BlockSide side, BlockPath path, std::int64_t block, std::int64_t first_bucket,
                      std::int64_t count, BucketNets& nets) {
  const std::int64_t end = first_bucket + count;
  assert(first_bucket >= 0 && count <= kMaxBuckets && end <= chunks_ * kChunkBuckets);
  std::size_t written = 0;
  for (std::int64_t bucket = first_bucket; bucket < end;) {
    const std::int64_t index = bucket / kChunkBuckets;
    const Row& row = chunk_of(side, block, index).nets[static_cast<std::size_t>(path)][0];
    const std::int64_t part_end = std::min(end, (index + 1) * kChunkBuckets);
    for (; bucket < part_end; ++bucket) {
      nets[written++] = row[static_cast<std::size_t>(bucket % kChunkBuckets)] - int{kZeroNet};
    }
  }
}

int CBlockNets::highest(BlockSide side, BlockPath path, std::int64_t block, const LagRange& lags) {
  assert(0 <= lags.low && lags.low <= lags.high && lags.high < chunks_ * kChunkLags);
  const std::int64_t last = lags.high / kBucketLags;
  std::uint8_t highest = 0;
  for (std::int64_t bucket = lags.low / kBucketLags; bucket <= last;) {
    const std::int64_t index = bucket / kChunkBuckets;
    const std::int64_t end = std::min(last + 1, (index + 1) * kChunkBuckets);
    const auto count = static_cast<std::uint64_t>(end - bucket);
    assert(count != 0);
    const auto span = static_cast<std::size_t>(std::bit_width(count) - 1);
    const auto first = static_cast<std::size_t>(bucket % kChunkBuckets);
    const auto second = static_cast<std::size_t>(first + count - (std::uint64_t{1} << span));
    const Row& row = chunk_of(side, block, index).nets[static_cast<std::size_t>(path)][span];
    highest = std::max({highest, row[first], row[second]});
    bucket = end;
  }
  return int{highest} - int{kZeroNet};
}

}  // namespace quorix

#endif
