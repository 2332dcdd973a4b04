// The length of a file is looked at twice only: when it is opened, and when a read returns nothing.
// That is enough to find out that the file was cut in between, and costs nothing in any other read.

#include "sequence/posix_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace quorix {

namespace {

/// Returns the length of a regular file in bytes; 0 for everything else, which has no fixed length.
off_t length_of(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return 0;
  return status.st_size;
}

/// Returns true for a file that still has its length but occupies no disk blocks.
bool only_claims_length(int descriptor, off_t length) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && status.st_size >= length && status.st_blocks == 0;
}

class CPosixSource : public CByteSource {
 public:
  explicit CPosixSource(int descriptor)
      : descriptor_(descriptor), first_length_(length_of(descriptor)) {}
  ~CPosixSource() override { ::close(descriptor_); }

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    ssize_t count = 0;
    do {
      count = ::read(descriptor_, destination, room);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return fail(std::strerror(errno));
    if (count == 0) return end();
    return {Outcome::kBytes, static_cast<std::size_t>(count)};
  }

  [[nodiscard]] std::string failure_reason() const override { return failure_reason_; }

 private:
  ReadResult fail(std::string reason) {
    failure_reason_ = std::move(reason);
    return {Outcome::kError, 0};
  }

  ReadResult end() {
    if (first_length_ == 0) return {Outcome::kEnd, 0};
    // The system knows: /dev/stdin may be a descriptor that somebody has read from before.
    const off_t position = ::lseek(descriptor_, 0, SEEK_CUR);
    if (position >= first_length_ || only_claims_length(descriptor_, first_length_)) {
      return {Outcome::kEnd, 0};
    }
    return fail("The file ended after " + std::to_string(position) + " of the " +
                std::to_string(first_length_) + " bytes that it had when it was opened.");
  }

  int descriptor_;
  off_t first_length_;  ///< when it was opened; it may be longer now
  std::string failure_reason_;
};

}  // namespace

std::unique_ptr<CByteSource> open_posix_source(const std::string& filename) {
  int descriptor = -1;
  do {
    descriptor = ::open(filename.c_str(), O_RDONLY | O_CLOEXEC);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return nullptr;
  return posix_source_of(descriptor);
}

std::unique_ptr<CByteSource> posix_source_of(int descriptor) {
  return std::make_unique<CPosixSource>(descriptor);
}

}  // namespace quorix
