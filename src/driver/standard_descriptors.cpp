// Runs before anything else of the program: from the first open() on, a closed descriptor 1 or 2
// would be given to a file.

#include "driver/standard_descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quorix {

namespace {

/// Opens something without content on the lowest free descriptor. The root folder always exists and
/// can be neither read nor written as a file. False if both fail.
bool open_nothing(int flags) {
  return ::open("/dev/null", flags) != -1 || ::open("/", O_RDONLY) != -1;
}

}  // namespace

void fill_closed_standard_descriptors() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // open() takes the lowest free descriptor: this one, since those below it are open.
    if (!open_nothing(descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY)) return;
  }
}

}  // namespace quorix
