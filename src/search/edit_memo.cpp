#include "search/edit_memo.h"

#include <cstddef>

namespace quorix {

namespace {

constexpr std::size_t kEntries = std::size_t{1} << 14U;

}  // namespace

std::uint64_t CEditMemo::code_of(const char* character, const char* unit_begin,
                                 const char* unit_end, bool is_rightward) {
  std::uint64_t code = 0;
  const std::int64_t unit_length = unit_end - unit_begin;
  for (std::int64_t i = 0; i < unit_length; ++i) {
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

std::size_t CEditMemo::place_of(const EditSite& site) {
  constexpr std::uint64_t kMixer = 0x9E3779B97F4A7C15U;
  const auto position = static_cast<std::uint64_t>(site.limit - site.edge);
  const auto score = static_cast<std::uint64_t>(site.score);
  return ((position ^ (site.unit_code + score) * kMixer) * kMixer) >> 50U;
}

char CEditMemo::find(const EditSite& site) const {
  if (entries_.empty()) return '\0';
  const Entry& entry = entries_[place_of(site)];
  return entry.site == site ? entry.kind : '\0';
}

void CEditMemo::keep(const EditSite& site, char kind) {
  if (entries_.empty()) entries_.resize(kEntries, {{nullptr, nullptr, 0, 0}, '\0'});
  entries_[place_of(site)] = {site, kind};
}

}  // namespace quorix
