#pragma once

/// @file
/// Input bytes from a text in memory.

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "sequence/byte_source.h"

namespace quorix::testing {

class CMemorySource : public CByteSource {
 public:
  explicit CMemorySource(std::string text) : text_(std::move(text)) {}

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    const std::size_t count = std::min(room, text_.size() - given_);
    if (count == 0) return {Outcome::kEnd, 0};
    std::memcpy(destination, text_.data() + given_, count);
    given_ += count;
    return {Outcome::kBytes, count};
  }

 private:
  std::string text_;
  std::size_t given_ = 0;
};

}  // namespace quorix::testing
