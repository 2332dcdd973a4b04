#include "search/growth_paths.h"

#include <algorithm>
#include <cstddef>

namespace quorix {

namespace {

/// Stops that are kept at most, in 40 MB.
constexpr std::size_t kMostStops = std::size_t{1} << 19U;
constexpr std::size_t kFewestPlaces = std::size_t{1} << 10U;
constexpr std::size_t kMostNoted = std::size_t{1} << 15U;

std::uint32_t narrow(std::int64_t count) {
  return static_cast<std::uint32_t>(count);
}

}  // namespace

void CGrowthPaths::clear() {
  noted_.clear();
  stops_.clear();
  places_.clear();
  is_full_ = false;
}

void CGrowthPaths::begin_way() {
  noted_.clear();
  if (!is_full_) return;
  work_.forgotten += stops_.size();
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
  const Stop& kept = stops_[id];
  const bool is_same = kept.edge == stop.edge && kept.unit_code == stop.unit_code &&
                       kept.is_free == is_free && (is_free || kept.score == stop.score);
  return is_same ? id : kNone;
}

CGrowthPaths::Way CGrowthPaths::follow_kept(StopId from, std::int64_t score,
                                            std::int64_t free_score, std::int64_t best_score) {
  Way way{from, kNone, from};
  const std::int64_t root_score = score - stops_[from].height;
  std::uint64_t steps = 0;
  for (; stops_[way.to].next != kNone; ++steps) {
    const Stop& stop = stops_[way.to];
    const bool is_same_score = root_score + stop.height == stop.score;
    const bool is_jump_sure = (is_same_score && stop.is_score_of_root) ||
                              (stop.is_jump_free && root_score + stop.lowest >= free_score);
    if (is_jump_sure) {
      if (root_score + stop.highest > best_score) {
        best_score = root_score + stop.highest;
        way.best = stop.highest_at;
      }
      way.to = stop.jump;
      continue;
    }
    if (!is_same_score && !(stop.is_free && root_score + stop.height >= free_score)) break;
    const std::int64_t next_score = root_score + stops_[stop.next].height;
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
  if (from == kNone || stops_[from].next == kNone) {
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
  is_full_ = is_full_ || stops_.size() + noted_.size() >= kMostStops;
  if (is_full_) noted_.clear();
  return !is_full_;
}

CGrowthPaths::StopId CGrowthPaths::keep_root(const NotedStop& last) {
  const StopId id = narrow(static_cast<std::int64_t>(stops_.size()));
  const bool is_free = last.stop.score >= last.free_score;
  return keep({last.stop.edge, last.stop.unit_code, last.stop.score, 0, kNone, id, 0, 0, 0, 0, 0, 0,
               id, '\0', is_free, is_free, true});
}

/// Keeps the noted stops, behind which `stop`, which is kept as `id`, was come to.
void CGrowthPaths::keep_noted_before(StopId id, const GrowthStop& stop) {
  if (!has_room_for_noted()) return;
  const GrowthStop* later = &stop;
  for (auto noted = noted_.rbegin(); noted != noted_.rend(); ++noted) {
    const Stop& next = stops_[id];
    const GrowthStop& own = noted->stop;
    Stop kept{own.edge,
              own.unit_code,
              own.score,
              next.height + (own.score - later->score),
              id,
              id,
              next.edits + 1,
              next.mismatches + narrow(later->mismatches - own.mismatches),
              next.insertions + narrow(later->insertions - own.insertions),
              next.n_count + narrow(later->n_count - own.n_count),
              0,
              0,
              id,
              noted->kind,
              own.score >= noted->free_score,
              false,
              next.is_score_of_root && later->score == next.score};
    set_jump(kept);
    id = keep(kept);
    later = &own;
  }
  noted_.clear();
}

/// Jumps are as long as those of a skew binary number: two of the same length make one of both.
void CGrowthPaths::set_jump(Stop& stop) const {
  const Stop& next = stops_[stop.next];
  const Stop& middle = stops_[next.jump];
  const Stop& far = stops_[middle.jump];
  stop.lowest = stop.height;
  stop.highest = next.height;
  stop.highest_at = stop.next;
  stop.is_jump_free = stop.is_free;
  if (next.edits - middle.edits != middle.edits - far.edits || next.next == kNone) return;
  stop.jump = middle.jump;
  for (const Stop* part : {&next, &middle}) {
    stop.lowest = std::min(stop.lowest, part->lowest);
    if (part->highest > stop.highest) {
      stop.highest = part->highest;
      stop.highest_at = part->highest_at;
    }
    stop.is_jump_free = stop.is_jump_free && part->is_jump_free;
  }
}

CGrowthPaths::StopId CGrowthPaths::keep(const Stop& stop) {
  if (2 * stops_.size() >= places_.size()) {
    make_places(std::max(kFewestPlaces, 2 * places_.size()));
  }
  if (stops_.empty()) origin_ = stop.edge;
  const StopId id = narrow(static_cast<std::int64_t>(stops_.size()));
  stops_.push_back(stop);
  ++work_.stored;
  places_[place_of(stop.edge, stop.unit_code, stop.score, stop.is_free)] = id;
  return id;
}

/// A place holds the latest of the stops that share it.
void CGrowthPaths::make_places(std::size_t count) {
  places_.assign(count, kNone);
  work_.placed += stops_.size();
  StopId id = 0;
  for (const Stop& stop : stops_) {
    places_[place_of(stop.edge, stop.unit_code, stop.score, stop.is_free)] = id++;
  }
}

CGrowthPaths::Stretch CGrowthPaths::between(StopId from, StopId to) const {
  const Stop& first = stops_[from];
  const Stop& last = stops_[to];
  const auto edits = std::int64_t{first.edits} - last.edits;
  const auto mismatches = std::int64_t{first.mismatches} - last.mismatches;
  const auto insertions = std::int64_t{first.insertions} - last.insertions;
  return {last.edge,
          std::int64_t{last.height} - first.height,
          mismatches,
          insertions,
          edits - mismatches - insertions,
          std::int64_t{first.n_count} - last.n_count};
}

void CGrowthPaths::append_edits(StopId from, StopId to, std::ptrdiff_t base_offset,
                                fastvector<Edit>& edits) const {
  for (StopId id = from; id != to; id = stops_[id].next) {
    const Stop& stop = stops_[id];
    edits.push_back({stop.kind == 'D' ? stop.edge : stop.edge + base_offset, stop.kind});
  }
}

}  // namespace quorix
