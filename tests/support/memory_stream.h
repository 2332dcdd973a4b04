#pragma once

/// @file
/// A C stream that writes to memory, for functions that print.

#include <cstdio>
#include <cstdlib>
#include <string>

namespace quorix::testing {

class CMemoryStream {
 public:
  CMemoryStream() : stream_(::open_memstream(&data_, &size_)) {}
  ~CMemoryStream() {
    std::fclose(stream_);
    std::free(data_);
  }
  CMemoryStream(const CMemoryStream&) = delete;
  CMemoryStream& operator=(const CMemoryStream&) = delete;

  [[nodiscard]] std::FILE* stream() const { return stream_; }

  /// All that was written so far.
  [[nodiscard]] std::string text() const {
    std::fflush(stream_);
    return {data_, size_};
  }

 private:
  char* data_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* stream_;
};

/// What `print` writes to the stream that it is given.
template <class Print>
std::string printed_by(const Print& print) {
  const CMemoryStream memory;
  print(memory.stream());
  return memory.text();
}

}  // namespace quorix::testing
