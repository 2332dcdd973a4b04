#pragma once

/// @file
/// Data of a page: compressed in gzip's format, and written in base64, whose letters mean nothing
/// to a browser. Whatever a record is named, it cannot end the element that holds the data.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

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
    if (bytes.size() >= kBlockSize - waiting_.size()) return add_long(bytes);
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
  }

  /// Appends a number: seven bits a byte, the low ones first, with the top bit set in all bytes but
  /// the last; 0, -1, 1, -2, 2... are 0, 1, 2, 3, 4... there.
  void add_number(std::int64_t number);

  /// Ends the data. Throws: OutputError.
  void finish();

 private:
  struct Deflater;
  static constexpr std::size_t kBlockSize = std::size_t{1} << 16U;

  void add_long(std::string_view bytes);
  void pack(bool is_last);
  void write(std::size_t length);

  COutput& output_;
  std::vector<unsigned char> waiting_;  ///< to be compressed
  std::vector<unsigned char> packed_;   ///< room for what comes out
  std::vector<unsigned char> rest_;     ///< compressed, and not yet letters
  std::unique_ptr<Deflater> deflater_;
};

}  // namespace quorix::tools
