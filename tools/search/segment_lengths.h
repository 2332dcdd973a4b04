#pragma once

/// @file
/// Into how many segments a record is cut.

#include <cstdint>

namespace quorix::tools {

/// How long the segments of a text are, in bases, and how many exact repeats are extended together.
struct SegmentLengths {
  std::uint64_t min = std::uint64_t{1} << 13U;  ///< shorter ones are not worth the beginning
  std::uint64_t max = std::uint64_t{1} << 18U;  ///< longer ones leave threads idle at the end
  /// In between, as many of them as this for each thread.
  std::uint64_t count_for_each_thread = 64;
  /// Lengths are rounded up to multiples of this: of 64, as threads have words of seeds of their
  /// own, or any number for a single thread.
  std::uint64_t grain = 64;
  /// Fewer exact repeats are not extended as one part: neighbours share cached edits.
  std::uint64_t min_chunk = 256;
};

}  // namespace quorix::tools
