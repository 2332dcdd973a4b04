// zlib checks the length and the check sum at the end of each member; a member is complete only
// after that.

#include "tools/io/gzip_input.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <vector>

#include "tools/io/errors.h"

namespace quorix::tools {

namespace {

constexpr std::size_t kCompressedBlockSize = std::size_t{1} << 17U;
/// The largest window, and a head in gzip's format rather than zlib's.
constexpr int kGzipWindowBits = 15 + 16;

/// Returns the same place as zlib's type of it.
Bytef* as_bytes(char* block) {
  return static_cast<Bytef*>(static_cast<void*>(block));
}

}  // namespace

struct CGzipInput::Inflater {
  z_stream stream{};
  std::vector<char> block = std::vector<char>(kCompressedBlockSize);
};

CGzipInput::CGzipInput(std::unique_ptr<CByteInput> compressed, std::string name)
    : compressed_(std::move(compressed)),
      name_(std::move(name)),
      inflater_(std::make_unique<Inflater>()) {
  if (inflateInit2(&inflater_->stream, kGzipWindowBits) != Z_OK) throw std::bad_alloc();
}

CGzipInput::~CGzipInput() {
  inflateEnd(&inflater_->stream);
}

bool CGzipInput::refill() {
  z_stream& stream = inflater_->stream;
  std::vector<char>& block = inflater_->block;
  const std::size_t count = compressed_->read(block.data(), block.size());
  stream.next_in = as_bytes(block.data());
  stream.avail_in = static_cast<uInt>(count);
  return count != 0;
}

std::size_t CGzipInput::read(char* block, std::size_t size) {
  z_stream& stream = inflater_->stream;
  const std::size_t limit = std::min<std::size_t>(size, std::numeric_limits<uInt>::max());
  stream.next_out = as_bytes(block);
  stream.avail_out = static_cast<uInt>(limit);
  while (!has_ended_ && stream.avail_out == limit) {
    if (stream.avail_in == 0 && !refill()) {
      has_ended_ = true;
      break;
    }
    is_in_member_ = true;
    const int status = inflate(&stream, Z_NO_FLUSH);
    if (status == Z_STREAM_END) {
      is_in_member_ = false;
      inflateReset(&stream);
    } else if (status == Z_MEM_ERROR) {
      throw std::bad_alloc();
    } else if (status != Z_OK && status != Z_BUF_ERROR) {
      throw InputError(name_ + ": the compressed data are damaged" +
                       (stream.msg != nullptr ? ": " + std::string(stream.msg) : ""));
    }
  }
  return limit - stream.avail_out;
}

std::string CGzipInput::cut_reason() const {
  return has_ended_ && is_in_member_ ? "the compressed data end early" : "";
}

}  // namespace quorix::tools
