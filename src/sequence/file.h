#pragma once

/// @file
/// The input file, character by character. It is read in large blocks; every kind of line end
/// becomes a line feed, lines are counted, and one step back is always possible. Fast readers can
/// see and take the whole buffer.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sequence/byte_source.h"

namespace quorix {

class CFile {
 public:
  /// Flags of `state()`. A reader of records sees three combinations: `kGood` (more follows),
  /// `kFail | kEnd` (the input ended cleanly) and `kEnd` alone (the input is no FASTA, or the
  /// device failed).
  enum Flag : std::uint8_t {
    kFail = 1,  ///< a read of the file returned nothing
    kGood = 2,  ///< nothing has gone wrong
    kEnd = 4,   ///< no more characters
  };

  CFile();

  /// Opens a file, on line 1. Of gzip, which is known by its first two bytes, the text is read. On
  /// failure the state is `kEnd`.
  void open(const std::string& filename);

  /// Reads from `source` instead, on line 1; null counts as a failed opening.
  void open(std::unique_ptr<CByteSource> source);

  /// Closes the input; the state stays.
  void close();

  /// Returns the next character, 0 to 255. CR LF, a lone CR and a lone LF each become one line
  /// feed. At the end it returns 0 and sets the end flag: ask the state, not the character.
  int getchar();

  /// Steps back over the character that `getchar` returned last.
  void ungetchar();

  /// Returns the buffered bytes that are not taken yet, with line ends as in the input; nothing
  /// once the end flag is set. Never reads. Valid until the next call that takes a character.
  [[nodiscard]] std::string_view unread() const {
    if (is_at_end()) return {};
    return {cursor_, static_cast<std::size_t>(buffer_end_ - cursor_)};
  }

  /// Takes the first `count` bytes of `unread()`, as `count` calls of `getchar` would.
  /// REQUIRES: there are that many, and no CR or LF is among them.
  void skip(std::size_t count) { cursor_ += count; }

  /// Moves the last `keep` characters of the buffer (or all, if there are fewer) to its front and
  /// reads more after them. Returns how many were kept. Reading nothing sets `kFail | kEnd`; a
  /// failed read leaves `kEnd` alone, in this and every later call.
  std::size_t fill_buffer(std::size_t keep);

  [[nodiscard]] std::uint8_t state() const { return state_; }
  void set_state(std::uint8_t state) { state_ = state; }
  [[nodiscard]] bool is_at_end() const { return (state_ & kEnd) != 0; }

  /// Returns true if the input ended where a record may end.
  [[nodiscard]] bool has_ended_cleanly() const { return (state_ & kFail) != 0; }

  /// Returns true if the input is not FASTA at `line_number()`, or the device failed there.
  [[nodiscard]] bool has_format_error() const { return state_ == kEnd; }

  /// Returns why the device failed, in one line without a line end. Empty if it did not fail, if
  /// the reason is unknown, and once the input is closed.
  [[nodiscard]] std::string read_failure_reason() const {
    return has_read_error_ && source_ != nullptr ? source_->failure_reason() : std::string();
  }

  /// Returns the line of the next character, from 1.
  [[nodiscard]] std::uint64_t line_number() const { return line_number_; }

 private:
  int next_raw_character();

  std::unique_ptr<CByteSource> source_;
  bool has_read_error_ = false;
  std::vector<char> buffer_;
  char* buffer_end_;
  char* cursor_;
  std::uint8_t state_ = kEnd;
  std::uint64_t line_number_ = 1;
};

}  // namespace quorix
