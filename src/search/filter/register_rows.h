/// @file
/// The last two rows of a table whose states are in registers.
///
/// States with the same sum of bases and characters form a row. Lane k of a row is the diagonal,
/// bases less characters, of 2 * k less the number of lanes, or one more in odd rows:
///
/// ```
///     diagonal              -4  -3  -2  -1   0   1   2   3     (4 lanes)
///     even row               0   .   1   .  [2]  .   3   .     the previous cell and
///     odd row                .   0   .  (1)  .  (2)  .   3     the two neighbours
///     even row               0   .   1   .  <2>  .   3   .     of this cell
/// ```
///
/// So a row needs only the two rows before it, and no cell is stored. The count of lanes is fixed
/// for a table. What it relies on:
///
/// - No value is cut off before it counts: the highest number stands for itself and all above it,
///   and no target is higher, so a value that saturates has met its target.
/// - A path leaves the lanes only from the first or the last of them, since one indel changes the
///   diagonal by one. `best` of these two lanes remembers all rows: if both are 0, no path has
///   ever left, so none can have come back either. How many lanes there are is a matter of speed.
///
/// This header is compiled once for each kind of processor, so its guard is one of Highway's.

#if defined(QUORIX_REGISTER_ROWS_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QUORIX_REGISTER_ROWS_H
#undef QUORIX_REGISTER_ROWS_H
#else
#define QUORIX_REGISTER_ROWS_H
#endif

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>

#include <hwy/highway.h>

#include "search/filter/dp_cell.h"
#include "search/rules/scoring_rules.h"

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {

/// The last two rows of a table, and the highest value of each lane. A row is `kBlocks` vectors of
/// 16 bytes. No state is alive before one enters.
template <class Value, int kBlocks>
class CRegisterRows {
 public:
  using Tag = hwy::HWY_NAMESPACE::Full128<Value>;
  using Vector = hwy::HWY_NAMESPACE::Vec<Tag>;
  static constexpr std::ptrdiff_t kBlockLanes = 16 / sizeof(Value);
  static constexpr std::ptrdiff_t kLanes = kBlockLanes * kBlocks;

  /// States enter with `start_value`, which is positive and fits a value.
  CRegisterRows(const ScoringRules& scoring, std::int64_t start_value)
      : weights_(score_weights(Tag(), scoring.mismatch_penalty, scoring.indel_penalty)),
        neutral_letter_(hwy::HWY_NAMESPACE::Set(
            Tag(), scoring.is_N_neutral ? Value{'N'} : Value{kNoNeutralLetter})) {
    namespace hn = hwy::HWY_NAMESPACE;
    assert(start_value > 0 && start_value == capped<Value>(start_value));
    const Tag d;
    HWY_ALIGN Value lanes[kBlockLanes] = {};
    lanes[kLanes / 2 % kBlockLanes] = static_cast<Value>(start_value);
    start_ = hn::Load(d, lanes);
    for (int i = 0; i < kBlocks; ++i) before_[i] = last_[i] = best_[i] = hn::Zero(d);
  }

  /// Lets a state on diagonal 0 enter the last row, which is an even one.
  HWY_INLINE void enter() {
    namespace hn = hwy::HWY_NAMESPACE;
    constexpr std::ptrdiff_t kMiddle = kLanes / 2 / kBlockLanes;
    last_[kMiddle] = hn::Max(last_[kMiddle], start_);
    best_[kMiddle] = hn::Max(best_[kMiddle], start_);
  }

  /// Computes the next row. `bases` are those of lane 0 and the lanes after it, and so are
  /// `characters`; a base matches that equals any of its characters. Returns true if a value of the
  /// row or of the one before is alive.
  template <class Letter, class... Letters>
  HWY_INLINE bool advance(bool is_odd, const Letter* bases, const Letters*... characters) {
    namespace hn = hwy::HWY_NAMESPACE;
    const Tag d;
    Vector alive = hn::Zero(d);
    Vector current[kBlocks];
    for (int i = 0; i < kBlocks; ++i) {
      const Vector base = load_letters(d, bases + kBlockLanes * i);
      Vector equal = hn::Zero(d);
      ((equal = hn::Or(equal, hn::VecFromMask(
                                  d, hn::Eq(base, load_letters(d, characters + kBlockLanes * i))))),
       ...);
      current[i] = living_cell(before_[i], hn::Max(last_[i], beside(i, is_odd)),
                               compare_letters<true>(d, base, equal, neutral_letter_), weights_);
      best_[i] = hn::Max(best_[i], current[i]);
      alive = hn::Or(alive, hn::Or(current[i], last_[i]));
    }
    for (int i = 0; i < kBlocks; ++i) {
      before_[i] = last_[i];
      last_[i] = current[i];
    }
    return !hn::AllTrue(d, hn::Eq(alive, hn::Zero(d)));
  }

  /// The highest value so far; none if it is the target or more, or if a path may have left the
  /// rows at their edge, in any row up to now.
  [[nodiscard]] HWY_INLINE std::optional<std::int64_t> highest_value(Vector target) const {
    namespace hn = hwy::HWY_NAMESPACE;
    const Tag d;
    HWY_ALIGN Value lanes[kLanes];
    for (int i = 0; i < kBlocks; ++i) {
      if (!hn::AllTrue(d, hn::Lt(best_[i], target))) return std::nullopt;
      hn::Store(best_[i], d, lanes + kBlockLanes * i);
    }
    if (lanes[0] != 0 || lanes[kLanes - 1] != 0) return std::nullopt;
    return *std::max_element(lanes, lanes + kLanes);
  }

 private:
  /// The lanes beside those of block i in the last row, towards the first lane or the last one.
  [[nodiscard]] HWY_INLINE Vector beside(int i, bool is_odd) const {
    namespace hn = hwy::HWY_NAMESPACE;
    const Tag d;
    const Vector zero = hn::Zero(d);
    return is_odd ? hn::CombineShiftRightBytes<sizeof(Value)>(
                        d, i + 1 < kBlocks ? last_[i + 1] : zero, last_[i])
                  : hn::CombineShiftRightBytes<16 - sizeof(Value)>(d, last_[i],
                                                                   i > 0 ? last_[i - 1] : zero);
  }

  CellWeights<Vector> weights_;
  Vector neutral_letter_;
  Vector start_;
  Vector last_[kBlocks];
  Vector before_[kBlocks];
  Vector best_[kBlocks];
};

}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif

#endif
