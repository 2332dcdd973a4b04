#pragma once

/// @file
/// The input file, character by character: read in large blocks, every kind of line end folded to
/// a line feed, lines counted, and always able to step back by one character. What is buffered can
/// be seen and taken as a whole, for readers in a hurry.

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
  /// `kFail | kEnd` (the input ended cleanly) and `kEnd` alone (the input is not what it should be,
  /// or the device failed).
  enum Flag : std::uint8_t {
    kFail = 1,  ///< a read of the file returned nothing
    kGood = 2,  ///< nothing has gone wrong
    kEnd = 4,   ///< no more characters
  };

  CFile();

  /// Opens a file, on line 1. When that fails the state is `kEnd`.
  void open(const std::string& filename);

  /// Reads from `source` instead, on line 1; null counts as a failed opening.
  void open(std::unique_ptr<CByteSource> source);

  /// Closes the input; the state stays.
  void close();

  /// The next character, 0 to 255. CR LF, a lone CR and a lone LF each give one line feed. At the
  /// end it gives 0 and sets the end flag: ask the state, not the character.
  int getchar();

  /// Steps back over the character that `getchar` gave last.
  void ungetchar();

  /// The bytes that are buffered and not yet taken, with line ends as they stand in the input;
  /// nothing once the end flag is set. Never reads. Valid until the next call that takes a
  /// character.
  [[nodiscard]] std::string_view unread() const {
    if (is_at_end()) return {};
    return {cursor_, static_cast<std::size_t>(buffer_end_ - cursor_)};
  }

  /// Takes the first `count` of the bytes that `unread` gives, as so many calls of `getchar` would.
  /// REQUIRES: there are so many and no CR or LF is among them.
  void skip(std::size_t count) { cursor_ += count; }

  /// Moves the last `keep` characters of the buffer (or as many as there are) to its front and
  /// reads on behind them. Gives how many were kept. Nothing read sets `kFail | kEnd`; a failed
  /// read leaves `kEnd` alone, now and at every later call.
  std::size_t fill_buffer(std::size_t keep);

  [[nodiscard]] std::uint8_t state() const { return state_; }
  void set_state(std::uint8_t state) { state_ = state; }
  [[nodiscard]] bool is_at_end() const { return (state_ & kEnd) != 0; }

  /// The input ended where a record may end.
  [[nodiscard]] bool has_ended_cleanly() const { return (state_ & kFail) != 0; }

  /// The input is not FASTA at `line_number()`, or the device failed there.
  [[nodiscard]] bool has_format_error() const { return state_ == kEnd; }

  /// Why the device failed, in one line without its end. Empty when it did not, when the reason is
  /// not known, and once the input is closed.
  [[nodiscard]] std::string read_failure_reason() const {
    return has_read_error_ && source_ != nullptr ? source_->failure_reason() : std::string();
  }

  /// The line that the next character is on, from 1.
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
