// A header is ten fixed bytes and then up to four optional fields, in the order of their flags
// here. Nothing limits the length of a name or a comment, so they are taken byte by byte and not
// kept.

#include "sequence/gzip_header.h"

#include <array>
#include <string_view>

#include "sequence/inflater.h"

namespace quorix {

namespace {

constexpr unsigned kDeflate = 8;

enum HeaderFlag : unsigned {
  kHasChecksum = 2,
  kHasExtraField = 4,
  kHasName = 8,
  kHasComment = 16,
  kUnknownFlags = 0xe0,
};

/// Takes bytes of a header and keeps their checksum, of which two bytes may follow the header.
class CHeaderBytes {
 public:
  explicit CHeaderBytes(CCompressedBytes& bytes) : bytes_(bytes) {
    add(kGzipFirstByte);
    add(kGzipSecondByte);
  }

  unsigned take() { return add(bytes_.take_byte()); }

  /// Takes a number of two bytes, the low one first.
  unsigned take_number() {
    const unsigned low = take();
    return low | take() << 8U;
  }

  void skip(unsigned count) {
    for (; count > 0; --count) take();
  }

  void skip_text() {
    while (take() != 0) {
    }
  }

  [[nodiscard]] std::uint32_t checksum() const { return checksum_; }

 private:
  unsigned add(unsigned byte) {
    const char character = static_cast<char>(byte);
    checksum_ = extend_checksum(checksum_, std::string_view(&character, 1));
    return byte;
  }

  CCompressedBytes& bytes_;
  std::uint32_t checksum_ = 0;
};

/// Takes the extra field. Its parts have two letters, a length and that many bytes each. Returns
/// true if one of them is that of BGZF: letters BC, and a number of two bytes.
bool take_extra_field(CHeaderBytes& header) {
  bool is_bgzf = false;
  unsigned rest = header.take_number();
  while (rest > 0) {
    if (rest < 4) throw DamagedMember{"its extra field is damaged"};
    const unsigned first = header.take();
    const unsigned second = header.take();
    const unsigned length = header.take_number();
    rest -= 4;
    if (length > rest) throw DamagedMember{"its extra field is damaged"};
    is_bgzf = is_bgzf || (first == 'B' && second == 'C' && length == 2);
    header.skip(length);
    rest -= length;
  }
  return is_bgzf;
}

}  // namespace

GzipHeader take_gzip_header(CCompressedBytes& bytes) {
  constexpr unsigned kTimeAndSystem = 6;  // the time, how hard the compressor tried, its system
  CHeaderBytes header(bytes);
  GzipHeader result;
  if (header.take() != kDeflate) throw DamagedMember{"its compression method is unknown"};
  const unsigned flags = header.take();
  if ((flags & kUnknownFlags) != 0) throw DamagedMember{"its header has unknown flags"};
  header.skip(kTimeAndSystem);
  if ((flags & kHasExtraField) != 0) result.is_bgzf = take_extra_field(header);
  if ((flags & kHasName) != 0) header.skip_text();
  if ((flags & kHasComment) != 0) header.skip_text();
  if ((flags & kHasChecksum) != 0) {
    const unsigned expected = header.checksum() & 0xffffU;
    if (header.take_number() != expected) {
      throw DamagedMember{"its header does not match the checksum of the header"};
    }
  }
  return result;
}

}  // namespace quorix
