#pragma once

/// @file
/// The second stage of the filter: the bounds of seeds that the sieve leaves, for those that a
/// search comes to. Verdicts are cached for the neighbours that it asks for next.

#include <cstdint>

#include "search/filter/bound.h"
#include "search/filter/filter_plan.h"

namespace quorix {

/// The work of the bounds.
struct SeedBoundsWork {
  std::uint64_t groups = 0;   ///< groups of seeds that were bounded as one
  std::uint64_t batches = 0;  ///< batches of seeds that were bounded side by side
  std::uint64_t singles = 0;  ///< seeds that were bounded one by one
};

/// The bounds of one text. Several may serve the same text at once.
class CSeedBounds {
 public:
  /// What `text` points to must outlive it.
  explicit CSeedBounds(const ScoredText& text) : text_(text) {}

  /// Bounds seeds of this line of the plan from now on.
  void begin(const UnitPlan& unit) {
    if (unit_.unit_length == unit.unit_length) return;
    unit_ = unit;
    verdicts_ = undecided_group_ = {};
  }

  /// False if no bound serves the unit length: all seeds stay undecided.
  [[nodiscard]] bool has_bounds() const { return !unit_.bounds.is_empty(); }

  /// True if the seed at base p has a verdict.
  [[nodiscard]] bool has_verdict(std::uint64_t p) const { return verdicts_.cover(p); }

  /// Finds the verdict on the seed at base p, and on neighbours: bit k of `asked` is for base
  /// p + k. REQUIRES: bit 0 is set, the unit at p holds no N, all units are in the text.
  /// Throws: std::bad_alloc.
  void decide(std::uint64_t p, std::uint64_t asked) { verdicts_ = bound_neighbours(p, asked); }

  /// False if the seed at base p is rejected. REQUIRES: has_verdict(p).
  [[nodiscard]] bool is_undecided(std::uint64_t p) const { return verdicts_.is_undecided(p); }

  /// The work done since it was made.
  [[nodiscard]] const SeedBoundsWork& work() const { return work_; }
  [[nodiscard]] const BoundWork& group_work() const { return for_groups_.work; }
  [[nodiscard]] const BoundWork& batch_work() const { return for_batches_.work; }
  [[nodiscard]] const BoundWork& single_work() const { return for_singles_.work; }

 private:
  /// Verdicts on seeds of one unit length at up to 64 neighbouring bases.
  struct Verdicts {
    std::uint64_t first_base = 0;
    std::uint64_t decided = 0;    ///< bit k: there is a verdict on the seed at `first_base` + k
    std::uint64_t undecided = 0;  ///< bit k: and it is "undecided"

    [[nodiscard]] bool cover(std::uint64_t p) const {
      return p - first_base < 64 && (decided >> (p - first_base) & 1) != 0;
    }
    [[nodiscard]] bool is_undecided(std::uint64_t p) const {
      return (undecided >> (p - first_base) & 1) != 0;
    }
  };

  [[nodiscard]] SeedQuestion question(std::uint64_t p, std::uint64_t asked) const {
    return {text_.begin + p, unit_.unit_length, asked, unit_.min_score};
  }
  /// The verdict of the first bound that serves for `asked` seeds, bit k for base p + k.
  [[nodiscard]] Verdicts bound_neighbours(std::uint64_t p, std::uint64_t asked);
  /// True if all of those seeds are rejected as one group. False, without asking, where the last
  /// undecided group has the seed at p.
  [[nodiscard]] bool is_group_rejected(std::uint64_t p, std::uint64_t asked);

  ScoredText text_;
  UnitPlan unit_;
  BoundWorkspace for_singles_;
  BoundWorkspace for_batches_;
  BoundWorkspace for_groups_;
  Verdicts verdicts_;
  Verdicts undecided_group_;  ///< the last one
  SeedBoundsWork work_;
};

}  // namespace quorix
