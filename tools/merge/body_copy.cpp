#include "tools/merge/body_copy.h"

#include "tools/report/report_reader.h"

namespace quorix::tools {

namespace {

/// The closing line with its line feed.
constexpr std::size_t kHeldLength = kClosingLine.size() + 1;

}  // namespace

void CBodyCopy::take(std::string_view bytes) {
  if (!is_in_body_ || bytes.size() < kHeldLength) {
    held_ += bytes;
    if (!is_in_body_ || held_.size() <= kHeldLength) return;
    output_->add(std::string_view(held_).substr(0, held_.size() - kHeldLength));
    held_.erase(0, held_.size() - kHeldLength);
    return;
  }
  output_->add(held_);
  output_->add(bytes.substr(0, bytes.size() - kHeldLength));
  held_ = bytes.substr(bytes.size() - kHeldLength);
}

void CBodyCopy::begin_body(std::size_t head_length) {
  const std::string begin = held_.substr(head_length);
  held_.clear();
  is_in_body_ = true;
  take(begin);
}

}  // namespace quorix::tools
