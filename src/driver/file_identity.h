#pragma once

/// @file
/// Do two names denote one file? An output that is the input, or the other output, would destroy
/// it.

#include <string>

namespace quorix {

/// The identity of a regular file: device and inode, through all links. A file that does not exist
/// yet is known by the name that its links lead to. Files of other kinds (terminals, pipes,
/// /dev/null) have no identity: writing to them destroys nothing.
class CFileIdentity {
 public:
  /// The file that a name refers to, which need not exist.
  [[nodiscard]] static CFileIdentity of_name(const std::string& filename);

  /// The file that an open descriptor refers to.
  [[nodiscard]] static CFileIdentity of_descriptor(int descriptor);

  /// True if both are known and denote one regular file.
  [[nodiscard]] bool is_same_file(const CFileIdentity& other) const {
    return !key_.empty() && key_ == other.key_;
  }

 private:
  std::string key_;  ///< "device:inode" or "/resolved/name"; empty without an identity
};

}  // namespace quorix
