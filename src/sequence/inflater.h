#pragma once

/// @file
/// Deflate data (RFC 1951) to text, piece by piece, and CRC-32.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace quorix {

class CInflater {
 public:
  enum class Outcome {
    kMore,     ///< the text goes on: more compressed bytes or more room are needed
    kEnd,      ///< the text is complete
    kDamaged,  ///< these are no deflate data; all text before them is made
  };
  struct Step {
    Outcome outcome;
    std::size_t taken;  ///< compressed bytes used up
    std::size_t made;   ///< bytes of text written
  };

  /// Throws: std::bad_alloc.
  CInflater();
  ~CInflater();
  CInflater(const CInflater&) = delete;
  CInflater& operator=(const CInflater&) = delete;

  /// Begins a new text, of which nothing is known yet.
  void begin();

  /// Inflates as much of `compressed` as fits into `room`. With kMore one of the two is used up;
  /// with kEnd `taken` ends with the data. REQUIRES: `begin()` was called, and no step since then
  /// has ended the text or found damage; `room` is not empty. Throws: std::bad_alloc.
  [[nodiscard]] Step inflate(std::string_view compressed, std::span<char> room);

  /// Returns the CRC-32 of the text so far.
  [[nodiscard]] std::uint32_t checksum() const { return checksum_; }

  /// Returns the length of the text so far, in bytes.
  [[nodiscard]] std::uint64_t length() const { return length_; }

 private:
  struct State;

  std::unique_ptr<State> state_;
  std::uint32_t checksum_ = 0;
  std::uint64_t length_ = 0;
};

/// Returns the CRC-32 of a text that has `checksum` up to here and goes on with `bytes`. That of an
/// empty text is 0.
[[nodiscard]] std::uint32_t extend_checksum(std::uint32_t checksum, std::string_view bytes);

}  // namespace quorix
