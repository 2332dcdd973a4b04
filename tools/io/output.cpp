#include "tools/io/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "tools/io/errors.h"

namespace quorix::tools {

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kNewFileMode = 0666;

/// Returns the permissions that a file gets that is created the usual way.
mode_t default_mode() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return kNewFileMode & ~mask;
}

}  // namespace

COutput::COutput(const std::string& name) {
  if (name.empty() || name == "-") {
    shown_name_ = "standard output";
    descriptor_ = STDOUT_FILENO;
  } else {
    shown_name_ = name;
    open_file(name);
  }
}

COutput::~COutput() {
  if (descriptor_ > STDERR_FILENO) ::close(descriptor_);
  if (!temporary_name_.empty()) ::unlink(temporary_name_.c_str());
}

void COutput::open_file(const std::string& name) {
  struct stat old {};
  const bool is_there = ::stat(name.c_str(), &old) == 0;
  if (is_there && !S_ISREG(old.st_mode)) {
    descriptor_ = ::open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor_ < 0) fail();
    return;
  }
  // "/dev/stdout" may lead to a file that the caller has opened and goes on with.
  struct stat standard {};
  if (is_there && ::fstat(STDOUT_FILENO, &standard) == 0 && standard.st_dev == old.st_dev &&
      standard.st_ino == old.st_ino) {
    descriptor_ = STDOUT_FILENO;
    return;
  }
  std::error_code error;
  const std::filesystem::path target = std::filesystem::weakly_canonical(name, error);
  open_beside(error ? name : target.string());
  if (::fchmod(descriptor_, is_there ? old.st_mode & kPermissionBits : default_mode()) != 0) fail();
}

void COutput::open_beside(const std::string& target) {
  std::string pattern = target + ".XXXXXX";
  descriptor_ = ::mkostemp(pattern.data(), O_CLOEXEC);
  if (descriptor_ < 0) fail();
  target_ = target;
  temporary_name_ = pattern;
}

void COutput::add_long(std::string_view text) {
  flush();
  if (text.size() >= buffer_.size()) return write(text);
  std::memcpy(buffer_.data(), text.data(), text.size());
  used_ = text.size();
}

void COutput::flush() {
  write({buffer_.data(), used_});
  used_ = 0;
}

void COutput::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor_, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      fail();
    }
  }
}

void COutput::finish() {
  flush();
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (::close(descriptor) != 0 && errno != EINTR) fail();
  if (target_.empty()) return;
  if (::rename(temporary_name_.c_str(), target_.c_str()) != 0) fail();
  temporary_name_.clear();
}

void COutput::fail() const {
  throw OutputError(shown_name_ + ": " + std::strerror(errno));
}

}  // namespace quorix::tools
