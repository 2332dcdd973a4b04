#pragma once

/// @file
/// The bytes of a fuzz input, taken one after the other. When they run out, what is taken is 0, so
/// that every input means something, and a byte more or less moves nothing but what follows it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorix::fuzz {

class CFuzzInput {
 public:
  CFuzzInput(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  [[nodiscard]] std::size_t remaining() const { return size_; }

  std::uint8_t take_byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }

  bool take_flag() { return (take_byte() & 1) != 0; }

  /// A number from `first` to `last`, both inclusive, from one byte. REQUIRES: at most 256 of them.
  std::int64_t take_between(std::int64_t first, std::int64_t last) {
    return first + take_byte() % (last - first + 1);
  }

  /// One of `choices`, from one byte.
  template <class Value>
  Value take_one_of(const std::vector<Value>& choices) {
    return choices[take_byte() % choices.size()];
  }

  /// Any 32 bits, from four bytes.
  std::uint32_t take_word() {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i) word = word << 8U | take_byte();
    return word;
  }

  /// `most` bytes, or what is left.
  std::string take_text(std::size_t most) {
    std::string text;
    while (text.size() < most && size_ > 0) text += static_cast<char>(take_byte());
    return text;
  }

  /// Up to `most` bases of all that is left. A letter of a base stands for itself and other bytes
  /// below 128 for one of four; a byte above them goes on for up to 16 bases in the period of up to
  /// 8 that the last ones have, so that few bytes make an array.
  std::string take_bases(std::size_t most) {
    std::string bases;
    while (bases.size() < most && size_ > 0) {
      const std::uint8_t byte = take_byte();
      if (byte < 128) {
        const char letter = static_cast<char>(byte);
        const bool is_base = std::string_view("ACGTN").find(letter) != std::string_view::npos;
        bases += is_base ? letter : "ACGT"[byte % 4];
        continue;
      }
      const std::size_t period = 1 + byte % 8;
      for (std::size_t count = 1 + byte / 8 % 16; count > 0 && bases.size() < most; --count) {
        bases += bases.size() < period ? 'A' : bases[bases.size() - period];
      }
    }
    return bases;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

}  // namespace quorix::fuzz
