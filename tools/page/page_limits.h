#pragma once

/// @file
/// How much a page holds, so that a browser still opens it at once.

#include <cstddef>
#include <cstdint>

namespace quorix::tools {

struct PageLimits {
  std::size_t rows = 200'000;             ///< of the table; beyond, a sample is listed
  std::size_t word_bytes = 32U << 20U;    ///< of the units and motifs of all rows
  std::size_t detail_bytes = 32U << 20U;  ///< of the alignments, edits and flanks of all rows
  std::size_t windows = 65'536;           ///< of the density, besides one for each record
};

}  // namespace quorix::tools
