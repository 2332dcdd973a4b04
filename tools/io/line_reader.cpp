#include "tools/io/line_reader.h"

#include <cstring>

namespace quorix::tools {

CLineReader::CLineReader(std::unique_ptr<CByteInput> input, std::size_t block_size)
    : input_(std::move(input)), buffer_(block_size) {}

bool CLineReader::find_line_end() {
  std::size_t searched = 0;
  while (true) {
    const std::size_t from = next_ + searched;
    const void* const found = std::memchr(buffer_.data() + from, '\n', end_ - from);
    if (found != nullptr) {
      line_begin_ = next_;
      next_ = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()) + 1;
      ++line_number_;
      return true;
    }
    searched = end_ - next_;
    if (!refill()) return false;
  }
}

/// Moves what is marked to the front and reads more after it. Returns false at the end of the
/// input.
bool CLineReader::refill() {
  if (mark_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + mark_, end_ - mark_);
    moved_count_ += mark_;
    next_ -= mark_;
    end_ -= mark_;
    mark_ = 0;
  }
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
  const std::size_t count = input_->read(buffer_.data() + end_, buffer_.size() - end_);
  end_ += count;
  return count != 0;
}

}  // namespace quorix::tools
