#pragma once

/// @file
/// The bytes of a file of the operating system.

#include <memory>
#include <string>

#include "sequence/byte_source.h"

namespace quorix {

/// Opens `filename` for reading. Gives null when it cannot be opened. A directory opens, and fails
/// at its first read. Interrupted calls are tried again.
///
/// A regular file that ends before the length it had when it was opened is a failed read, so that
/// a file that is cut meanwhile does not pass for a whole one. The one exception: a file that still
/// has that length and takes no blocks of a disk. The kernel makes the contents of such files as
/// they are read, and gives a page as the length of all of them.
[[nodiscard]] std::unique_ptr<CByteSource> open_posix_source(const std::string& filename);

}  // namespace quorix
