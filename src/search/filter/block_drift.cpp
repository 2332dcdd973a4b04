// Buckets at the ends that have no path alive are cut off after each block, so few are left where
// the bases are strange to the unit.

#include "search/filter/block_drift.h"

#include <algorithm>
#include <limits>

namespace quorix {

namespace {

/// No score that counts is as low, and a block makes no score that counts of it.
constexpr std::int32_t kDeadScore = std::numeric_limits<std::int32_t>::min() / 2;

}  // namespace

SideReach CBlockDrift::follow(std::int64_t block, const UnitLengths& units, std::int64_t entry) {
  units_ = units;
  best_ = entry;
  is_open_ = false;
  paths_.first = units.first / CBlockNets::kBucketLags;
  paths_.count = units.last / CBlockNets::kBucketLags - paths_.first + 1;
  std::fill_n(paths_.scores.begin(), paths_.count, static_cast<std::int32_t>(entry));
  const std::int64_t tail = tail_of(block, units);
  for (int copy = 0; copy < kMaxBlockCopies; ++copy) {
    const bool is_alive = side_ == BlockSide::kRight ? read_copy_rightward(block, tail)
                                                     : read_copy_leftward(block, tail);
    if (!is_alive || !wrap()) return {best_, is_open_};
  }
  return {best_, true};
}

bool CBlockDrift::read_copy_rightward(std::int64_t block, std::int64_t tail) {
  if (!add_block(BlockPath::kOutOf, BlockPath::kWithin, block, paths_)) return false;
  for (std::int64_t b = block + 1; b < tail; ++b) {
    if (!add_block(BlockPath::kThrough, BlockPath::kInto, b, paths_)) return false;
  }
  LagScores ended;  // at the end of the unit, wherever that is
  for (std::int64_t b = tail; b < tail + kTailBlocks && paths_.count > 0; ++b) {
    LagScores ending = paths_;
    add_block(BlockPath::kInto, BlockPath::kInto, b, ending);
    raise(ended, ending);
    add_block(BlockPath::kThrough, BlockPath::kInto, b, paths_);
    if (is_at_end()) return false;
  }
  paths_ = ended;
  return paths_.count > 0;
}

bool CBlockDrift::read_copy_leftward(std::int64_t block, std::int64_t tail) {
  LagScores begun;  // at the end of the unit, wherever that is
  for (std::int64_t b = tail + kTailBlocks - 1; b >= tail; --b) {
    add_block(BlockPath::kThrough, BlockPath::kInto, b, begun);
    LagScores beginning = paths_;
    add_block(BlockPath::kOutOf, BlockPath::kWithin, b, beginning);
    raise(begun, beginning);
    if (is_at_end()) return false;
  }
  raise(paths_, begun);  // the tail may be empty
  for (std::int64_t b = tail - 1; b > block; --b) {
    if (!add_block(BlockPath::kThrough, BlockPath::kInto, b, paths_)) return false;
  }
  return add_block(BlockPath::kInto, BlockPath::kInto, block, paths_);
}

bool CBlockDrift::add_block(BlockPath leaving, BlockPath ending, std::int64_t block,
                            LagScores& paths) {
  if (paths.count == 0) return false;
  const std::int64_t last_lag = (paths.first + paths.count) * CBlockNets::kBucketLags - 1;
  is_open_ = is_open_ || last_lag + kBeginSpread > max_lag_;
  if (is_open_) return false;
  CBlockNets::BucketNets nets;
  read_nets(ending, block, paths, nets);
  for (std::int64_t i = 0; i < paths.count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    best_ = std::max<std::int64_t>(best_, paths.scores[at] + nets[at]);
  }
  if (is_at_end()) return false;
  if (leaving != ending) read_nets(leaving, block, paths, nets);
  return drift(nets, paths);
}

void CBlockDrift::read_nets(BlockPath path, std::int64_t block, const LagScores& paths,
                            CBlockNets::BucketNets& nets) {
  if (path != BlockPath::kOutOf && path != BlockPath::kWithin) {
    nets_.read(side_, path, block, paths.first, paths.count, nets);
    return;
  }
  constexpr std::int64_t kSpread = kBeginSpread / CBlockNets::kBucketLags;
  nets_.read(side_, path, block, paths.first, paths.count + kSpread, nets);
  for (std::int64_t i = 0; i < paths.count; ++i) {
    const auto* const first = nets.begin() + i;
    nets[static_cast<std::size_t>(i)] = *std::max_element(first, first + kSpread + 1);
  }
}

bool CBlockDrift::drift(const CBlockNets::BucketNets& nets, LagScores& paths) {
  const std::int64_t bucket_cost = CBlockNets::kBucketLags * indel_penalty_;
  const std::int64_t far_gain = kBlockCharacters - bucket_cost - indel_penalty_;  // two buckets on
  const std::int64_t highest =
      *std::max_element(paths.scores.begin(), paths.scores.begin() + paths.count);
  // As many buckets as paths may drift to either side.
  const std::int64_t reach = (highest + units_.last + kBlockCharacters) / bucket_cost + 2;
  const std::int64_t count = paths.count + 2 * reach;
  if (!has_room_for(count)) return false;

  LagScores after;
  std::fill_n(after.scores.begin(), count, kDeadScore);
  const auto raise_to = [&](std::int64_t i, std::int64_t score) {
    std::int32_t& at = after.scores[static_cast<std::size_t>(i)];
    at = std::max(at, static_cast<std::int32_t>(score));
  };
  const auto score_at = [&](std::int64_t i) {
    return std::int64_t{paths.scores[static_cast<std::size_t>(i)]};
  };
  for (std::int64_t i = 0; i < paths.count; ++i) {
    const std::int64_t score = score_at(i) + nets[static_cast<std::size_t>(i)];
    for (std::int64_t to = i - 1; to <= i + 1; ++to) raise_to(to + reach, score);
  }
  // The highest of the buckets passed so far, less what each further one costs.
  std::int64_t passed = kDeadScore;
  for (std::int64_t i = 0; i + 2 + reach < count; ++i) {
    passed = std::max(passed - bucket_cost, i < paths.count ? score_at(i) : kDeadScore);
    raise_to(i + 2 + reach, passed + far_gain);
  }
  passed = kDeadScore;
  for (std::int64_t i = paths.count - 1; i - 2 + reach >= 0; --i) {
    passed = std::max(passed - bucket_cost, i >= 0 ? score_at(i) : kDeadScore);
    raise_to(i - 2 + reach, passed + far_gain);
  }

  std::int64_t low = std::max<std::int64_t>(reach - paths.first, 0);  // lags below 0 are none
  std::int64_t high = count - 1;
  const auto is_dead = [&](std::int64_t i) {
    return after.scores[static_cast<std::size_t>(i)] <= -units_.last;
  };
  while (low <= high && is_dead(low)) ++low;
  while (low <= high && is_dead(high)) --high;
  paths.first += low - reach;
  paths.count = high - low + 1;
  for (std::int64_t i = 0; i < paths.count; ++i) {
    paths.scores[static_cast<std::size_t>(i)] =
        is_dead(low + i) ? kDeadScore : after.scores[static_cast<std::size_t>(low + i)];
  }
  return paths.count > 0;
}

bool CBlockDrift::wrap() {
  const auto bucket_after = [](std::int64_t lag, std::int64_t unit_length) {
    return (lag + unit_length) / CBlockNets::kBucketLags;
  };
  const auto first_lag = [&](std::int64_t i) {
    return (paths_.first + i) * CBlockNets::kBucketLags;
  };
  const auto last_lag = [&](std::int64_t i) { return first_lag(i + 1) - 1; };
  LagScores after;
  after.first = bucket_after(first_lag(0), units_.first);
  after.count = bucket_after(last_lag(paths_.count - 1), units_.last) - after.first + 1;
  if (!has_room_for(after.count)) return false;
  std::fill_n(after.scores.begin(), after.count, kDeadScore);
  for (std::int64_t i = 0; i < paths_.count; ++i) {
    const std::int64_t end = bucket_after(last_lag(i), units_.last);
    for (std::int64_t b = bucket_after(first_lag(i), units_.first); b <= end; ++b) {
      std::int32_t& at = after.scores[static_cast<std::size_t>(b - after.first)];
      at = std::max(at, paths_.scores[static_cast<std::size_t>(i)]);
    }
  }
  paths_ = after;
  return true;
}

void CBlockDrift::raise(LagScores& paths, const LagScores& others) {
  if (others.count == 0) return;
  if (paths.count == 0) {
    paths = others;
    return;
  }
  LagScores both;
  both.first = std::min(paths.first, others.first);
  both.count = std::max(paths.first + paths.count, others.first + others.count) - both.first;
  if (!has_room_for(both.count)) return;
  std::fill_n(both.scores.begin(), both.count, kDeadScore);
  for (const LagScores* const each : {static_cast<const LagScores*>(&paths), &others}) {
    for (std::int64_t i = 0; i < each->count; ++i) {
      std::int32_t& at = both.scores[static_cast<std::size_t>(each->first + i - both.first)];
      at = std::max(at, each->scores[static_cast<std::size_t>(i)]);
    }
  }
  paths = both;
}

}  // namespace quorix
