#pragma once

/// @file
/// Repeats kept in memory until all are known, to be written in another order.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/formats/format_writer.h"
#include "tools/report/repeat.h"

namespace quorix::tools {

/// The orders by their names on the command line. Positions ascend, after the identifiers in byte
/// order; everything else descends. Equals stay in the order of the reports.
enum class SortKey { kPosition, kLength, kCopies, kScore, kPerfection };

class CRepeatList {
 public:
  /// The repeats that follow belong to this record, whose identifier must stay where it is.
  void begin_sequence(const OutputSequence& sequence) { sequences_.push_back(sequence); }

  /// Keeps a copy of a repeat and its texts.
  void add(const Repeat& repeat);

  /// Sorts the repeats and writes them.
  void write_sorted(SortKey key, CFormatWriter& writer);

 private:
  struct Entry {
    Repeat repeat;
    std::unique_ptr<char[]> text;
    std::size_t sequence;
  };

  template <class Number>
  void sort_descending(const Number& number);
  void sort_by_position();

  std::vector<OutputSequence> sequences_;
  std::vector<Entry> entries_;
};

}  // namespace quorix::tools
