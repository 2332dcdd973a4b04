// The largest bound comes first: what a group rejects, no batch has to look at. A bound serves
// where at least as many seeds are asked for as the plan says.

#include "search/filter/seed_bounds.h"

#include <bit>

#include "search/bits/bit_set.h"
#include "search/filter/batch_bound.h"
#include "search/filter/group_bound.h"
#include "search/filter/single_bound.h"

namespace quorix {

// Neighbours are the bits of a word.
static_assert(kGroupSeeds == kWordBits && kBatchSeeds == 32);

namespace {

/// The word whose lowest `count` bits are set. REQUIRES: 1 <= count <= kWordBits.
std::uint64_t lowest_bits(std::int64_t count) {
  return ~std::uint64_t{0} >> static_cast<unsigned>(64 - count);
}

}  // namespace

bool CSeedBounds::is_group_rejected(std::uint64_t p, std::uint64_t asked) {
  if (undecided_group_.cover(p)) return false;
  ++work_.groups;
  if (group_bound(text_, question(p, asked), for_groups_) == 0) return true;
  undecided_group_ = {p, asked, asked};
  return false;
}

CSeedBounds::Verdicts CSeedBounds::bound_neighbours(std::uint64_t p, std::uint64_t asked) {
  const auto serves = [](std::uint64_t seeds, int min_seeds) {
    return min_seeds != 0 && std::popcount(seeds) >= min_seeds;
  };
  const std::uint64_t group =
      unit_.bounds.min_group_seeds == 0 ? 0 : asked & lowest_bits(group_bases(unit_.unit_length));
  if (serves(group, unit_.bounds.min_group_seeds) && is_group_rejected(p, group)) {
    return {p, group, 0};
  }
  const auto batch = static_cast<std::uint32_t>(asked);
  if (serves(batch, unit_.bounds.min_batch_seeds)) {
    ++work_.batches;
    return {p, batch, batch_bound(text_, question(p, batch), for_batches_)};
  }
  if (serves(1, unit_.bounds.min_single_seeds)) {
    ++work_.singles;
    return {p, 1, single_bound(text_, question(p, 1), for_singles_)};
  }
  return {p, asked, asked};
}

}  // namespace quorix
