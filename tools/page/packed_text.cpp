#include "tools/page/packed_text.h"

#include <zlib.h>

#include <array>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

namespace quorix::tools {

namespace {

constexpr std::string_view kLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Bases fit two bits, and a higher level makes pages hardly smaller.
constexpr int kLevel = 5;
constexpr int kGzipWindow = 15 + 16;
constexpr int kMemoryLevel = 8;

constexpr std::size_t kGroup = 3;  // bytes of four letters

/// Appends the letters of three bytes, of which the first `count` count.
void append_letters(std::string& text, const unsigned char* bytes, std::size_t count) {
  const unsigned bits = (static_cast<unsigned>(bytes[0]) << 16U) |
                        (count > 1 ? static_cast<unsigned>(bytes[1]) << 8U : 0U) |
                        (count > 2 ? static_cast<unsigned>(bytes[2]) : 0U);
  text += kLetters[bits >> 18U];
  text += kLetters[(bits >> 12U) & 63U];
  text += count > 1 ? kLetters[(bits >> 6U) & 63U] : '=';
  text += count > 2 ? kLetters[bits & 63U] : '=';
}

}  // namespace

struct CPackedText::Deflater {
  z_stream stream{};
};

CPackedText::CPackedText(COutput& output)
    : output_(output), packed_(kBlockSize), deflater_(std::make_unique<Deflater>()) {
  if (deflateInit2(&deflater_->stream, kLevel, Z_DEFLATED, kGzipWindow, kMemoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
  waiting_.reserve(kBlockSize);
}

CPackedText::~CPackedText() {
  deflateEnd(&deflater_->stream);
}

void CPackedText::add_number(std::int64_t number) {
  auto bits = (static_cast<std::uint64_t>(number) << 1U) ^
              (number < 0 ? std::numeric_limits<std::uint64_t>::max() : 0U);
  std::array<char, 10> bytes{};
  std::size_t count = 0;
  for (; bits >= 0x80U; bits >>= 7U) bytes[count++] = static_cast<char>((bits & 0x7FU) | 0x80U);
  bytes[count++] = static_cast<char>(bits);
  add({bytes.data(), count});
}

void CPackedText::finish() {
  pack(true);
  if (rest_.empty()) return;
  std::string letters;
  const std::size_t count = rest_.size();
  rest_.resize(kGroup);
  append_letters(letters, rest_.data(), count);
  output_.add(letters);
  rest_.clear();
}

/// Fills block after block.
void CPackedText::add_long(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kBlockSize - waiting_.size());
    waiting_.insert(waiting_.end(), part.begin(), part.end());
    bytes.remove_prefix(part.size());
    if (waiting_.size() == kBlockSize) pack(false);
  }
}

/// Compresses what is waiting.
void CPackedText::pack(bool is_last) {
  z_stream& stream = deflater_->stream;
  stream.next_in = waiting_.data();
  stream.avail_in = static_cast<uInt>(waiting_.size());
  do {
    stream.next_out = packed_.data();
    stream.avail_out = static_cast<uInt>(packed_.size());
    if (deflate(&stream, is_last ? Z_FINISH : Z_NO_FLUSH) == Z_STREAM_ERROR) {
      throw std::logic_error("zlib refuses to deflate");
    }
    write(packed_.size() - stream.avail_out);
  } while (stream.avail_out == 0);
  waiting_.clear();
}

/// Writes all whole groups of three bytes and keeps the rest.
void CPackedText::write(std::size_t length) {
  rest_.insert(rest_.end(), packed_.begin(), packed_.begin() + static_cast<std::ptrdiff_t>(length));
  const std::size_t whole = rest_.size() / kGroup * kGroup;
  std::string letters;
  letters.reserve(whole / kGroup * 4);
  for (std::size_t i = 0; i < whole; i += kGroup) append_letters(letters, &rest_[i], kGroup);
  output_.add(letters);
  rest_.erase(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(whole));
}

}  // namespace quorix::tools
