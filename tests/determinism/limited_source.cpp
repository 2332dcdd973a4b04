#include "determinism/limited_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include "sequence/posix_source.h"

namespace quorix {

namespace testing {

std::size_t longest_read = 0;

}  // namespace testing

namespace {

class CLimitedSource : public CByteSource {
 public:
  explicit CLimitedSource(int descriptor) : descriptor_(descriptor) {}
  ~CLimitedSource() override { ::close(descriptor_); }

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    const std::size_t most = testing::longest_read == 0 ? room : testing::longest_read;
    const ssize_t count = ::read(descriptor_, destination, std::min(room, most));
    if (count < 0) return {Outcome::kError, 0};
    if (count == 0) return {Outcome::kEnd, 0};
    return {Outcome::kBytes, static_cast<std::size_t>(count)};
  }

 private:
  int descriptor_;
};

}  // namespace

std::unique_ptr<CByteSource> open_posix_source(const std::string& filename) {
  const int descriptor = ::open(filename.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  return std::make_unique<CLimitedSource>(descriptor);
}

}  // namespace quorix
