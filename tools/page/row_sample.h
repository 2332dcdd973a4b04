#pragma once

/// @file
/// The repeats that the table of a page lists: all of them or, if there are too many, every second,
/// fourth, eighth... in the order of the report. Which ones depends on the report alone.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tools/page/page_limits.h"
#include "tools/report/repeat.h"

namespace quorix::tools {

/// A repeat with texts of its own, in blocks beside it. Its alignment is folded: `bases` and
/// `aligned_unit` are what folded_alignment.h makes of them, and `marks` is empty.
struct PageRow {
  Repeat figures;
  std::uint32_t sequence = 0;       ///< number of its record, from 0
  std::unique_ptr<char[]> words;    ///< perfection, unit and motif
  std::unique_ptr<char[]> details;  ///< bases, edits and flanks; null if they are left out
};

class CRowSample {
 public:
  explicit CRowSample(const PageLimits& limits) : limits_(limits) {}

  /// Takes the next repeat of the report, which belongs to the record with this number.
  void add(std::uint32_t sequence, const Repeat& repeat);

  /// The rows, in the order of the report.
  [[nodiscard]] const std::vector<PageRow>& rows() const { return rows_; }

  /// Returns 1 if all repeats are listed, n if every n-th one is, beginning with the first.
  [[nodiscard]] std::uint64_t stride() const { return stride_; }

  /// Returns the number of rows whose details are left out.
  [[nodiscard]] std::size_t left_out_count() const;

 private:
  void store(std::uint32_t sequence, const Repeat& repeat);
  void drop_every_second();
  void drop_long_details();

  PageLimits limits_;
  std::vector<PageRow> rows_;
  std::uint64_t seen_count_ = 0;
  std::uint64_t stride_ = 1;
  std::size_t word_bytes_ = 0;
  std::size_t detail_bytes_ = 0;
  std::size_t max_detail_length_ = std::numeric_limits<std::size_t>::max();  ///< beyond: left out
  std::string bases_;
  std::string unit_copies_;
};

}  // namespace quorix::tools
