#pragma once

/// @file
/// Extension of seeds in one text, to both sides, and the test of what becomes of them.
///
/// An extender owns whatever lasts from one extension to the next: the look-ahead, the caches of
/// edits and paths, the block in which edits are gathered, and the store of the edits of accepted
/// repeats. It knows neither where seeds come from nor where accepted repeats go.

#include <cstddef>
#include <cstdint>

#include "report/csat.h"
#include "report/fastvector.h"
#include "report/packed_edits.h"
#include "search/extension/extension_cache.h"
#include "search/extension/look_ahead.h"
#include "search/extension/searched_text.h"
#include "search/filter/bound_work.h"
#include "search/rules/thresholds.h"

namespace quorix {

/// True if score and normalized length of a repeat reach the thresholds of its unit length.
[[nodiscard]] bool passes(const Csat& sat, const Thresholds& thresholds);

/// The work of an extender since it was made.
struct ExtenderWork {
  std::uint64_t extended_exactly = 0;     ///< seeds extended over perfect copies
  std::uint64_t extended_over_edits = 0;  ///< seeds and exact repeats extended over edits
  std::uint64_t bounded = 0;              ///< exact repeats tested by the bound
  BoundWork repeat_bound;                 ///< the work of that
};

class CExtender {
 public:
  /// Extends in `text`, which must stay where it is.
  explicit CExtender(const SearchedText& text) : text_(text) {}

  /// Extends a seed over perfect copies to both sides, drops the N's at its ends and tests it.
  /// Returns true if it passes `thresholds`.
  [[nodiscard]] bool extend_exactly_and_test(Csat& sat, const Thresholds& thresholds);

  /// Extends a seed or an exact repeat over edits, to the left up to `left_limit`, drops the N's at
  /// its ends and tests it. Returns true if it passes `thresholds`. The edits of an accepted repeat
  /// are in the order of `Csat::lessThan_missense`, in the block that the extender lends:
  /// `pack_edits` comes next. Throws: std::bad_alloc.
  [[nodiscard]] bool extend_over_edits_and_test(Csat& sat, const char* left_limit,
                                                const Thresholds& thresholds);

  /// Packs the edits of a repeat that was just accepted. The next seed gathers its edits in the
  /// same block, so that no record keeps one that is as large as its edits once were.
  /// Throws: std::bad_alloc.
  void pack_edits(Csat& sat);

  /// The verdict of the bound on an exact repeat of this text: true only if no extension over edits
  /// reaches the minimum score; false leaves it undecided.
  [[nodiscard]] bool is_rejected(const Csat& repeat, const Thresholds& thresholds);

  /// Extends a repeat of any text to one side over edits, see imperfect_extension.h.
  /// Throws: std::bad_alloc.
  void extend_imperfect_forward(Csat& sat, const char* limit);
  void extend_imperfect_backward(Csat& sat, const char* limit);

  /// Forgets all edits and paths; the settings may have changed.
  void clear_caches();

  [[nodiscard]] CLookAhead& look_ahead() { return look_ahead_; }
  [[nodiscard]] const CLookAhead& look_ahead() const { return look_ahead_; }
  [[nodiscard]] const CExtensionCache& extension_cache() const { return extension_cache_; }
  [[nodiscard]] const ExtenderWork& work() const { return work_; }
  /// Bytes that the edits of the accepted repeats take.
  [[nodiscard]] std::size_t edit_bytes() const { return edit_store_.byte_count(); }

 private:
  /// True if `sat` is a repeat of this text.
  [[nodiscard]] bool is_of_own_text(const Csat& sat) const;

  SearchedText text_;
  CLookAhead look_ahead_;
  CEditStore edit_store_;        ///< of accepted repeats
  fastvector<Edit> edit_block_;  ///< lent to the seed that is being extended
  CExtensionCache extension_cache_;
  ExtenderWork work_;
};

}  // namespace quorix
