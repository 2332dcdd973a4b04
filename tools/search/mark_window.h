#pragma once

/// @file
/// The marks of open bases as a scan of one segment sees them, while others scan theirs: those of
/// the whole text, and on top of them what the scan itself has closed.
///
/// A scan goes from left to right, and a seed depends on no mark farther to the left than that of
/// the base before it. So once the scan has passed the end of all that it has closed, it sees the
/// marks of the whole text again. Up to there it has a copy.

#include <cstdint>

#include "report/csat.h"
#include "search/scan/anchor_seq.h"

namespace quorix::tools {

/// Closes the bases of `repeat` in `marks`, except where `edits` are, as `CAnchorSeq::close_repeat`
/// does, but none before `first` or from `end` on.
void close_within(CAnchorSeq& marks, const Csat& repeat, const fastvector<Edit>& edits,
                  const char* first, const char* end);

class CMarkWindow {
 public:
  CMarkWindow() : copy_(nullptr, 0) {}

  /// Begins a scan of units of `unit_length` whose last seed is before `seed_end`. `all` are the
  /// marks of the whole text, which nobody changes meanwhile.
  void begin(const CAnchorSeq& all, const char* seed_end, std::uint64_t unit_length);

  /// The same as of `CAnchorSeq`, for a seed no farther to the left than the last one closed.
  [[nodiscard]] bool may_seed(const char* position, std::uint64_t unit_length) const {
    return marks_at(position).may_seed(position, unit_length);
  }
  /// The same, but of units that reach beyond the copy the bits may be clear.
  [[nodiscard]] std::uint64_t may_seed_from(const char* position, std::uint64_t unit_length) const {
    return marks_at(position).may_seed_from(position, unit_length);
  }

  /// Closes the bases of a repeat, except where its edits are, to the seeds after the one at
  /// `seed`. Throws: std::bad_alloc.
  void close_repeat(const Csat& repeat, const char* seed);

 private:
  [[nodiscard]] const CAnchorSeq& marks_at(const char* position) const {
    return position > closed_end_ ? *all_ : copy_;
  }
  /// Copies the marks up to `end`, from `first` on or from where the copy ends.
  void copy_up_to(const char* first, const char* end);

  const CAnchorSeq* all_ = nullptr;
  const char* seed_end_ = nullptr;
  std::uint64_t unit_length_ = 0;
  const char* closed_end_ = nullptr;  ///< the end of what the scan has closed
  CAnchorSeq copy_;  ///< its guards are copies, too: the marks of the bases beside it
};

}  // namespace quorix::tools
