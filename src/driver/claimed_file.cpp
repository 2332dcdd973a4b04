// A claim is open() without truncation followed by flock(). The order matters: the lock needs a
// descriptor, and content may go only after the lock is held, so truncation is a call of its own
// (`empty_file`) that the owner makes last. The lock belongs to the open file description; the
// descriptor is close-on-exec and never duplicated, so closing it releases the lock.

#include "driver/claimed_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quorix {

namespace {

constexpr mode_t kEveryoneAsTheUmaskAllows = 0666;

/// Repeats a system call until no signal interrupts it.
template <class SystemCall>
int uninterrupted(SystemCall call) {
  int result = 0;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

bool is_regular(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Locks the file. True if another process holds the lock. On a file system without locks the run
/// continues without one.
bool is_locked_by_another(int descriptor) {
  const int result = uninterrupted([=] { return ::flock(descriptor, LOCK_EX | LOCK_NB); });
  return result != 0 && errno == EWOULDBLOCK;
}

}  // namespace

ClaimedFile claim_file(const std::string& filename, Missing missing) {
  const int creation = missing == Missing::kCreate ? O_CREAT : 0;
  const int descriptor = uninterrupted([&] {
    return ::open(filename.c_str(), O_WRONLY | O_CLOEXEC | creation, kEveryoneAsTheUmaskAllows);
  });
  if (descriptor < 0) {
    const bool is_missing = missing == Missing::kLeave && errno == ENOENT;
    return {is_missing ? Claim::kMissing : Claim::kFailed, -1};
  }
  if (is_regular(descriptor) && is_locked_by_another(descriptor)) {
    ::close(descriptor);
    return {Claim::kInUse, -1};
  }
  return {Claim::kHeld, descriptor};
}

bool empty_file(int descriptor) {
  const int result = uninterrupted([=] { return ::ftruncate(descriptor, 0); });
  return result == 0 || errno == EINVAL;  // a pipe or a device has no length
}

}  // namespace quorix
