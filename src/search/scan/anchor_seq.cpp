#include "search/scan/anchor_seq.h"

#include <algorithm>

namespace quorix {

void CAnchorSeq::open_all() {
  std::fill(marks - 1, marks_end + 1, kOpenMark);
}

void CAnchorSeq::close_repeat(const Csat& repeat) {
  std::fill(marks + (repeat.start - seq_start), marks + (repeat.end - seq_start), kClosedMark);
  for (const Edit& edit : repeat.missense) marks[edit.position - seq_start] = kOpenMark;
}

}  // namespace quorix
