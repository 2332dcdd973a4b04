#pragma once

/// @file
/// Text on its way to a stream, gathered in a block of memory: a stream takes a few large pieces at
/// far less cost than many small ones.

#include <cstddef>
#include <cstdio>
#include <span>
#include <string_view>

namespace quorix {

class CStreamText {
 public:
  /// Gathers text for `stream` in `block`, which holds as long as this object does. Write errors
  /// are the stream's to keep.
  CStreamText(std::FILE* stream, std::span<char> block) : stream_(stream), block_(block) {}
  ~CStreamText() { hand_over(); }
  CStreamText(const CStreamText&) = delete;
  CStreamText& operator=(const CStreamText&) = delete;

  /// Appends one character.
  void add(char character) { add(std::string_view(&character, 1)); }

  /// Appends `text`. What does not fit into the block goes on to the stream at once.
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

  /// Appends `count` times the same character.
  void add(std::size_t count, char character) {
    for (; count > 0; --count) add(character);
  }

  /// Hands over what is gathered, so that the stream has all text.
  void hand_over() {
    if (size_ > 0) std::fwrite(block_.data(), 1, size_, stream_);
    size_ = 0;
  }

 private:
  std::FILE* stream_;
  std::span<char> block_;
  std::size_t size_ = 0;  ///< of the text in the block
};

}  // namespace quorix
