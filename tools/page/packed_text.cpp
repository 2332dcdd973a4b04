#include "tools/page/packed_text.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <stdexcept>

namespace quorix::tools {

namespace {

constexpr std::string_view kLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Bases fit two bits, and a higher level makes pages hardly smaller.
constexpr int kLevel = 5;
constexpr int kGzipWindow = 15 + 16;
constexpr int kMemoryLevel = 8;

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
    : output_(output), deflater_(std::make_unique<Deflater>()) {
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
  pack(waiting_, true);
  waiting_.clear();
  if (rest_.empty()) return;
  std::string letters;
  const std::size_t count = rest_.size();
  rest_.resize(3);
  append_letters(letters, reinterpret_cast<const unsigned char*>(rest_.data()), count);
  output_.add(letters);
  rest_.clear();
}

void CPackedText::flush() {
  pack(waiting_, false);
  waiting_.clear();
}

void CPackedText::pack(std::string_view bytes, bool is_last) {
  z_stream& stream = deflater_->stream;
  std::string packed(kBlockSize, '\0');
  do {
    const std::size_t length = std::min<std::size_t>(bytes.size(), std::size_t{1} << 30U);
    // zlib does not change its input, although its pointer is to bytes that may change.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(length);
    bytes.remove_prefix(length);
    const int mode = is_last && bytes.empty() ? Z_FINISH : Z_NO_FLUSH;
    do {
      stream.next_out = reinterpret_cast<Bytef*>(packed.data());
      stream.avail_out = static_cast<uInt>(packed.size());
      if (deflate(&stream, mode) == Z_STREAM_ERROR)
        throw std::logic_error("zlib refuses to deflate");
      write({packed.data(), packed.size() - stream.avail_out});
    } while (stream.avail_out == 0);
  } while (!bytes.empty());
}

/// Writes all whole groups of three bytes and keeps the rest.
void CPackedText::write(std::string_view packed) {
  std::string letters;
  letters.reserve((packed.size() + 2) / 3 * 4 + 4);
  rest_ += packed;
  const auto* const bytes = reinterpret_cast<const unsigned char*>(rest_.data());
  const std::size_t whole = rest_.size() / 3 * 3;
  for (std::size_t i = 0; i < whole; i += 3) append_letters(letters, bytes + i, 3);
  output_.add(letters);
  rest_.erase(0, whole);
}

}  // namespace quorix::tools
