// A pipe cannot be rewound, so the two bytes that tell the format are kept and handed out first.

#include "tools/io/byte_input.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "tools/io/errors.h"
#include "tools/io/gzip_input.h"

namespace quorix::tools {

namespace {

/// The bytes of a descriptor, after those that were read from it already.
class CDescriptorInput : public CByteInput {
 public:
  CDescriptorInput(int descriptor, std::string name)
      : descriptor_(descriptor), name_(std::move(name)) {
    while (peeked_count_ < peeked_.size()) {
      const std::size_t count =
          read_descriptor(peeked_.data() + peeked_count_, peeked_.size() - peeked_count_);
      if (count == 0) break;
      peeked_count_ += count;
    }
  }
  CDescriptorInput(const CDescriptorInput&) = delete;
  CDescriptorInput& operator=(const CDescriptorInput&) = delete;
  ~CDescriptorInput() override {
    if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
  }

  [[nodiscard]] bool begins_as_gzip() const {
    return peeked_count_ == 2 && peeked_[0] == '\x1f' && peeked_[1] == '\x8b';
  }

  std::size_t read(char* block, std::size_t size) override {
    if (taken_count_ == peeked_count_) return read_descriptor(block, size);
    const std::size_t count = std::min(size, peeked_count_ - taken_count_);
    std::memcpy(block, peeked_.data() + taken_count_, count);
    taken_count_ += count;
    return count;
  }

 private:
  std::size_t read_descriptor(char* block, std::size_t size) {
    ssize_t count = 0;
    do {
      count = ::read(descriptor_, block, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw InputError(name_ + ": " + std::strerror(errno));
    return static_cast<std::size_t>(count);
  }

  int descriptor_;
  std::string name_;
  std::array<char, 2> peeked_{};
  std::size_t peeked_count_ = 0;
  std::size_t taken_count_ = 0;
};

}  // namespace

std::string shown_input_name(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

std::unique_ptr<CByteInput> open_input(const std::string& name) {
  const std::string shown = shown_input_name(name);
  const int descriptor =
      name == "-" ? STDIN_FILENO : ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor < 0) throw InputError(shown + ": " + std::strerror(errno));
  auto plain = std::make_unique<CDescriptorInput>(descriptor, shown);
  if (!plain->begins_as_gzip()) return plain;
  return std::make_unique<CGzipInput>(std::move(plain), shown);
}

}  // namespace quorix::tools
