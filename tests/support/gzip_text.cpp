#include "support/gzip_text.h"

#include <zlib.h>

#include <algorithm>
#include <cstdlib>

namespace quorix::testing {

namespace {

using std::string_literals::operator""s;

std::string two_bytes(std::size_t number) {
  return four_bytes(number).substr(0, 2);
}

}  // namespace

std::uint32_t crc32_of(std::string_view text) {
  std::uint32_t crc = ~std::uint32_t{0};
  for (const char character : text) {
    crc ^= static_cast<unsigned char>(character);
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
  }
  return ~crc;
}

std::string four_bytes(std::uint64_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i, number >>= 8U) bytes += static_cast<char>(number & 0xffU);
  return bytes;
}

std::string stored(std::string_view text) {
  constexpr std::size_t kMaxBlock = 0xffff;
  std::string data;
  do {
    const std::size_t length = std::min(text.size(), kMaxBlock);
    data += length == text.size() ? '\1' : '\0';  // the first bit marks the last block
    data += two_bytes(length) + two_bytes(~length);
    data += text.substr(0, length);
    text.remove_prefix(length);
    // A block that is not the last one may be followed by an empty one, but need not be.
  } while (!text.empty());
  return data;
}

std::string deflated(std::string_view text, int level) {
  constexpr int kRawDeflate = -15;
  z_stream stream{};
  if (deflateInit2(&stream, level, Z_DEFLATED, kRawDeflate, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    std::abort();
  }
  std::string input(text);
  std::string data(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(data.data());
  stream.avail_out = static_cast<uInt>(data.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END) std::abort();
  data.resize(stream.total_out);
  deflateEnd(&stream);
  return data;
}

std::string gzip_header(const HeaderParts& parts) {
  const int flags = (parts.has_checksum ? 2 : 0) + (parts.extra.empty() ? 0 : 4) +
                    (parts.has_name ? 8 : 0) + (parts.has_comment ? 16 : 0);
  std::string header = "\x1f\x8b\b"s + static_cast<char>(flags) + "TIME\0\3"s;
  if (!parts.extra.empty()) header += two_bytes(parts.extra.size()) + parts.extra;
  if (parts.has_name) header += "genome.fa\0"s;
  if (parts.has_comment) header += "a comment\nof two lines\0"s;
  if (parts.has_checksum) header += four_bytes(crc32_of(header)).substr(0, 2);
  return header;
}

std::string gzip_trailer(std::string_view text) {
  return four_bytes(crc32_of(text)) + four_bytes(text.size());
}

std::string gzip_member(std::string_view text, const HeaderParts& parts) {
  return gzip_header(parts) + deflated(text) + gzip_trailer(text);
}

std::string stored_member(std::string_view text) {
  return gzip_header() + stored(text) + gzip_trailer(text);
}

std::string bgzf_member(std::string_view text) {
  const std::string data = deflated(text);
  const std::size_t header_length = gzip_header({.extra = "BC\2\0??"s}).size();
  const std::size_t length = header_length + data.size() + gzip_trailer(text).size();
  return gzip_header({.extra = "BC\2\0"s + two_bytes(length - 1)}) + data + gzip_trailer(text);
}

std::string bgzf(std::string_view text, std::size_t piece_length) {
  std::string members;
  for (std::size_t start = 0; start < text.size(); start += piece_length) {
    members += bgzf_member(text.substr(start, piece_length));
  }
  return members + bgzf_member("");
}

}  // namespace quorix::testing
