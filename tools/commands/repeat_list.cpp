#include "tools/commands/repeat_list.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "tools/report/repeat_figures.h"

namespace quorix::tools {

namespace {

/// Returns the perfection, or less than any other where it is no number.
double sorted_perfection(const Repeat& repeat) {
  const double perfection = perfection_of(repeat);
  return std::isfinite(perfection) ? perfection : -HUGE_VAL;
}

}  // namespace

void CRepeatList::add(const Repeat& repeat) {
  std::size_t length = 0;
  for (const auto text : kRepeatTexts) length += (repeat.*text).size();
  Entry entry{repeat, std::make_unique<char[]>(length), sequences_.size() - 1};
  char* place = entry.text.get();
  for (const auto text : kRepeatTexts) {
    const std::string_view part = repeat.*text;
    std::copy(part.begin(), part.end(), place);
    entry.repeat.*text = {place, part.size()};
    place += part.size();
  }
  entries_.push_back(std::move(entry));
}

template <class Number>
void CRepeatList::sort_descending(const Number& number) {
  std::stable_sort(entries_.begin(), entries_.end(), [&](const Entry& left, const Entry& right) {
    return number(left.repeat) > number(right.repeat);
  });
}

void CRepeatList::sort_by_position() {
  const auto place = [this](const Entry& entry) {
    return std::tuple(sequences_[entry.sequence].identifier, entry.repeat.start, entry.repeat.end);
  };
  std::stable_sort(entries_.begin(), entries_.end(), [&](const Entry& left, const Entry& right) {
    return place(left) < place(right);
  });
}

void CRepeatList::write_sorted(SortKey key, CFormatWriter& writer) {
  switch (key) {
    case SortKey::kPosition:
      sort_by_position();
      break;
    case SortKey::kLength:
      sort_descending([](const Repeat& repeat) { return repeat.length(); });
      break;
    case SortKey::kCopies:
      sort_descending(copies_of);
      break;
    case SortKey::kScore:
      sort_descending([](const Repeat& repeat) { return repeat.score; });
      break;
    case SortKey::kPerfection:
      sort_descending(sorted_perfection);
      break;
  }
  for (const Entry& entry : entries_) writer.add(sequences_[entry.sequence], entry.repeat);
}

}  // namespace quorix::tools
