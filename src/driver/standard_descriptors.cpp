#include "driver/standard_descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quorix {

namespace {

/// Opens something that gives and takes nothing, by the lowest free number. The folder at the root,
/// which there always is, can be neither read nor written as a file. False if both fail.
bool open_nothing(int flags) {
  return ::open("/dev/null", flags) != -1 || ::open("/", O_RDONLY) != -1;
}

}  // namespace

void fill_closed_standard_descriptors() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free descriptor is the closed one, since those below it are filled.
    if (!open_nothing(descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY)) return;
  }
}

}  // namespace quorix
