// fopencookie() keeps the buffer of the C library and replaces only its write(). The cookie is the
// address of the descriptor, which the owner of the stream keeps in place.

#include "driver/descriptor_stream.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace quorix {

namespace {

/// Writes all bytes. Returns a smaller count after a failure, which the stream reports as its own.
ssize_t write_all(void* cookie, const char* bytes, std::size_t size) {
  const int descriptor = *static_cast<const int*>(cookie);
  std::size_t written = 0;
  while (written < size) {
    const ssize_t count = ::write(descriptor, bytes + written, size - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(written);
}

}  // namespace

std::FILE* open_descriptor_stream(int* descriptor) {
  const cookie_io_functions_t functions{nullptr, write_all, nullptr, nullptr};
  std::FILE* const stream = ::fopencookie(descriptor, "w", functions);
  if (stream != nullptr && ::isatty(*descriptor) == 1) {
    std::setvbuf(stream, nullptr, _IOLBF, BUFSIZ);
  }
  return stream;
}

}  // namespace quorix
