#pragma once

/// @file
/// Copies what a report reader reads, byte for byte, while it checks it: a merged report has the
/// blocks of its parts, without their heads and closing lines.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tools/io/byte_input.h"
#include "tools/io/output.h"

namespace quorix::tools {

/// Takes the bytes of one report as they are read, and writes those between the head and the
/// closing line. Holds back as many bytes as the closing line has.
class CBodyCopy {
 public:
  /// Without an output, the bytes are only kept, for `head`.
  explicit CBodyCopy(COutput* output) : output_(output) {}

  /// Takes the next bytes. Throws: OutputError.
  void take(std::string_view bytes);

  /// Returns the first `length` bytes. REQUIRES: so many were taken, and the body has not begun.
  [[nodiscard]] std::string head(std::size_t length) const { return held_.substr(0, length); }

  /// The head has ended after `head_length` bytes; what follows is the body. REQUIRES: there is an
  /// output. Throws: OutputError.
  void begin_body(std::size_t head_length);

 private:
  COutput* output_;
  std::string held_;
  bool is_in_body_ = false;
};

/// An input whose bytes are copied on their way.
class CCopiedInput : public CByteInput {
 public:
  CCopiedInput(std::unique_ptr<CByteInput> input, CBodyCopy& copy)
      : input_(std::move(input)), copy_(copy) {}

  std::size_t read(char* block, std::size_t size) override {
    const std::size_t count = input_->read(block, size);
    copy_.take({block, count});
    return count;
  }

  [[nodiscard]] std::string cut_reason() const override { return input_->cut_reason(); }

 private:
  std::unique_ptr<CByteInput> input_;
  CBodyCopy& copy_;
};

}  // namespace quorix::tools
