// An extension notes the sites that it meets. When it joins a cached path, or ends, the noted ones
// are stored from the last to the first, each as the child of the site after it:
//
//     noted    a b c, then R     stored, by id     R  c  b  a
//                                next              R<-c<-b<-a
//
// Invariants. A node points to smaller ids alone and never changes, so there are no cycles and ids
// stay valid until `begin_path` finds the cache full and forgets all sites. The path that found no
// room is not stored. The skips from a node's parent on have the lengths of the digits of a skew
// binary number, of which the first two alone may be equal: these make one skip of the new node, so
// that a node is stored in O(1) and finds any later site in O(log n). `max_at` is the first of the
// best sites, as an extension keeps its best state until it meets a better one. Sites that share a
// slot overwrite each other, which costs time and nothing else: such a site is stored again when it
// is met again.
//
// Measured as user time of `quorix -U 28` on the first percent of each fly chromosome: 4.9 s with
// both caches, 8.2 s without this one.

#include "search/extension/path_cache.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <limits>
#include <string_view>

#include "search/extension/site_key.h"

namespace quorix {

namespace {

/// Few slots at first: many records store few sites.
constexpr std::size_t kMinPathSlots = std::size_t{1} << 10U;
/// Sites that are noted before they are stored: a longer path is stored in parts.
constexpr std::size_t kMaxNoted = std::size_t{1} << 15U;

constexpr std::string_view kKinds = "MID";
constexpr std::uint32_t kKindMask = 3;

std::uint8_t index_of(char kind) {
  return static_cast<std::uint8_t>(kKinds.find(kind));
}

std::uint32_t narrow(std::int64_t count) {
  assert(count >= 0 && count < std::int64_t{CPathCache::kNone});
  return static_cast<std::uint32_t>(count);
}

/// Returns the sum of two heights. It fits: a text that is served gains at most `kMaxCachedScore`,
/// and before an edit, matches must have gained about its penalty.
std::int32_t sum_of_heights(std::int64_t left, std::int64_t right) {
  const std::int64_t sum = left + right;
  assert(sum >= std::numeric_limits<std::int32_t>::min());
  assert(sum <= std::numeric_limits<std::int32_t>::max());
  return static_cast<std::int32_t>(sum);
}

}  // namespace

void CPathCache::clear() {
  // The blocks stay, for the next sites.
  noted_.clear();
  site_count_ = 0;
  n_counts_.clear();
  slots_.clear();
  is_full_ = false;
}

void CPathCache::begin_path() {
  noted_.clear();
  if (!is_full_) return;
  work_.forgotten += site_count_;
  clear();
}

// A node does not store the safe score of its unit. So the slot takes 1 for all safe scores and the
// even number 2 * score for any other.
std::size_t CPathCache::slot_of(const char* edge, std::uint64_t unit_code, std::int32_t score,
                                bool is_safe) const {
  const std::int64_t score_term = is_safe ? 1 : 2 * std::int64_t{score};
  return mixed_key(edge - origin_, unit_code, score_term) >> 32U & (slots_.size() - 1);
}

CPathCache::SiteId CPathCache::find(const EditSite& site, std::int64_t safe_score) const {
  if (slots_.empty()) return kNone;
  const bool is_safe = site.score >= safe_score;
  const SiteId id = slots_[slot_of(site.edge, site.unit_code, site.score, is_safe)];
  if (id == kNone) return kNone;
  const Node& node = node_at(id);
  const SiteKey key{site.edge, site.unit_code, score_class_of(site.score, safe_score)};
  const SiteKey node_key{node.edge, node.unit_code, score_class_of(node.score, safe_score)};
  return node_key == key ? id : kNone;
}

CPathCache::Section CPathCache::follow_path(SiteId from, std::int64_t score,
                                            std::int64_t safe_score, std::int64_t best_score) {
  Section section{from, kNone, from};
  const std::int64_t root_score = score - node_at(from).height;
  std::uint64_t steps = 0;
  for (; node_at(section.to).is_root == 0; ++steps) {
    const Node& node = node_at(section.to);
    const bool is_same_score = root_score + node.height == node.score;
    // Every site of the skip is met again if all scores up to the root are the same as then, or if
    // all of them were safe then and are safe now.
    const bool is_whole_skip_sure =
        (is_same_score && node.repeats_scores_to_root != 0) ||
        (node.is_skip_safe != 0 && root_score + node.min_height >= safe_score);
    if (is_whole_skip_sure) {
      if (root_score + node.max_height > best_score) {
        best_score = root_score + node.max_height;
        section.best = node.max_at;
      }
      section.to = node.skip;
      continue;
    }
    if (!is_same_score && !(node.is_safe != 0 && root_score + node.height >= safe_score)) break;
    const std::int64_t next_score = root_score + node_at(node.next).height;
    if (next_score > best_score) {
      best_score = next_score;
      section.best = node.next;
    }
    section.to = node.next;
  }
  work_.steps += steps;
  return section;
}

CPathCache::Section CPathCache::follow(const EditSite& site, std::int64_t safe_score,
                                       std::int64_t best_score) {
  const SiteId from = find(site, safe_score);
  if (from == kNone || node_at(from).is_root != 0) {
    ++work_.misses;
    return {kNone, kNone, kNone};
  }
  ++work_.hits;
  store_noted_before(from, site);
  return follow_path(from, site.score, safe_score, best_score);
}

void CPathCache::note(const EditSite& site, std::int64_t safe_score, char kind) {
  if (noted_.size() == kMaxNoted) end_path();
  noted_.push_back({site, safe_score, kind});
}

void CPathCache::end_path() {
  if (noted_.empty()) return;
  // Where the last edit led is not known.
  const NotedSite last = noted_.back();
  noted_.pop_back();
  if (noted_.empty() || !has_room_for_noted()) return;
  store_noted_before(store_root(last), last.site);
}

/// Returns false and drops the noted sites if there is no room for them.
bool CPathCache::has_room_for_noted() {
  is_full_ = is_full_ || site_count_ + noted_.size() >= max_sites_;
  if (is_full_) noted_.clear();
  return !is_full_;
}

CPathCache::SiteId CPathCache::store_root(const NotedSite& last) {
  static_assert(kMaxCachedSites <= kIdMask);
  const bool is_safe = last.site.score >= last.safe_score;
  Node root{};
  root.edge = last.site.edge;
  root.unit_code = last.site.unit_code;
  root.score = last.site.score;
  root.skip = site_count_ & kIdMask;
  root.max_at = site_count_ & kIdMask;
  root.is_safe = is_safe ? 1 : 0;
  root.is_skip_safe = root.is_safe;
  root.repeats_scores_to_root = 1;
  root.is_root = 1;
  return store(root, 0);
}

/// Stores the noted sites as descendants of `id`, at which they led to `site`.
void CPathCache::store_noted_before(SiteId id, const EditSite& site) {
  if (!has_room_for_noted()) return;
  const EditSite* later = &site;
  for (auto noted = noted_.rbegin(); noted != noted_.rend(); ++noted) {
    const Node& next = node_at(id);
    const EditSite& own = noted->site;
    Node node{};
    node.edge = own.edge;
    node.unit_code = own.unit_code;
    node.score = own.score;
    node.height = sum_of_heights(next.height, std::int64_t{own.score} - later->score);
    node.next = node.skip = id & kIdMask;
    node.edits = (next.edits + 1) & kIdMask;
    node.mismatches = (next.mismatches + narrow(later->mismatches - own.mismatches)) & kIdMask;
    node.insertions = (next.insertions + narrow(later->insertions - own.insertions)) & kIdMask;
    node.kind = index_of(noted->kind) & kKindMask;
    node.is_safe = own.score >= noted->safe_score ? 1 : 0;
    node.repeats_scores_to_root =
        next.repeats_scores_to_root != 0 && later->score == next.score ? 1 : 0;
    set_skip(node);
    id = store(node, n_count_at(id) + narrow(later->n_count - own.n_count));
    later = &own;
  }
  noted_.clear();
}

/// Sets the skip pointer: over both of the next two skips if they have the same length, else to the
/// next site.
void CPathCache::set_skip(Node& node) const {
  const Node& next = node_at(node.next);
  const Node& middle = node_at(next.skip);
  const Node& far = node_at(middle.skip);
  node.min_height = node.height;
  node.max_height = next.height;
  node.max_at = node.next;
  node.is_skip_safe = node.is_safe;
  if (next.edits - middle.edits != middle.edits - far.edits || next.is_root != 0) return;
  node.skip = middle.skip;
  for (const Node* part : {&next, &middle}) {
    node.min_height = std::min(node.min_height, part->min_height);
    if (part->max_height > node.max_height) {
      node.max_height = part->max_height;
      node.max_at = part->max_at;
    }
    if (part->is_skip_safe == 0) node.is_skip_safe = 0;
  }
}

CPathCache::SiteId CPathCache::store(const Node& node, std::uint32_t n_count) {
  if (site_count_ >= slots_.size()) {
    assign_slots(std::max(kMinPathSlots, 2 * slots_.size()));
  }
  assert(site_count_ < max_sites_);
  if (site_count_ == blocks_.size() * kBlockSize) {
    blocks_.push_back(std::make_unique_for_overwrite<Node[]>(kBlockSize));
  }
  if (site_count_ == 0) origin_ = node.edge;
  const SiteId id = site_count_;
  store_n_count(id, n_count);
  blocks_[id >> kBlockBits][id & (kBlockSize - 1)] = node;
  ++site_count_;
  ++work_.stored;
  slots_[slot_of(node.edge, node.unit_code, node.score, node.is_safe != 0)] = id;
  return id;
}

void CPathCache::store_n_count(SiteId id, std::uint32_t n_count) {
  if (n_counts_.empty() && n_count == 0) return;
  n_counts_.resize(std::size_t{id} + 1);
  n_counts_[id] = n_count;
}

/// A slot holds the latest of the sites that share it.
void CPathCache::assign_slots(std::size_t count) {
  slots_.assign(count, kNone);
  work_.placed += site_count_;
  for (SiteId id = 0; id < site_count_; ++id) {
    const Node& node = node_at(id);
    slots_[slot_of(node.edge, node.unit_code, node.score, node.is_safe != 0)] = id;
  }
}

CPathCache::Sums CPathCache::between(SiteId from, SiteId to) const {
  // Each node holds sums over all edits from its site to the root.
  const Node& first = node_at(from);
  const Node& last = node_at(to);
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

void CPathCache::append_edits(SiteId from, SiteId to, std::ptrdiff_t base_offset,
                              fastvector<Edit>& edits) const {
  for (SiteId id = from; id != to; id = node_at(id).next) {
    const Node& node = node_at(id);
    const char kind = kKinds[node.kind];
    edits.push_back({kind == 'D' ? node.edge : node.edge + base_offset, kind});
  }
}

}  // namespace quorix
