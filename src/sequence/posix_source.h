#pragma once

/// @file
/// The bytes of a file of the operating system.

#include <memory>
#include <string>

#include "sequence/byte_source.h"

namespace quorix {

/// Opens `filename` for reading and returns its source, or null if it cannot be opened. A directory
/// opens, and fails at its first read. Interrupted calls are repeated.
///
/// A read fails if a regular file ends before the length it had when it was opened: otherwise a
/// file that is cut meanwhile would pass for a whole one. The one exception is a file that still
/// has that length and occupies no disk blocks. The kernel creates the contents of such files as
/// they are read, and reports a page as the length of each.
[[nodiscard]] std::unique_ptr<CByteSource> open_posix_source(const std::string& filename);

/// Returns the source of an open descriptor, which it will close, from where that stands.
/// Throws: std::bad_alloc.
[[nodiscard]] std::unique_ptr<CByteSource> posix_source_of(int descriptor);

}  // namespace quorix
