#pragma once

/// @file
/// Input bytes of a text that come in pieces of one length, and what comes after them. It copies
/// nothing, so that a reader can be tried at full speed.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "sequence/byte_source.h"

namespace quorix::testing {

class CPieceSource : public CByteSource {
 public:
  /// Reads give `piece_length` bytes of `text` each, then `last`: an end or an error. The text must
  /// outlive this. REQUIRES: piece_length >= 1.
  CPieceSource(std::string_view text, std::size_t piece_length, Outcome last)
      : rest_(text), piece_length_(piece_length), last_(last) {}

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    if (rest_.empty()) return {last_, 0};
    const std::size_t count = std::min({room, piece_length_, rest_.size()});
    std::memcpy(destination, rest_.data(), count);
    rest_.remove_prefix(count);
    return {Outcome::kBytes, count};
  }

 private:
  std::string_view rest_;
  std::size_t piece_length_;
  Outcome last_;
};

}  // namespace quorix::testing
