#pragma once

/// @file
/// The bytes of a file of the operating system.

#include <memory>
#include <string>

#include "sequence/byte_source.h"

namespace quorix {

/// Opens `filename` for reading. Gives null when it cannot be opened. A directory opens, and fails
/// at its first read. Interrupted calls are tried again.
[[nodiscard]] std::unique_ptr<CByteSource> open_posix_source(const std::string& filename);

}  // namespace quorix
