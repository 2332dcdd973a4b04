// Rows are thinned while they arrive, so memory never holds more than the limits, whatever the
// length of the report. Where space is short, the longest alignments are dropped: that leaves out
// the fewest repeats.

#include "tools/page/row_sample.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tools/page/folded_alignment.h"

namespace quorix::tools {

namespace {

using Text = std::string_view Repeat::*;

constexpr std::array<Text, 3> kWords{&Repeat::perfection, &Repeat::unit, &Repeat::motif};
constexpr std::array<Text, 5> kDetails{&Repeat::edits, &Repeat::bases, &Repeat::aligned_unit,
                                       &Repeat::left_flank, &Repeat::right_flank};

template <std::size_t kCount>
std::size_t total_length(const Repeat& repeat, const std::array<Text, kCount>& texts) {
  std::size_t length = 0;
  for (const Text text : texts) length += (repeat.*text).size();
  return length;
}

/// Copies the texts into a block of their own, and lets the views point there.
template <std::size_t kCount>
std::unique_ptr<char[]> own(Repeat& repeat, const std::array<Text, kCount>& texts) {
  auto block = std::make_unique<char[]>(total_length(repeat, texts));
  char* place = block.get();
  for (const Text text : texts) {
    const std::string_view part = repeat.*text;
    std::copy(part.begin(), part.end(), place);
    repeat.*text = {place, part.size()};
    place += part.size();
  }
  return block;
}

std::size_t detail_length(const Repeat& repeat) {
  return total_length(repeat, kDetails);
}

void drop_details(PageRow& row) {
  for (const Text text : kDetails) row.figures.*text = {};
  row.details.reset();
}

}  // namespace

void CRowSample::add(std::uint32_t sequence, const Repeat& repeat) {
  if (seen_count_++ % stride_ != 0) return;
  store(sequence, repeat);
  while (rows_.size() > 1 && (rows_.size() > limits_.rows || word_bytes_ > limits_.word_bytes)) {
    drop_every_second();
  }
  if (detail_bytes_ > limits_.detail_bytes) drop_long_details();
}

void CRowSample::store(std::uint32_t sequence, const Repeat& repeat) {
  fold_bases(repeat, bases_);
  fold_unit(repeat, unit_copies_);
  PageRow row{repeat, sequence, nullptr, nullptr};
  row.figures.bases = bases_;
  row.figures.aligned_unit = unit_copies_;
  row.figures.marks = {};
  row.words = own(row.figures, kWords);
  word_bytes_ += total_length(repeat, kWords);
  if (const std::size_t length = detail_length(row.figures); length > max_detail_length_) {
    drop_details(row);
  } else {
    row.details = own(row.figures, kDetails);
    detail_bytes_ += length;
  }
  rows_.push_back(std::move(row));
}

/// The repeat with the number i * stride, from 0, is row i; so rows with even numbers stay.
void CRowSample::drop_every_second() {
  std::size_t kept_count = 0;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (i % 2 == 0) {
      if (i != kept_count) rows_[kept_count] = std::move(rows_[i]);
      ++kept_count;
    } else {
      word_bytes_ -= total_length(rows_[i].figures, kWords);
      detail_bytes_ -= detail_length(rows_[i].figures);
    }
  }
  rows_.resize(kept_count);
  stride_ *= 2;
}

/// Halves the longest length that is kept until a quarter of the space is free, so that this, which
/// looks at every row, happens rarely.
void CRowSample::drop_long_details() {
  const std::size_t target = limits_.detail_bytes / 4 * 3;
  std::size_t longest = 0;
  for (const PageRow& row : rows_) longest = std::max(longest, detail_length(row.figures));
  max_detail_length_ = std::min(max_detail_length_, longest);
  while (detail_bytes_ > target && max_detail_length_ > 0) {
    max_detail_length_ /= 2;
    for (PageRow& row : rows_) {
      const std::size_t length = detail_length(row.figures);
      if (length <= max_detail_length_) continue;
      detail_bytes_ -= length;
      drop_details(row);
    }
  }
}

std::size_t CRowSample::left_out_count() const {
  return static_cast<std::size_t>(std::count_if(
      rows_.begin(), rows_.end(), [](const PageRow& row) { return row.details == nullptr; }));
}

}  // namespace quorix::tools
