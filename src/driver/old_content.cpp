// A user who swaps the names of input and report would lose the sequences. So the first two bytes
// of the old content are read before it is replaced.

#include "driver/old_content.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sequence/gzip_header.h"

namespace quorix {

OldContent old_content_of(const std::string& filename) {
  // Opening a pipe or a device to look at it could wait, or take away what is in it.
  struct stat status {};
  if (::stat(filename.c_str(), &status) != 0) return OldContent::kOther;
  if (!S_ISREG(status.st_mode) || status.st_size == 0) return OldContent::kOther;
  const int descriptor = ::open(filename.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return OldContent::kOther;
  unsigned char first[2] = {};
  const ssize_t count = ::read(descriptor, first, sizeof first);
  ::close(descriptor);
  if (count >= 1 && first[0] == '>') return OldContent::kFasta;
  if (count == 2 && first[0] == kGzipFirstByte && first[1] == kGzipSecondByte) {
    return OldContent::kGzip;
  }
  return OldContent::kOther;
}

}  // namespace quorix
