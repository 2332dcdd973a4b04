// The places of the guards hold the marks of the neighbouring bases, so the rule for seeds reads
// the same marks as in the whole text.

#include "tools/search/mark_window.h"

#include <algorithm>

namespace quorix::tools {

void close_within(CAnchorSeq& marks, const Csat& repeat, const fastvector<Edit>& edits,
                  const char* first, const char* end) {
  const auto mark_of = [&](const char* base) { return marks.marks + (base - marks.seq_start); };
  const char* const from = std::max(repeat.start, first);
  const char* const to = std::min(repeat.end, end);
  if (from >= to) return;
  std::fill(mark_of(from), mark_of(to), kClosedMark);
  for (const Edit& edit : edits) {
    if (edit.position >= first && edit.position < end) *mark_of(edit.position) = kOpenMark;
  }
}

void CMarkWindow::begin(const CAnchorSeq& all, const char* seed_end, std::uint64_t unit_length) {
  all_ = &all;
  seed_end_ = seed_end;
  unit_length_ = unit_length;
  closed_end_ = all.seq_start - 1;
}

void CMarkWindow::copy_up_to(const char* first, const char* end) {
  const bool is_new = first > closed_end_;
  if (is_new) {
    copy_.seq_start = first;
    copy_.seq_length = 0;
  }
  const auto length = static_cast<std::uint64_t>(end - copy_.seq_start);
  if (!is_new && length <= copy_.seq_length) return;
  // Behind the end there is one more mark already, which the scan may have closed.
  const char* const from = is_new ? first - 1 : copy_.seq_start + copy_.seq_length + 1;
  const auto mark_of = [&](const char* base) { return all_->marks + (base - all_->seq_start); };
  copy_.mark_buffer.resize(length + 3);
  copy_.marks = copy_.mark_buffer.data() + 1;
  copy_.marks_end = copy_.marks + length;
  copy_.seq_length = length;
  std::copy(mark_of(from), mark_of(end) + 1, copy_.marks + (from - copy_.seq_start));
}

void CMarkWindow::close_repeat(const Csat& repeat, const char* seed) {
  const char* const text_end = all_->seq_start + all_->seq_length;
  const char* const last_seed_end = std::min(std::max(repeat.end, seed), seed_end_);
  const auto room = static_cast<std::uint64_t>(text_end - last_seed_end);
  copy_up_to(seed, last_seed_end + std::min(unit_length_, room));
  closed_end_ = std::max(closed_end_, repeat.end);
  close_within(copy_, repeat, repeat.missense, copy_.seq_start - 1,
               copy_.seq_start + copy_.seq_length + 1);
}

}  // namespace quorix::tools
