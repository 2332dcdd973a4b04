#include "search/scan/anchor_seq.h"

#include <algorithm>

#include "search/bits/bit_set.h"
#include "search/bits/byte_bits.h"

namespace quorix {

namespace {

// An open mark has the lowest bit of its letter set, a closed one has it clear.
static_assert((kOpenMark & 1) == 1 && (kClosedMark & 1) == 0);

/// Bit k: mark k is open. REQUIRES: there are 64 marks.
std::uint64_t open_marks(const char* marks) {
  std::uint64_t open = 0;
  for (unsigned i = 0; i < kWordBits; i += 8) {
    open |= gather_lowest_bits(load_eight(marks + i)) << i;
  }
  return open;
}

}  // namespace

void CAnchorSeq::open_all() {
  std::fill(marks - 1, marks_end + 1, kOpenMark);
}

void CAnchorSeq::close_repeat(const Csat& repeat) {
  std::fill(marks + (repeat.start - seq_start), marks + (repeat.end - seq_start), kClosedMark);
  for (const Edit& edit : repeat.missense) marks[edit.position - seq_start] = kOpenMark;
}

std::uint64_t CAnchorSeq::may_seed_from(const char* position, std::uint64_t unit_length) const {
  const auto first = static_cast<std::uint64_t>(position - seq_start);
  if (first + unit_length > seq_length) return 0;
  const std::uint64_t later_units = seq_length - unit_length - first;
  if (later_units < kWordBits - 1) {
    std::uint64_t units = 0;
    for (std::uint64_t k = 0; k <= later_units; ++k) {
      units |= static_cast<std::uint64_t>(may_seed(position + k, unit_length)) << k;
    }
    return units;
  }
  // The last unit ends with the sequence at the latest, and the mark after it is a guard.
  const std::uint64_t is_before_open = open_marks(marks + first - 1);
  const std::uint64_t is_first_open = open_marks(marks + first);
  const std::uint64_t is_last_open = open_marks(marks + first + unit_length - 1);
  const std::uint64_t is_after_open = open_marks(marks + first + unit_length);
  return (is_first_open & (is_last_open | is_after_open)) | (is_before_open & is_last_open);
}

}  // namespace quorix
