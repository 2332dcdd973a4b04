#include "sequence/compressed_bytes.h"

#include <algorithm>

namespace quorix {

namespace {

constexpr std::size_t kBlockSize = 262'144;

}  // namespace

CCompressedBytes::CCompressedBytes(CByteSource& source, std::string_view first)
    : source_(source), block_(std::max(first.size(), kBlockSize)), size_(first.size()) {
  first.copy(block_.data(), first.size());
}

bool CCompressedBytes::fill() {
  if (taken_ < size_) return true;
  if (has_ended_) return false;
  taken_ = size_ = 0;
  const CByteSource::ReadResult result = source_.read(block_.data(), block_.size());
  if (result.outcome == CByteSource::Outcome::kError) {
    throw UnreadableInput{source_.failure_reason()};
  }
  has_ended_ = result.outcome == CByteSource::Outcome::kEnd;
  size_ = result.byte_count;
  return !has_ended_;
}

unsigned CCompressedBytes::take_byte() {
  if (!fill()) throw EndOfCompressedBytes{};
  const auto byte = static_cast<unsigned char>(unread().front());
  take(1);
  return byte;
}

}  // namespace quorix
