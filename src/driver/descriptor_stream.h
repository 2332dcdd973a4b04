#pragma once

/// @file
/// A stream of the C library over a descriptor, whose writes are not lost when a signal breaks one
/// off. The library's own streams take that for a failure and drop what they had gathered. This
/// program handles no signals, but some file systems break calls off of themselves.

#include <cstdio>

namespace quorix {

/// Opens a stream for writing to `*descriptor`, which has to stay where it is as long as the stream
/// is open. Broken-off and short writes are carried on; any other failure is one of the stream,
/// with its `errno`. Lines leave at once where the descriptor is a terminal. Closing the stream
/// leaves the descriptor open. Gives null when there is no memory for it.
[[nodiscard]] std::FILE* open_descriptor_stream(int* descriptor);

}  // namespace quorix
