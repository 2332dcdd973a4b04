#pragma once

/// @file
/// Data of a page: compressed in gzip's format, and written in base64, whose letters mean nothing
/// to a browser. Whatever a record is named, it cannot end the element that holds the data.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/io/output.h"

namespace quorix::tools {

/// Bytes are compressed and written while they come in. The same bytes give the same text.
class CPackedText {
 public:
  explicit CPackedText(COutput& output);
  CPackedText(const CPackedText&) = delete;
  CPackedText& operator=(const CPackedText&) = delete;
  ~CPackedText();

  /// Appends bytes. Throws: OutputError.
  void add(std::string_view bytes) {
    if (bytes.size() > kBlockSize - waiting_.size()) flush();
    if (bytes.size() > kBlockSize) return pack(bytes, false);
    waiting_ += bytes;
  }

  /// Appends a number: seven bits a byte, the low ones first, with the top bit set in all bytes but
  /// the last; 0, -1, 1, -2, 2... are 0, 1, 2, 3, 4... there.
  void add_number(std::int64_t number);

  /// Ends the data. Throws: OutputError.
  void finish();

 private:
  struct Deflater;
  static constexpr std::size_t kBlockSize = std::size_t{1} << 16U;

  void flush();
  void pack(std::string_view bytes, bool is_last);
  void write(std::string_view packed);

  COutput& output_;
  std::string waiting_;  ///< to be compressed
  std::string rest_;     ///< compressed, less than three bytes
  std::unique_ptr<Deflater> deflater_;
};

}  // namespace quorix::tools
