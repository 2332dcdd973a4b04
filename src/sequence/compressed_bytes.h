#pragma once

/// @file
/// The compressed bytes of an input, as a reader of gzip members takes them: a few bytes of a
/// header, or whatever there is for the inflater.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sequence/byte_source.h"

namespace quorix {

/// Thrown where the input cannot be read on. `reason` is one line without a line end.
struct UnreadableInput {
  std::string reason;
};

/// Thrown where a gzip member is not as it should be. `fault` is the end of a sentence about it.
struct DamagedMember {
  std::string fault;
};

/// Thrown where a byte is needed and the input has ended.
struct EndOfCompressedBytes {};

class CCompressedBytes {
 public:
  /// Begins with `first`, which is copied, and reads on from `source`, which must outlive this
  /// object. Throws: std::bad_alloc.
  CCompressedBytes(CByteSource& source, std::string_view first);

  /// Returns the bytes that are read and not taken yet, valid until the next call of another
  /// member.
  [[nodiscard]] std::string_view unread() const { return {block_.data() + taken_, size_ - taken_}; }

  /// Reads more if nothing is unread. Returns false at the end of the input, which is final.
  /// Throws: UnreadableInput with the reason of the source.
  [[nodiscard]] bool fill();

  /// Takes the first `count` bytes of `unread()`. REQUIRES: there are that many.
  void take(std::size_t count) {
    taken_ += count;
    position_ += count;
  }

  /// Takes one byte and returns it, 0 to 255. Throws: EndOfCompressedBytes, UnreadableInput.
  [[nodiscard]] unsigned take_byte();

  /// Returns how many bytes have been taken since the beginning of the input.
  [[nodiscard]] std::uint64_t position() const { return position_; }

 private:
  CByteSource& source_;
  std::vector<char> block_;
  std::size_t size_;       ///< bytes of the block that are read
  std::size_t taken_ = 0;  ///< bytes of the block that are taken
  std::uint64_t position_ = 0;
  bool has_ended_ = false;
};

}  // namespace quorix
