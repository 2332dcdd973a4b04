#include "driver/claimed_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quorix {

namespace {

constexpr mode_t kEveryoneAsTheUmaskAllows = 0666;

/// Makes a call of the system until no signal breaks it off.
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

/// Locks the file. True if another process has done so before. Where the file system has no locks
/// the run goes on without one.
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
