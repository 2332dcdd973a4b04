#pragma once

/// @file
/// The text of gzip input (RFC 1952): one member or many in a row, as `gzip`, `bgzip` and `cat`
/// write them. The text goes straight from the inflater to the reader, in bounded memory.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "sequence/byte_source.h"
#include "sequence/compressed_bytes.h"
#include "sequence/inflater.h"

namespace quorix {

class CGzipSource : public CByteSource {
 public:
  /// Inflates what `first` and then `source` have. `first` is copied. REQUIRES: it begins with the
  /// two bytes of a gzip member. Throws: std::bad_alloc.
  CGzipSource(std::unique_ptr<CByteSource> source, std::string_view first);

  /// A read fails where a member is damaged or cut short, where its text does not match its
  /// checksum or length, where other bytes than zeros follow the last member, and where BGZF lacks
  /// its end mark. All text before that is handed over first. Zeros after the last member are
  /// padding, as for `gzip`. Throws: std::bad_alloc.
  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override;

  [[nodiscard]] std::string failure_reason() const override { return failure_reason_; }
  [[nodiscard]] bool is_cut_short() const override { return is_cut_short_; }

 private:
  [[nodiscard]] bool begin_member();
  void take_padding();
  void inflate(std::span<char>& room);
  void end_member();
  [[nodiscard]] std::uint32_t take_number();
  void fail(const std::string& fault);

  std::unique_ptr<CByteSource> source_;
  CCompressedBytes bytes_;
  CInflater inflater_;
  const char* part_ = "";           ///< the part of the member that is being taken, for a message
  std::uint64_t member_start_ = 0;  ///< compressed bytes before the member
  bool is_in_member_ = false;
  bool is_bgzf_ = false;         ///< the member is a block of BGZF
  bool lacks_end_mark_ = false;  ///< the last member is BGZF and has text
  bool has_failed_ = false;
  bool is_cut_short_ = false;
  std::string failure_reason_;
};

}  // namespace quorix
