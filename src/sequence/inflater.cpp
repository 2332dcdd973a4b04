// The library is zlib. Two others are faster on genomes (docs/performance.md has the figures), but
// libdeflate needs a whole member and its text in memory, and ISA-L 2.30 was seen to copy from
// before the beginning of a text where data are damaged: what it then makes are bytes of its own
// memory, and how many of them depends on the pieces of the input. zlib finds such copies, and is
// there on every Debian.
//
// Of the library, only raw deflate and the CRC are used. Headers and trailers are taken by
// `gzip_source`, so that every fault has a reason that a user understands.

#include "sequence/inflater.h"

// So that the library promises to only read through its pointer to the input.
#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>

namespace quorix {

namespace {

/// Deflate data without a header, with the largest window that they may need.
constexpr int kRawDeflate = -15;

/// The library counts the bytes of a step in `uInt`.
uInt counted(std::size_t length) {
  return static_cast<uInt>(std::min<std::size_t>(length, std::numeric_limits<uInt>::max()));
}

}  // namespace

struct CInflater::State {
  z_stream stream{};
};

CInflater::CInflater() : state_(std::make_unique<State>()) {
  if (inflateInit2(&state_->stream, kRawDeflate) != Z_OK) throw std::bad_alloc();
}

CInflater::~CInflater() {
  inflateEnd(&state_->stream);
}

void CInflater::begin() {
  inflateReset(&state_->stream);
  checksum_ = 0;
  length_ = 0;
}

CInflater::Step CInflater::inflate(std::string_view compressed, std::span<char> room) {
  z_stream& stream = state_->stream;
  const uInt given = counted(compressed.size());
  const uInt offered = counted(room.size());
  stream.next_in = static_cast<const Bytef*>(static_cast<const void*>(compressed.data()));
  stream.avail_in = given;
  stream.next_out = static_cast<Bytef*>(static_cast<void*>(room.data()));
  stream.avail_out = offered;
  const int status = ::inflate(&stream, Z_NO_FLUSH);
  if (status == Z_MEM_ERROR) throw std::bad_alloc();

  Step step{Outcome::kMore, given - stream.avail_in, offered - stream.avail_out};
  checksum_ = extend_checksum(checksum_, {room.data(), step.made});
  length_ += step.made;
  if (status == Z_STREAM_END) {
    step.outcome = Outcome::kEnd;
  } else if (status != Z_OK && status != Z_BUF_ERROR) {  // the latter: it needs bytes or room
    step.outcome = Outcome::kDamaged;
  }
  return step;
}

std::uint32_t extend_checksum(std::uint32_t checksum, std::string_view bytes) {
  const auto* const data = static_cast<const Bytef*>(static_cast<const void*>(bytes.data()));
  return static_cast<std::uint32_t>(crc32_z(checksum, data, bytes.size()));
}

}  // namespace quorix
