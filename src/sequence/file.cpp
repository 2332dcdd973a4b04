// After a refill the buffer begins with the last character taken, so one step back is possible even
// then. Line ends are normalised in place: a CR becomes a LF in the buffer, and so stays one if it
// is read again.
//
// What was read before an end or an error is still delivered: the end flag is set only when a
// character is asked for and none is left.

#include "sequence/file.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "sequence/posix_source.h"
#include "sequence/unpacked_source.h"

namespace quorix {

namespace {

constexpr std::size_t kBufferSize = 1'000'000;
constexpr int kLineFeed = '\n';
constexpr int kCarriageReturn = '\r';

}  // namespace

CFile::CFile() : buffer_(kBufferSize), buffer_end_(buffer_.data()), cursor_(buffer_.data()) {}

void CFile::open(const std::string& filename) {
  open(unpacked(open_posix_source(filename)));
}

void CFile::open(std::unique_ptr<CByteSource> source) {
  source_ = std::move(source);
  has_read_error_ = false;
  buffer_end_ = cursor_ = buffer_.data();
  state_ = source_ == nullptr ? kEnd : kGood;
  line_number_ = 1;
}

void CFile::close() {
  source_.reset();
}

std::size_t CFile::fill_buffer(std::size_t keep) {
  const auto buffered = static_cast<std::size_t>(buffer_end_ - buffer_.data());
  const std::size_t kept = std::min(keep, buffered);
  std::memmove(buffer_.data(), buffer_end_ - kept, kept);
  cursor_ = buffer_end_ = buffer_.data() + kept;

  // An end or an error is final: a terminal or a flaky device could deliver more after it.
  if (source_ == nullptr || has_ended_cleanly() || has_read_error_) {
    state_ = static_cast<std::uint8_t>(has_read_error_ ? int{kEnd} : kFail | kEnd);
    return kept;
  }
  const CByteSource::ReadResult result = source_->read(cursor_, kBufferSize - kept);
  buffer_end_ += result.byte_count;
  if (result.outcome == CByteSource::Outcome::kEnd) {
    state_ = static_cast<std::uint8_t>((state_ & ~kGood) | kFail | kEnd);
  } else if (result.outcome == CByteSource::Outcome::kError) {
    has_read_error_ = true;
    state_ = kEnd;
  }
  return kept;
}

int CFile::next_raw_character() {
  if (cursor_ == buffer_end_) {
    // The character before the new ones stays, so that one step back is always possible.
    fill_buffer(1);
    if (is_at_end()) return 0;
  }
  return static_cast<unsigned char>(*cursor_++);
}

int CFile::getchar() {
  int character = next_raw_character();
  if (is_at_end()) return character;
  if (character == kCarriageReturn) {
    cursor_[-1] = kLineFeed;  // for a step back over it
    if (next_raw_character() != kLineFeed && !is_at_end()) ungetchar();
    character = kLineFeed;
  }
  if (character == kLineFeed) ++line_number_;
  return character;
}

void CFile::ungetchar() {
  if (cursor_ == buffer_.data()) {
    state_ = static_cast<std::uint8_t>((state_ & ~kGood) | kEnd);
    return;
  }
  if (!is_at_end() && cursor_[-1] == kLineFeed) --line_number_;
  --cursor_;
}

}  // namespace quorix
