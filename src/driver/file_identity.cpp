// A file that exists is known by device and inode, which no link can hide. An output that does not
// exist yet has neither. Its key is the absolute name that creating it would produce: links are
// followed by hand up to the missing file, and its folder, which must exist, is made canonical.

#include "driver/file_identity.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

namespace quorix {

namespace {

constexpr int kMaxLinks = 40;  // as many as the system follows

std::string key_of(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return {};
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

/// The absolute name that opening `name` for writing would create: a link to a file that does not
/// exist yet creates that file.
std::string resolved_name(std::filesystem::path name) {
  std::error_code error;
  for (int followed = 0; followed < kMaxLinks && std::filesystem::is_symlink(name, error);
       ++followed) {
    const std::filesystem::path target = std::filesystem::read_symlink(name, error);
    if (error) return {};
    name = name.parent_path() / target;
  }
  std::filesystem::path folder = name.parent_path();
  if (folder.empty()) folder = ".";
  folder = std::filesystem::canonical(folder, error);
  if (error) return {};
  return (folder / name.filename()).string();
}

}  // namespace

CFileIdentity CFileIdentity::of_name(const std::string& filename) {
  CFileIdentity identity;
  struct stat status {};
  if (::stat(filename.c_str(), &status) == 0) {
    identity.key_ = key_of(status);
  } else {
    identity.key_ = resolved_name(filename);
  }
  return identity;
}

CFileIdentity CFileIdentity::of_descriptor(int descriptor) {
  CFileIdentity identity;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0) identity.key_ = key_of(status);
  return identity;
}

}  // namespace quorix
