// Repeats come by their starts, so what a repeat adds to those before it is one stretch after the
// end of them all. Stretches ascend, and a window is complete when a stretch begins after it.

#include "tools/formats/bedgraph_writer.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "tools/formats/columns.h"

namespace quorix::tools {

void CBedgraphWriter::begin_sequence(const OutputSequence& sequence) {
  check_bed_identifier(sequence.identifier, "bedgraph");
  window_begin_ = covered_count_ = covered_end_ = 0;
}

void CBedgraphWriter::add(const OutputSequence& sequence, const Repeat& repeat) {
  std::int64_t begin = std::max(repeat.start - 1, covered_end_);
  while (begin < repeat.end) {
    write_windows_before(sequence, begin);
    const std::int64_t room = window_ - (begin - window_begin_);
    const std::int64_t length = std::min(repeat.end - begin, room);
    covered_count_ += length;
    begin += length;
  }
  covered_end_ = std::max(covered_end_, repeat.end);
}

void CBedgraphWriter::end_sequence(const OutputSequence& sequence) {
  write_windows_before(sequence, sequence.length);
  if (window_begin_ < sequence.length) write_window(sequence);
}

/// Writes the windows that end at `position` or before it.
void CBedgraphWriter::write_windows_before(const OutputSequence& sequence, std::int64_t position) {
  while (position - window_begin_ >= window_) write_window(sequence);
}

void CBedgraphWriter::write_window(const OutputSequence& sequence) {
  constexpr int kDigits = 6;
  const std::int64_t length = std::min(window_, sequence.length - window_begin_);
  COutput& line = output();
  line.add(sequence.identifier);
  line.add('\t');
  line.add_number(window_begin_);
  line.add('\t');
  line.add_number(window_begin_ + length);
  line.add('\t');
  std::array<char, 32> digits{};
  const double share = static_cast<double>(covered_count_) / static_cast<double>(length);
  const std::to_chars_result end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                                 share, std::chars_format::general, kDigits);
  line.add({digits.data(), static_cast<std::size_t>(end.ptr - digits.data())});
  line.add('\n');
  window_begin_ += length;
  covered_count_ = 0;
}

}  // namespace quorix::tools
