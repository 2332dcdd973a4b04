#include "search/extension/edit_memo.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

namespace quorix {

namespace {

// Few at first: many records are short.
constexpr std::size_t kFewestEntries = std::size_t{1} << 6U;
constexpr std::size_t kMostEntries = std::size_t{1} << 14U;

}  // namespace

std::uint64_t CEditMemo::code_of(const char* character, const char* unit_begin,
                                 const char* unit_end, bool is_rightward) {
  std::uint64_t code = 0;
  const std::int64_t unit_length = unit_end - unit_begin;
  assert(unit_length <= kLongestUnit);
  for (std::int64_t i = 0; i < unit_length; ++i) {
    assert(*character != 'N');
    // A, C, T and G differ in these two bits of their letters.
    code = code << 2U | (static_cast<unsigned char>(*character) >> 1U & 3U);
    if (is_rightward) {
      ++character;
      if (character == unit_end) character = unit_begin;
    } else {
      if (character == unit_begin) character = unit_end;
      --character;
    }
  }
  constexpr unsigned kLengthShift = 2 * kLongestUnit;
  return code | static_cast<std::uint64_t>(2 * unit_length + (is_rightward ? 1 : 0))
                    << kLengthShift;
}

std::size_t CEditMemo::place_of(const EditSite& site) const {
  constexpr std::uint64_t kMixer = 0x9E3779B97F4A7C15U;
  const auto position = static_cast<std::uint64_t>(site.limit - site.edge);
  const auto score = static_cast<std::uint64_t>(site.score);
  const std::uint64_t mixed = (position ^ (site.unit_code + score) * kMixer) * kMixer;
  return (mixed >> 50U) & (entries_.size() - 1);
}

char CEditMemo::find(const EditSite& site) {
  if (!entries_.empty()) {
    const Entry& entry = entries_[place_of(site)];
    if (entry.site == site) {
      ++work_.hits;
      return entry.kind;
    }
  }
  ++work_.misses;
  return '\0';
}

void CEditMemo::keep(const EditSite& site, char kind) {
  make_room();
  entries_[place_of(site)] = {site, kind};
  ++kept_count_;
  ++work_.stored;
}

/// At least half of the places are free, as long as there may be more of them.
void CEditMemo::make_room() {
  if (2 * kept_count_ < entries_.size() || entries_.size() == kMostEntries) return;
  std::vector<Entry> former(std::max(kFewestEntries, 4 * entries_.size()),
                            {{nullptr, nullptr, 0, 0}, '\0'});
  former.swap(entries_);
  for (const Entry& entry : former) {
    if (entry.kind == '\0') continue;
    entries_[place_of(entry.site)] = entry;
    ++work_.moved;
  }
}

}  // namespace quorix
