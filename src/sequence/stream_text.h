#pragma once

/// @file
/// A buffer for text on its way to a stream: writing a few large pieces costs far less than writing
/// many small ones.

#include <cstddef>
#include <cstdio>
#include <span>
#include <string_view>

namespace quorix {

class CStreamText {
 public:
  /// Collects text for `stream` in `block`, which must outlive this object. A write error stays in
  /// the stream's error flag.
  CStreamText(std::FILE* stream, std::span<char> block) : stream_(stream), block_(block) {}
  ~CStreamText() { hand_over(); }
  CStreamText(const CStreamText&) = delete;
  CStreamText& operator=(const CStreamText&) = delete;

  /// Appends one character.
  void add(char character) { add(std::string_view(&character, 1)); }

  /// Appends `text`. Text that does not fit into the block goes to the stream at once.
  void add(std::string_view text) {
    if (text.size() > block_.size() - size_) {
      hand_over();
      if (text.size() > block_.size()) {
        std::fwrite(text.data(), 1, text.size(), stream_);
        return;
      }
    }
    text.copy(block_.data() + size_, text.size());
    size_ += text.size();
  }

  /// Appends the same character `count` times.
  void add(std::size_t count, char character) {
    for (; count > 0; --count) add(character);
  }

  /// Writes the collected text to the stream.
  void hand_over() {
    if (size_ > 0) std::fwrite(block_.data(), 1, size_, stream_);
    size_ = 0;
  }

 private:
  std::FILE* stream_;
  std::span<char> block_;
  std::size_t size_ = 0;  ///< characters of text in the block
};

}  // namespace quorix
