// A hash table with linear probing. Its index holds the numbers of the entries, at least half of it
// free. Letters are digits of base 5 in the order of the alphabet, so packed texts of one length
// are ordered as the texts are.

#include "tools/summary/unit_table.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <stdexcept>

namespace quorix::tools {

namespace {

constexpr std::string_view kLetters = "ACGNT";
constexpr std::uint32_t kBase = 5;
constexpr std::size_t kLettersPerByte = 3;

std::uint32_t digit_of(char letter) {
  switch (letter) {
    case 'A':
      return 0;
    case 'C':
      return 1;
    case 'G':
      return 2;
    case 'N':
      return 3;
    default:
      return 4;
  }
}

std::size_t packed_length(std::size_t length) {
  return (length + kLettersPerByte - 1) / kLettersPerByte;
}

}  // namespace

RepeatSums& CUnitTable::sums_of(std::string_view unit) {
  pack(unit);
  const std::uint32_t hash = packed_hash();
  const auto unit_length = static_cast<std::uint32_t>(unit.size());
  const std::size_t mask = index_.size() - 1;
  std::size_t slot = hash & mask;
  for (; index_[slot] != kNoEntry; slot = (slot + 1) & mask) {
    Entry& entry = entries_[index_[slot]];
    if (entry.hash == hash && entry.unit_length == unit_length && has_packed_text(entry)) {
      return entry.sums;
    }
  }
  if (entries_.size() == kNoEntry) throw std::length_error("there are too many distinct units");
  index_[slot] = static_cast<std::uint32_t>(entries_.size());
  entries_.push_back({{}, texts_.size(), unit_length, hash});
  texts_.insert(texts_.end(), packed_.begin(), packed_.end());
  if (2 * entries_.size() > index_.size()) grow_index();
  return entries_.back().sums;
}

/// Makes `packed_` the letters of a unit. Missing letters of the last byte count as A.
void CUnitTable::pack(std::string_view unit) {
  packed_.clear();
  for (std::size_t begin = 0; begin < unit.size(); begin += kLettersPerByte) {
    std::uint32_t byte = 0;
    for (std::size_t i = begin; i < begin + kLettersPerByte; ++i) {
      byte = kBase * byte + (i < unit.size() ? digit_of(unit[i]) : 0);
    }
    packed_ += static_cast<char>(byte);
  }
}

std::uint32_t CUnitTable::packed_hash() const {
  constexpr unsigned kHalf = 32;
  const std::uint64_t hash = std::hash<std::string>()(packed_);
  return static_cast<std::uint32_t>(hash ^ (hash >> kHalf));
}

bool CUnitTable::has_packed_text(const Entry& entry) const {
  const auto begin = texts_.begin() + static_cast<std::ptrdiff_t>(entry.text_begin);
  return std::equal(packed_.begin(), packed_.end(), begin, [](char left, std::uint8_t right) {
    return static_cast<std::uint8_t>(left) == right;
  });
}

void CUnitTable::grow_index() {
  std::vector<std::uint32_t>(2 * index_.size(), kNoEntry).swap(index_);
  const std::size_t mask = index_.size() - 1;
  for (std::uint32_t number = 0; number < entries_.size(); ++number) {
    std::size_t slot = entries_[number].hash & mask;
    while (index_[slot] != kNoEntry) slot = (slot + 1) & mask;
    index_[slot] = number;
  }
}

std::vector<std::uint32_t> CUnitTable::commonest(std::size_t max_count) const {
  std::vector<std::uint32_t> numbers(entries_.size());
  std::iota(numbers.begin(), numbers.end(), 0U);
  const std::size_t count = max_count == 0 ? numbers.size() : std::min(max_count, numbers.size());
  std::partial_sort(
      numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(count), numbers.end(),
      [this](std::uint32_t left, std::uint32_t right) { return comes_before(left, right); });
  numbers.resize(count);
  return numbers;
}

bool CUnitTable::comes_before(std::uint32_t left, std::uint32_t right) const {
  const Entry& a = entries_[left];
  const Entry& b = entries_[right];
  if (a.sums.repeat_count != b.sums.repeat_count) {
    return a.sums.repeat_count > b.sums.repeat_count;
  }
  if (a.sums.base_count != b.sums.base_count) return a.sums.base_count > b.sums.base_count;
  if (a.unit_length != b.unit_length) return a.unit_length < b.unit_length;
  const auto text_a = texts_.begin() + static_cast<std::ptrdiff_t>(a.text_begin);
  const auto text_b = texts_.begin() + static_cast<std::ptrdiff_t>(b.text_begin);
  const auto length = static_cast<std::ptrdiff_t>(packed_length(a.unit_length));
  return std::lexicographical_compare(text_a, text_a + length, text_b, text_b + length);
}

std::string CUnitTable::unit_at(std::uint32_t number) const {
  const Entry& entry = entries_[number];
  std::string unit(packed_length(entry.unit_length) * kLettersPerByte, ' ');
  auto text = texts_.begin() + static_cast<std::ptrdiff_t>(entry.text_begin);
  for (std::size_t begin = 0; begin < unit.size(); begin += kLettersPerByte, ++text) {
    std::uint32_t byte = *text;
    for (std::size_t i = kLettersPerByte; i-- > 0; byte /= kBase) {
      unit[begin + i] = kLetters[byte % kBase];
    }
  }
  unit.resize(entry.unit_length);
  return unit;
}

}  // namespace quorix::tools
