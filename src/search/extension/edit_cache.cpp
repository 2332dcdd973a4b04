// A table with one slot for each hash value: a new entry overwrites what is there. Nothing is lost
// but time, since a site that is not found is judged by a look-ahead again, and neighbouring seeds
// ask for the same sites one soon after the other.
//
// The limit belongs to the key, since a look-ahead ends there: the first-hit search
// (library_members.h) extends up to the last repeat and so moves it. Slots are counted from the
// limit, not from the address of the edge, so that two runs do the same work.
//
// Measured as user time of `quorix -U 28` on the first percent of each fly chromosome: 8.2 s with
// this cache alone, 11.9 s without any. Together with the path cache it gains nothing there: it
// serves extensions that meet few sites, end before the text does, or go on from a cached path.

#include "search/extension/edit_cache.h"

#include <algorithm>

namespace quorix {

namespace {

/// Few slots at first: most records are short.
constexpr std::size_t kMinSlots = std::size_t{1} << 6U;

}  // namespace

void CEditCache::clear() {
  entries_.clear();
  stored_count_ = 0;
}

std::size_t CEditCache::slot_of(const SiteKey& site, const char* limit) const {
  return mixed_key(limit - site.edge, site.unit_code, site.score_class) >> 50U &
         (entries_.size() - 1);
}

char CEditCache::find(const SiteKey& site, const char* limit) {
  if (!entries_.empty()) {
    const Entry& entry = entries_[slot_of(site, limit)];
    if (entry.site == site && entry.limit == limit) {
      ++work_.hits;
      return entry.kind;
    }
  }
  ++work_.misses;
  return '\0';
}

void CEditCache::store(const SiteKey& site, const char* limit, char kind) {
  add_slots();
  entries_[slot_of(site, limit)] = {site, limit, kind};
  ++stored_count_;
  ++work_.stored;
}

/// Ensures that at least half of the slots are free, as long as there may be more of them.
void CEditCache::add_slots() {
  if (2 * stored_count_ < entries_.size() || entries_.size() == kMaxCachedEdits) return;
  std::vector<Entry> former(std::max(kMinSlots, 4 * entries_.size()),
                            {{nullptr, 0, 0}, nullptr, '\0'});
  former.swap(entries_);
  for (const Entry& entry : former) {
    if (entry.kind == '\0') continue;
    entries_[slot_of(entry.site, entry.limit)] = entry;
    ++work_.moved;
  }
}

}  // namespace quorix
