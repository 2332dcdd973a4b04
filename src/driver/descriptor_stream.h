#pragma once

/// @file
/// A stream of the C library over a descriptor that loses nothing when a write is interrupted. The
/// library's own streams treat an interrupted write as a failure and drop their buffer. This
/// program handles no signals, but some file systems interrupt calls of their own accord.

#include <cstdio>

namespace quorix {

/// Opens a stream for writing to `*descriptor`, a variable that must outlive the stream.
/// Interrupted and short writes are continued; any other failure becomes a failure of the stream,
/// with its `errno`. The stream is line-buffered on a terminal. Closing it leaves the descriptor
/// open. Returns null if there is no memory for it.
[[nodiscard]] std::FILE* open_descriptor_stream(int* descriptor);

}  // namespace quorix
