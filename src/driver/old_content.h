#pragma once

/// @file
/// The content of a file that an output is about to replace.

#include <string>

namespace quorix {

/// What a file holds, by its first bytes.
enum class OldContent {
  kFasta,  ///< it begins with '>', as sequences in FASTA format do and no report does
  kGzip,   ///< it begins with the two bytes of gzip, and may hold sequences
  kOther,  ///< anything else, or what cannot be read
};

/// Returns what the regular file `filename` holds. Other kinds of files are not opened, and count
/// as `kOther`.
[[nodiscard]] OldContent old_content_of(const std::string& filename);

}  // namespace quorix
