#pragma once

/// @file
/// The text of data in gzip's format (RFC 1952), one member or many in a row.

#include <cstddef>
#include <memory>
#include <string>

#include "tools/io/byte_input.h"

namespace quorix::tools {

class CGzipInput : public CByteInput {
 public:
  /// `name` is for messages. Throws: std::bad_alloc.
  CGzipInput(std::unique_ptr<CByteInput> compressed, std::string name);
  CGzipInput(const CGzipInput&) = delete;
  CGzipInput& operator=(const CGzipInput&) = delete;
  ~CGzipInput() override;

  /// Throws: InputError for data that are damaged. Data that end inside a member end the text
  /// there, and `cut_reason` says so.
  std::size_t read(char* block, std::size_t size) override;

  [[nodiscard]] std::string cut_reason() const override;

 private:
  struct Inflater;

  bool refill();

  std::unique_ptr<CByteInput> compressed_;
  std::string name_;
  std::unique_ptr<Inflater> inflater_;
  bool is_in_member_ = false;
  bool has_ended_ = false;
};

}  // namespace quorix::tools
