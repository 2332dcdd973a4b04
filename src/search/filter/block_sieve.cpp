// Seeds are judged from the left end of the text to its right end, so that the nets of a block
// serve all seeds whose units reach it. 16 unit lengths are judged at once first, by the highest
// net of any lag in reach: in most places none of them has a chance. Where one may have, what a
// path pays for its lags counts as well, and if one still may, each is judged by itself.
//
// User seconds of `quorix -U 500` without the lags' price, and with it: 100 kbp of a human
// centromere 4.25 and 0.54.

#include "search/filter/block_sieve.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "search/filter/block_drift.h"
#include "search/filter/block_nets.h"
#include "search/filter/block_side.h"

namespace quorix {

namespace {

/// Lags above this are not followed, in unit lengths.
constexpr std::int64_t kMaxLagUnits = 8;

/// Follows the extensions of the seeds of one block to one side.
class CBlockSide {
 public:
  CBlockSide(CBlockNets& nets, BlockSide side, std::int64_t max_lag, std::int64_t indel_penalty)
      : nets_(nets), side_(side), max_lag_(max_lag), indel_penalty_(indel_penalty) {}

  /// Follows seeds of `block` whose score on entry is `entry`.
  SideReach follow(std::int64_t block, const UnitLengths& units, std::int64_t entry) {
    units_ = units;
    entry_ = score_ = best_ = entry;
    characters_ = 0;
    const std::int64_t tail = tail_of(block, units);
    for (copy_ = 0; copy_ < kMaxBlockCopies; ++copy_) {
      const bool is_alive = side_ == BlockSide::kRight ? read_copy_rightward(block, tail)
                                                       : read_copy_leftward(block, tail);
      if (!is_alive) return {best_, is_too_far_};
    }
    return {best_, true};
  }

 private:
  // Each of these returns false if no path is alive after it, or its lags are too long.

  bool read_copy_rightward(std::int64_t block, std::int64_t tail) {
    if (!add_part(BlockPath::kOutOf, BlockPath::kWithin, block)) return false;
    for (std::int64_t b = block + 1; b < tail; ++b) {
      if (!add_part(BlockPath::kThrough, BlockPath::kInto, b)) return false;
    }
    if (!find_lags(kTailBlocks * kBlockCharacters)) return false;
    std::int64_t gain = 0;  // from block b up to the end of the unit, wherever that is
    for (std::int64_t b = tail + kTailBlocks - 1; b >= tail; --b) {
      gain = std::max<std::int64_t>(highest(BlockPath::kInto, b),
                                    highest(BlockPath::kThrough, b) + gain);
    }
    return add(gain, gain);
  }

  bool read_copy_leftward(std::int64_t block, std::int64_t tail) {
    if (!find_lags(kTailBlocks * kBlockCharacters)) return false;
    std::int64_t net = 0;  // from the end of the unit, wherever that is, down to below block b
    std::int64_t gain = 0;
    for (std::int64_t b = tail + kTailBlocks - 1; b >= tail; --b) {
      gain = std::max<std::int64_t>(
          {gain, highest(BlockPath::kWithin, b), net + highest(BlockPath::kInto, b)});
      net = std::max<std::int64_t>(highest(BlockPath::kOutOf, b),
                                   net + highest(BlockPath::kThrough, b));
    }
    if (!add(std::max<std::int64_t>(net, 0), gain)) return false;  // the tail may be empty
    for (std::int64_t b = tail - 1; b > block; --b) {
      if (!add_part(BlockPath::kThrough, BlockPath::kInto, b)) return false;
    }
    if (!find_lags(kBlockCharacters)) return false;
    const std::int64_t last_gain = highest(BlockPath::kInto, block);
    return add(last_gain, last_gain);
  }

  bool add_part(BlockPath leaving, BlockPath ending, std::int64_t block) {
    if (!find_lags(kBlockCharacters)) return false;
    return add(highest(leaving, block), highest(ending, block));
  }

  /// Adds what a part gains in all, and the highest gain within it.
  bool add(std::int64_t net, std::int64_t gain) {
    best_ = std::max(best_, score_ + gain);
    score_ += net;
    return score_ > -units_.last;
  }

  /// Finds the lags at which paths may be while they read `count` more characters.
  bool find_lags(std::int64_t count) {
    characters_ += count;
    const std::int64_t max_indels = (entry_ + units_.last + characters_) / indel_penalty_ + 1;
    lags_ = {std::max<std::int64_t>((copy_ + 1) * units_.first - max_indels, 1),
             (copy_ + 1) * units_.last + max_indels};
    is_too_far_ = lags_.high + kBeginSpread > max_lag_;
    return !is_too_far_;
  }

  int highest(BlockPath path, std::int64_t block) {
    const bool begins_inside = path == BlockPath::kOutOf || path == BlockPath::kWithin;
    return nets_.highest(side_, path, block,
                         {lags_.low, lags_.high + (begins_inside ? kBeginSpread : 0)});
  }

  CBlockNets& nets_;
  BlockSide side_;
  std::int64_t max_lag_;
  std::int64_t indel_penalty_;

  UnitLengths units_ = {};
  std::int64_t copy_ = 0;
  std::int64_t entry_ = 0;
  std::int64_t characters_ = 0;  ///< read so far, or more
  std::int64_t score_ = 0;       ///< the highest between two parts
  std::int64_t best_ = 0;        ///< the highest of all
  LagRange lags_ = {};
  bool is_too_far_ = false;
};

/// The bits of the seeds of block `b`, as a mask of the word that holds them.
std::uint64_t mask_of_block(std::int64_t b) {
  static_assert(2 * kBlockCharacters == kWordBits);
  return std::uint64_t{0xFFFFFFFF} << (b % 2 * kBlockCharacters);
}

/// One for each side.
template <class Side>
struct BothSides {
  Side right;
  Side left;
};

/// The sieve of one text.
class CBlockSieve {
 public:
  CBlockSieve(const char* text, std::uint64_t length, const LagRule& rule,
              std::vector<CBitSet>& seeds)
      : rule_(rule),
        seeds_(seeds),
        max_lag_(kMaxLagUnits * rule.last_unit_length() + kBeginSpread),
        nets_(text, length, rule.scoring, max_lag_,
              rule.last_unit_length() / kBlockCharacters + kTailBlocks + 2),
        sides_{{nets_, BlockSide::kRight, max_lag_, rule.scoring.indel_penalty},
               {nets_, BlockSide::kLeft, max_lag_, rule.scoring.indel_penalty}},
        drifts_{{nets_, BlockSide::kRight, max_lag_, rule.scoring.indel_penalty},
                {nets_, BlockSide::kLeft, max_lag_, rule.scoring.indel_penalty}} {}

  void sift_block(std::int64_t b) {
    const std::int64_t too_short =
        std::max<std::int64_t>(kMinBlockUnit - rule_.first_unit_length, 0);
    for (auto first = static_cast<std::size_t>(too_short); first < seeds_.size();
         first += kUnitsAtOnce) {
      const std::size_t last = std::min<std::size_t>(first + kUnitsAtOnce, seeds_.size()) - 1;
      if (!has_seeds(b, first, last)) continue;
      if (!may_reach(sides_, b, first, last) || !may_reach(drifts_, b, first, last)) {
        clear(b, first, last);
        continue;
      }
      for (std::size_t i = first; i <= last && last > first; ++i) {
        if (has_seeds(b, i, i) && !may_reach(sides_, b, i, i)) clear(b, i, i);
      }
    }
  }

  [[nodiscard]] BlockWork work() const { return {nets_.filled_count(), side_count_}; }

 private:
  /// The word of `seeds_[i]` that holds the seeds of block `b`. The sets of longer units are
  /// shorter, but each has a spare word.
  [[nodiscard]] std::uint64_t* word_of(std::int64_t b, std::size_t i) {
    std::vector<std::uint64_t>& words = seeds_[i].words();
    const auto index = static_cast<std::size_t>(b / 2);
    return index < words.size() ? &words[index] : nullptr;
  }

  [[nodiscard]] bool has_seeds(std::int64_t b, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i <= last; ++i) {
      const std::uint64_t* const word = word_of(b, i);
      if (word != nullptr && (*word & mask_of_block(b)) != 0) return true;
    }
    return false;
  }

  void clear(std::int64_t b, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i <= last; ++i) {
      if (std::uint64_t* const word = word_of(b, i)) *word &= ~mask_of_block(b);
    }
  }

  template <class Side>
  [[nodiscard]] bool may_reach(BothSides<Side>& sides, std::int64_t b, std::size_t first,
                               std::size_t last) {
    const auto length_of = [&](std::size_t i) {
      return rule_.first_unit_length + static_cast<std::int64_t>(i);
    };
    const auto scores = rule_.min_scores.begin();
    const UnitLengths units{length_of(first), length_of(last),
                            *std::min_element(scores + static_cast<std::ptrdiff_t>(first),
                                              scores + static_cast<std::ptrdiff_t>(last) + 1)};
    ++side_count_;
    const SideReach right = sides.right.follow(b, units, 0);
    if (right.is_open || right.best_score >= units.min_score) return true;
    ++side_count_;
    const SideReach left = sides.left.follow(b, units, right.best_score);
    return left.is_open || left.best_score >= units.min_score;
  }

  const LagRule& rule_;
  std::vector<CBitSet>& seeds_;
  std::int64_t max_lag_;
  CBlockNets nets_;
  BothSides<CBlockSide> sides_;
  BothSides<CBlockDrift> drifts_;
  std::uint64_t side_count_ = 0;
};

}  // namespace

BlockWork sift_by_blocks(const char* text, std::uint64_t length, const LagRule& rule,
                         const Segment& segment, std::vector<CBitSet>& seeds) {
  assert(rule.last_unit_length() < static_cast<std::int64_t>(length));
  assert(segment.first % kWordBits == 0 && (segment.end % kWordBits == 0 || segment.end == length));
  if (rule.last_unit_length() < kMinBlockUnit) return {};
  CBlockSieve sieve(text, length, rule, seeds);
  const auto first = static_cast<std::int64_t>(segment.first);
  for (std::int64_t b = first / kBlockCharacters;
       b * kBlockCharacters < static_cast<std::int64_t>(segment.end); ++b) {
    sieve.sift_block(b);
  }
  return sieve.work();
}

BlockWork sift_text_by_blocks(const char* text, std::uint64_t length, const LagRule& rule,
                              std::vector<CBitSet>& seeds) {
  return sift_by_blocks(text, length, rule, {0, length}, seeds);
}

}  // namespace quorix
