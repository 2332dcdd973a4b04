#include "search/extension/growth_paths.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <limits>
#include <string_view>

namespace quorix {

namespace {

constexpr std::size_t kFewestPlaces = std::size_t{1} << 10U;
constexpr std::size_t kMostNoted = std::size_t{1} << 15U;

constexpr std::string_view kKinds = "MID";
constexpr std::uint32_t kKindMask = 3;

std::uint8_t index_of(char kind) {
  return static_cast<std::uint8_t>(kKinds.find(kind));
}

std::uint32_t narrow(std::int64_t count) {
  assert(count >= 0 && count < std::int64_t{CGrowthPaths::kNone});
  return static_cast<std::uint32_t>(count);
}

/// The sum of two heights, see the header.
std::int32_t sum_of_heights(std::int64_t left, std::int64_t right) {
  const std::int64_t sum = left + right;
  assert(sum >= std::numeric_limits<std::int32_t>::min());
  assert(sum <= std::numeric_limits<std::int32_t>::max());
  return static_cast<std::int32_t>(sum);
}

}  // namespace

void CGrowthPaths::clear() {
  noted_.clear();
  stop_count_ = 0;
  n_counts_.clear();
  places_.clear();
  is_full_ = false;
}

void CGrowthPaths::begin_way() {
  noted_.clear();
  if (!is_full_) return;
  work_.forgotten += stop_count_;
  clear();
}

std::size_t CGrowthPaths::place_of(const char* edge, std::uint64_t unit_code, std::int32_t score,
                                   bool is_free) const {
  constexpr std::uint64_t kMixer = 0x9E3779B97F4A7C15U;
  const auto position = static_cast<std::uint64_t>(edge - origin_);
  const std::uint64_t score_class = is_free ? 1 : static_cast<std::uint64_t>(score) << 1U;
  const std::uint64_t mixed = (position ^ (unit_code + score_class) * kMixer) * kMixer;
  return (mixed >> 32U) & (places_.size() - 1);
}

CGrowthPaths::StopId CGrowthPaths::find(const GrowthStop& stop, std::int64_t free_score) const {
  if (places_.empty()) return kNone;
  const bool is_free = stop.score >= free_score;
  const StopId id = places_[place_of(stop.edge, stop.unit_code, stop.score, is_free)];
  if (id == kNone) return kNone;
  const Stop& kept = stop_at(id);
  const bool is_same = kept.edge == stop.edge && kept.unit_code == stop.unit_code &&
                       (kept.is_free != 0) == is_free && (is_free || kept.score == stop.score);
  return is_same ? id : kNone;
}

CGrowthPaths::Way CGrowthPaths::follow_kept(StopId from, std::int64_t score,
                                            std::int64_t free_score, std::int64_t best_score) {
  Way way{from, kNone, from};
  const std::int64_t root_score = score - stop_at(from).height;
  std::uint64_t steps = 0;
  for (; stop_at(way.to).is_root == 0; ++steps) {
    const Stop& stop = stop_at(way.to);
    const bool is_same_score = root_score + stop.height == stop.score;
    const bool is_jump_sure = (is_same_score && stop.is_score_of_root != 0) ||
                              (stop.is_jump_free != 0 && root_score + stop.lowest >= free_score);
    if (is_jump_sure) {
      if (root_score + stop.highest > best_score) {
        best_score = root_score + stop.highest;
        way.best = stop.highest_at;
      }
      way.to = stop.jump;
      continue;
    }
    if (!is_same_score && !(stop.is_free != 0 && root_score + stop.height >= free_score)) break;
    const std::int64_t next_score = root_score + stop_at(stop.next).height;
    if (next_score > best_score) {
      best_score = next_score;
      way.best = stop.next;
    }
    way.to = stop.next;
  }
  work_.steps += steps;
  return way;
}

CGrowthPaths::Way CGrowthPaths::follow(const GrowthStop& stop, std::int64_t free_score,
                                       std::int64_t best_score) {
  const StopId from = find(stop, free_score);
  if (from == kNone || stop_at(from).is_root != 0) {
    ++work_.misses;
    return {kNone, kNone, kNone};
  }
  ++work_.hits;
  keep_noted_before(from, stop);
  return follow_kept(from, stop.score, free_score, best_score);
}

void CGrowthPaths::note(const GrowthStop& stop, std::int64_t free_score, char kind) {
  if (noted_.size() == kMostNoted) end_way();
  noted_.push_back({stop, free_score, kind});
}

void CGrowthPaths::end_way() {
  if (noted_.empty()) return;
  // Where the last edit led is not known.
  const NotedStop last = noted_.back();
  noted_.pop_back();
  if (noted_.empty() || !has_room_for_noted()) return;
  keep_noted_before(keep_root(last), last.stop);
}

/// Forgets the noted stops if there is none.
bool CGrowthPaths::has_room_for_noted() {
  is_full_ = is_full_ || stop_count_ + noted_.size() >= max_stops_;
  if (is_full_) noted_.clear();
  return !is_full_;
}

CGrowthPaths::StopId CGrowthPaths::keep_root(const NotedStop& last) {
  static_assert(kMaxStops <= kIdMask);
  const bool is_free = last.stop.score >= last.free_score;
  Stop root{};
  root.edge = last.stop.edge;
  root.unit_code = last.stop.unit_code;
  root.score = last.stop.score;
  root.jump = stop_count_ & kIdMask;
  root.highest_at = stop_count_ & kIdMask;
  root.is_free = is_free ? 1 : 0;
  root.is_jump_free = root.is_free;
  root.is_score_of_root = 1;
  root.is_root = 1;
  return keep(root, 0);
}

/// Keeps the noted stops, behind which `stop`, which is kept as `id`, was come to.
void CGrowthPaths::keep_noted_before(StopId id, const GrowthStop& stop) {
  if (!has_room_for_noted()) return;
  const GrowthStop* later = &stop;
  for (auto noted = noted_.rbegin(); noted != noted_.rend(); ++noted) {
    const Stop& next = stop_at(id);
    const GrowthStop& own = noted->stop;
    Stop kept{};
    kept.edge = own.edge;
    kept.unit_code = own.unit_code;
    kept.score = own.score;
    kept.height = sum_of_heights(next.height, std::int64_t{own.score} - later->score);
    kept.next = kept.jump = id & kIdMask;
    kept.edits = (next.edits + 1) & kIdMask;
    kept.mismatches = (next.mismatches + narrow(later->mismatches - own.mismatches)) & kIdMask;
    kept.insertions = (next.insertions + narrow(later->insertions - own.insertions)) & kIdMask;
    kept.kind = index_of(noted->kind) & kKindMask;
    kept.is_free = own.score >= noted->free_score ? 1 : 0;
    kept.is_score_of_root = next.is_score_of_root != 0 && later->score == next.score ? 1 : 0;
    set_jump(kept);
    id = keep(kept, n_count_at(id) + narrow(later->n_count - own.n_count));
    later = &own;
  }
  noted_.clear();
}

/// Jumps are as long as those of a skew binary number: two of the same length make one of both.
void CGrowthPaths::set_jump(Stop& stop) const {
  const Stop& next = stop_at(stop.next);
  const Stop& middle = stop_at(next.jump);
  const Stop& far = stop_at(middle.jump);
  stop.lowest = stop.height;
  stop.highest = next.height;
  stop.highest_at = stop.next;
  stop.is_jump_free = stop.is_free;
  if (next.edits - middle.edits != middle.edits - far.edits || next.is_root != 0) return;
  stop.jump = middle.jump;
  for (const Stop* part : {&next, &middle}) {
    stop.lowest = std::min(stop.lowest, part->lowest);
    if (part->highest > stop.highest) {
      stop.highest = part->highest;
      stop.highest_at = part->highest_at;
    }
    if (part->is_jump_free == 0) stop.is_jump_free = 0;
  }
}

CGrowthPaths::StopId CGrowthPaths::keep(const Stop& stop, std::uint32_t n_count) {
  if (stop_count_ >= places_.size()) {
    make_places(std::max(kFewestPlaces, 2 * places_.size()));
  }
  assert(stop_count_ < max_stops_);
  if (stop_count_ == blocks_.size() * kBlockSize) {
    blocks_.push_back(std::make_unique_for_overwrite<Stop[]>(kBlockSize));
  }
  if (stop_count_ == 0) origin_ = stop.edge;
  const StopId id = stop_count_;
  keep_n_count(id, n_count);
  blocks_[id >> kBlockBits][id & (kBlockSize - 1)] = stop;
  ++stop_count_;
  ++work_.stored;
  places_[place_of(stop.edge, stop.unit_code, stop.score, stop.is_free != 0)] = id;
  return id;
}

void CGrowthPaths::keep_n_count(StopId id, std::uint32_t n_count) {
  if (n_counts_.empty() && n_count == 0) return;
  n_counts_.resize(std::size_t{id} + 1);
  n_counts_[id] = n_count;
}

/// A place holds the latest of the stops that share it.
void CGrowthPaths::make_places(std::size_t count) {
  places_.assign(count, kNone);
  work_.placed += stop_count_;
  for (StopId id = 0; id < stop_count_; ++id) {
    const Stop& stop = stop_at(id);
    places_[place_of(stop.edge, stop.unit_code, stop.score, stop.is_free != 0)] = id;
  }
}

CGrowthPaths::Stretch CGrowthPaths::between(StopId from, StopId to) const {
  const Stop& first = stop_at(from);
  const Stop& last = stop_at(to);
  const auto edits = static_cast<std::int64_t>(first.edits - last.edits);
  const auto mismatches = static_cast<std::int64_t>(first.mismatches - last.mismatches);
  const auto insertions = static_cast<std::int64_t>(first.insertions - last.insertions);
  return {last.edge,
          std::int64_t{last.height} - first.height,
          mismatches,
          insertions,
          edits - mismatches - insertions,
          std::int64_t{n_count_at(from)} - n_count_at(to)};
}

void CGrowthPaths::append_edits(StopId from, StopId to, std::ptrdiff_t base_offset,
                                fastvector<Edit>& edits) const {
  for (StopId id = from; id != to; id = stop_at(id).next) {
    const Stop& stop = stop_at(id);
    const char kind = kKinds[stop.kind];
    edits.push_back({kind == 'D' ? stop.edge : stop.edge + base_offset, kind});
  }
}

}  // namespace quorix
