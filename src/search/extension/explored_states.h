#pragma once

/// @file
/// The states that the choice of an edit has explored, and whether they dominate another state:
/// see search/extension/edit_choice.h.
///
/// A table with one slot for several offsets and diagonals. A state that needs the slot of other
/// ones replaces them, so some dominance goes unnoticed, which costs time and changes no choice.

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "search/extension/ranked_score.h"

namespace quorix {

/// A state after an edit, or at the end of the run that follows it.
struct EditedState {
  RankedScore score = kNoScore;  ///< `kNoScore` if the edit is not allowed
  std::int64_t offset = 0;       ///< bases from where the look-ahead begins
  std::int32_t diagonal = 0;     ///< insertions less deletions, the first edit included
  std::int32_t edits_left = 0;   ///< edits that may still follow
};

class CExploredStates {
 public:
  /// Edits that may be left in a state.
  static constexpr std::int32_t kMaxEditsLeft = 5;

  /// Forgets all states. Takes the time of one step, but for one call in 2^32.
  void clear() {
    if (generation_ < std::numeric_limits<std::uint32_t>::max()) {
      ++generation_;
      return;
    }
    slots_.fill({});
    generation_ = 1;
  }

  /// REQUIRES: 0 <= state.edits_left <= kMaxEditsLeft, state.offset >= 0.
  void add(const EditedState& state) {
    assert(0 <= state.edits_left && state.edits_left <= kMaxEditsLeft);
    Slot& slot = slots_[slot_of(state)];
    if (!slot.is_of(state, generation_)) {
      slot = {state.offset, state.diagonal, generation_, {}};
      slot.highest.fill(kNoScore);
    }
    for (std::int32_t i = 0; i <= state.edits_left; ++i) {
      RankedScore& highest = slot.highest[static_cast<std::size_t>(i)];
      highest = std::max(highest, state.score);
    }
  }

  /// True if one of them has the offset and the diagonal of `state`, as many edits left or more,
  /// and a score as high or higher. The same is required.
  [[nodiscard]] bool dominate(const EditedState& state) const {
    const Slot& slot = slots_[slot_of(state)];
    return slot.is_of(state, generation_) &&
           slot.highest[static_cast<std::size_t>(state.edits_left)] >= state.score;
  }

 private:
  struct Slot {
    std::int64_t offset = 0;
    std::int32_t diagonal = 0;
    std::uint32_t generation = 0;  ///< 0 if nothing has been added
    /// By edits left: the highest score of a state with as many or more.
    std::array<RankedScore, kMaxEditsLeft + 1> highest = {};

    [[nodiscard]] bool is_of(const EditedState& state, std::uint32_t now) const {
      return offset == state.offset && diagonal == state.diagonal && generation == now;
    }
  };

  /// Offsets that differ by 16 share the slots of their diagonals: in all 16 KB.
  static constexpr std::size_t kSlots = 256;

  [[nodiscard]] static std::size_t slot_of(const EditedState& state) {
    return static_cast<std::size_t>(state.offset * 16 + state.diagonal) % kSlots;
  }

  std::array<Slot, kSlots> slots_ = {};
  std::uint32_t generation_ = 1;  ///< of the states that are not forgotten
};

}  // namespace quorix
