#pragma once

/// @file
/// Lines of an input, without a copy of each. A caller that needs several lines at once sets a mark
/// and keeps offsets from it: bytes after the mark stay in the buffer, although they may move.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/io/byte_input.h"

namespace quorix::tools {

/// A piece of text as its place from the mark of a reader.
struct TextSpan {
  std::size_t begin = 0;
  std::size_t length = 0;
};

class CLineReader {
 public:
  static constexpr std::size_t kBlockSize = std::size_t{1} << 18U;

  /// The buffer begins with `block_size` bytes, and doubles where a marked stretch needs more.
  explicit CLineReader(std::unique_ptr<CByteInput> input, std::size_t block_size = kBlockSize);

  /// Makes `line` the next line, without its line feed, valid until the next call. Returns false at
  /// the end of the input; what stands after the last line feed is no line. Throws: InputError.
  bool next_line(std::string_view& line) {
    if (find_line_end()) {
      line = {buffer_.data() + line_begin_, next_ - 1 - line_begin_};
      return true;
    }
    return false;
  }

  /// From the next line on, all bytes stay in the buffer until the next mark.
  void set_mark() { mark_ = next_; }

  /// Returns the place of `part`, which lies in the line that was read last, from the mark.
  [[nodiscard]] TextSpan span_of(std::string_view part) const {
    return {static_cast<std::size_t>(part.data() - buffer_.data()) - mark_, part.size()};
  }

  /// Returns the text at a place, valid until the next call of `next_line`.
  [[nodiscard]] std::string_view text_at(TextSpan span) const {
    return {buffer_.data() + mark_ + span.begin, span.length};
  }

  /// Returns the number of lines read so far, which is that of the last line, from 1.
  [[nodiscard]] std::uint64_t line_number() const { return line_number_; }

  /// Returns the number of bytes that the lines so far occupy.
  [[nodiscard]] std::uint64_t byte_count() const { return moved_count_ + next_; }

  /// True if bytes follow the last line feed of an input that has ended.
  [[nodiscard]] bool has_open_line() const { return next_ < end_; }

  /// Returns why the input has ended early, or an empty text.
  [[nodiscard]] std::string cut_reason() const { return input_->cut_reason(); }

 private:
  bool find_line_end();
  bool refill();

  std::unique_ptr<CByteInput> input_;
  std::vector<char> buffer_;
  std::size_t mark_ = 0;
  std::size_t line_begin_ = 0;
  std::size_t next_ = 0;  ///< after the line feed of the last line
  std::size_t end_ = 0;   ///< of the bytes in the buffer
  std::uint64_t moved_count_ = 0;
  std::uint64_t line_number_ = 0;
};

}  // namespace quorix::tools
