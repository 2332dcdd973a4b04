#include "sequence/posix_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quorix {

namespace {

class CPosixSource : public CByteSource {
 public:
  explicit CPosixSource(int descriptor) : descriptor_(descriptor) {}
  ~CPosixSource() override { ::close(descriptor_); }

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    ssize_t count = 0;
    do {
      count = ::read(descriptor_, destination, room);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return {Outcome::kError, 0};
    if (count == 0) return {Outcome::kEnd, 0};
    return {Outcome::kBytes, static_cast<std::size_t>(count)};
  }

 private:
  int descriptor_;
};

}  // namespace

std::unique_ptr<CByteSource> open_posix_source(const std::string& filename) {
  int descriptor = -1;
  do {
    descriptor = ::open(filename.c_str(), O_RDONLY | O_CLOEXEC);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return nullptr;
  return std::make_unique<CPosixSource>(descriptor);
}

}  // namespace quorix
