#pragma once

/// @file
/// One bit for each position of a text, in 64-bit words.
///
/// Bits after the last one are clear, which ends a search for a clear bit, and one word is spare,
/// so that the word after that of any position may be read. Code that writes `words()` must keep
/// both.

#include <bit>
#include <cassert>
#include <cstdint>
#include <vector>

namespace quorix {

/// Bits of a word of a set.
inline constexpr std::uint64_t kWordBits = 64;

class CBitSet {
 public:
  /// `size` clear bits. Throws: std::bad_alloc.
  explicit CBitSet(std::uint64_t size = 0) : size_(size), words_(size / kWordBits + 2) {}

  [[nodiscard]] std::uint64_t size() const { return size_; }

  /// Becomes `size` clear bits; keeps its block when that is large enough. Throws: std::bad_alloc.
  void reset(std::uint64_t size) {
    size_ = size;
    words_.assign(size / kWordBits + 2, 0);
  }

  /// Becomes `size` set bits. Throws: std::bad_alloc.
  void reset_to_set(std::uint64_t size) {
    size_ = size;
    words_.assign(size / kWordBits + 2, ~std::uint64_t{0});
    words_[size / kWordBits] = ~(~std::uint64_t{0} << (size % kWordBits));
    words_.back() = 0;
  }

  /// True if the bit of `position` is set. REQUIRES: position < size().
  [[nodiscard]] bool test(std::uint64_t position) const {
    return (words_[position / kWordBits] >> (position % kWordBits) & 1) != 0;
  }

  /// Sets the bit of `position`. REQUIRES: position < size().
  void set(std::uint64_t position) {
    words_[position / kWordBits] |= std::uint64_t{1} << (position % kWordBits);
  }

  /// Clears the bit of `position`. REQUIRES: position < size().
  void clear(std::uint64_t position) {
    words_[position / kWordBits] &= ~(std::uint64_t{1} << (position % kWordBits));
  }

  /// Sets the bits of [first, last). REQUIRES: first <= last <= size().
  void set_range(std::uint64_t first, std::uint64_t last) {
    assert(first <= last && last <= size_);
    if (first == last) return;
    const std::uint64_t first_word = first / kWordBits;
    const std::uint64_t last_word = (last - 1) / kWordBits;
    const std::uint64_t from_first = ~std::uint64_t{0} << (first % kWordBits);
    const std::uint64_t to_last = ~std::uint64_t{0} >> (kWordBits - 1 - (last - 1) % kWordBits);
    if (first_word == last_word) {
      words_[first_word] |= from_first & to_last;
      return;
    }
    words_[first_word] |= from_first;
    for (std::uint64_t w = first_word + 1; w < last_word; ++w) words_[w] = ~std::uint64_t{0};
    words_[last_word] |= to_last;
  }

  /// Clears the bits of [first, last). REQUIRES: first <= last <= size().
  void clear_range(std::uint64_t first, std::uint64_t last) {
    assert(first <= last && last <= size_);
    if (first == last) return;
    const std::uint64_t first_word = first / kWordBits;
    const std::uint64_t last_word = (last - 1) / kWordBits;
    const std::uint64_t from_first = ~std::uint64_t{0} << (first % kWordBits);
    const std::uint64_t to_last = ~std::uint64_t{0} >> (kWordBits - 1 - (last - 1) % kWordBits);
    if (first_word == last_word) {
      words_[first_word] &= ~(from_first & to_last);
      return;
    }
    words_[first_word] &= ~from_first;
    for (std::uint64_t w = first_word + 1; w < last_word; ++w) words_[w] = 0;
    words_[last_word] &= ~to_last;
  }

  /// The first set bit at or after `position`, or size(). REQUIRES: position <= size().
  [[nodiscard]] std::uint64_t find_set(std::uint64_t position) const {
    assert(position <= size_);
    std::uint64_t w = position / kWordBits;
    std::uint64_t word = words_[w] & (~std::uint64_t{0} << (position % kWordBits));
    while (word == 0) {
      if (++w == words_.size()) return size_;
      word = words_[w];
    }
    return w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(word));
  }

  /// The first set bit of [position, end), or `end`. Reads no word but those of that range.
  /// REQUIRES: end <= size().
  [[nodiscard]] std::uint64_t find_set(std::uint64_t position, std::uint64_t end) const {
    assert(end <= size_);
    if (position >= end) return end;
    const std::uint64_t last_word = (end - 1) / kWordBits;
    std::uint64_t w = position / kWordBits;
    std::uint64_t word = words_[w] & (~std::uint64_t{0} << (position % kWordBits));
    while (word == 0) {
      if (++w > last_word) return end;
      word = words_[w];
    }
    const std::uint64_t found = w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(word));
    return found < end ? found : end;
  }

  /// The first clear bit at or after `position`, or size(). REQUIRES: position <= size().
  [[nodiscard]] std::uint64_t find_clear(std::uint64_t position) const {
    assert(position <= size_);
    std::uint64_t w = position / kWordBits;
    std::uint64_t word = ~words_[w] & (~std::uint64_t{0} << (position % kWordBits));
    while (word == 0) {  // bits after the last one are clear, so the last word ends the loop
      word = ~words_[++w];
    }
    const std::uint64_t found = w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(word));
    return found < size_ ? found : size_;
  }

  /// The first clear bit of [position, end), or `end`, as above.
  [[nodiscard]] std::uint64_t find_clear(std::uint64_t position, std::uint64_t end) const {
    assert(end <= size_);
    if (position >= end) return end;
    const std::uint64_t last_word = (end - 1) / kWordBits;
    std::uint64_t w = position / kWordBits;
    std::uint64_t word = ~words_[w] & (~std::uint64_t{0} << (position % kWordBits));
    while (word == 0) {
      if (++w > last_word) return end;
      word = ~words_[w];
    }
    const std::uint64_t found = w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(word));
    return found < end ? found : end;
  }

  /// The bits of `position` and the 63 positions after it. REQUIRES: position <= size().
  [[nodiscard]] std::uint64_t bits_from(std::uint64_t position) const {
    assert(position <= size_);
    const std::uint64_t w = position / kWordBits;
    const std::uint64_t offset = position % kWordBits;
    const std::uint64_t upper = offset == 0 ? 0 : words_[w + 1] << (kWordBits - offset);
    return words_[w] >> offset | upper;
  }

  /// The same for positions before `end` alone; the other bits are clear. Reads no word but those
  /// of that range. REQUIRES: position < end <= size().
  [[nodiscard]] std::uint64_t bits_from(std::uint64_t position, std::uint64_t end) const {
    assert(position < end && end <= size_);
    const std::uint64_t w = position / kWordBits;
    const std::uint64_t offset = position % kWordBits;
    const bool has_next = (end - 1) / kWordBits > w;
    const std::uint64_t upper =
        offset == 0 || !has_next ? 0 : words_[w + 1] << (kWordBits - offset);
    const std::uint64_t count = end - position;
    const std::uint64_t in_range =
        count >= kWordBits ? ~std::uint64_t{0} : ~(~std::uint64_t{0} << count);
    return (words_[w] >> offset | upper) & in_range;
  }

  /// How many bits are set from `position` on, up to 64. REQUIRES: position <= size().
  [[nodiscard]] int ones_from(std::uint64_t position) const {
    return std::countr_one(bits_from(position));
  }

  /// How many bits are set from `position` down, up to 64. REQUIRES: position < size().
  [[nodiscard]] int ones_down_from(std::uint64_t position) const {
    assert(position < size_);
    const std::uint64_t w = position / kWordBits;
    const std::uint64_t offset = position % kWordBits;
    const std::uint64_t below =
        w == 0 || offset == kWordBits - 1 ? 0 : words_[w - 1] >> (offset + 1);
    return std::countl_one(words_[w] << (kWordBits - 1 - offset) | below);
  }

  /// The words: bit i of word w belongs to position 64 * w + i. Bits after the last one are clear.
  [[nodiscard]] std::vector<std::uint64_t>& words() { return words_; }
  [[nodiscard]] const std::vector<std::uint64_t>& words() const { return words_; }

 private:
  std::uint64_t size_;
  std::vector<std::uint64_t> words_;  ///< the last one is spare and clear
};

}  // namespace quorix
