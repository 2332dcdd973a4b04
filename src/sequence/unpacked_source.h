#pragma once

/// @file
/// Input that may be compressed, as its text.

#include <memory>

#include "sequence/byte_source.h"

namespace quorix {

/// Returns a source of the text of `source`: that of its members if its first two bytes are those
/// of gzip, else its bytes as they are. Null for null. Nothing is read before the first read, and
/// plain bytes go straight to their destination. Throws: std::bad_alloc, also from a read.
[[nodiscard]] std::unique_ptr<CByteSource> unpacked(std::unique_ptr<CByteSource> source);

}  // namespace quorix
