// A user who swaps the names of input and report would lose the sequences. So the first character
// of the old content is read before it is replaced.

#include "driver/old_content.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorix {

bool begins_like_fasta(const std::string& filename) {
  // Opening a pipe or a device to look at it could wait, or take away what is in it.
  struct stat status {};
  if (::stat(filename.c_str(), &status) != 0) return false;
  if (!S_ISREG(status.st_mode) || status.st_size == 0) return false;
  const int descriptor = ::open(filename.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return false;
  char first = '\0';
  const bool is_read = ::read(descriptor, &first, 1) == 1;
  ::close(descriptor);
  return is_read && first == '>';
}

}  // namespace quorix
