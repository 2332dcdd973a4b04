/// @file
/// The recurrence that all tables of the filter share, for as many cells as a vector has lanes.
///
/// A state has read b bases and used c characters of the unit. Its diagonal is b - c. Its value is
/// the highest that a path of matches and edits has there, counted from a floor: 0 is dead.
///
/// ```
///   b, c: bases read, characters used
///                                                 value(b, c) = max of
///        c - 1        c
///      +----------+----------+                      previous + reward     if the letters match
///      | previous | neighbour|  b - 1               previous              if a base is neutral
///      +----------+----+-----+                      previous - mismatch   otherwise
///      |neighbour |-->value  |  b                   neighbour - indel     for both neighbours
///      +----------+----------+                      0
/// ```
///
/// Values saturate at both ends, so a value that falls to 0 or below dies. What a lane stands for,
/// a diagonal, a seed or a lag, is up to the table.
///
/// This header is compiled once for each kind of processor, so its guard is one of Highway's.

#if defined(QUORIX_DP_CELL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef QUORIX_DP_CELL_H
#undef QUORIX_DP_CELL_H
#else
#define QUORIX_DP_CELL_H
#endif

#include <algorithm>
#include <cstdint>
#include <limits>

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {

/// Returns letters as vectors of values of tag `d`.
template <class D>
HWY_INLINE hwy::HWY_NAMESPACE::Vec<D> load_letters(D d, const std::uint8_t* letters) {
  namespace hn = hwy::HWY_NAMESPACE;
  if constexpr (sizeof(hn::TFromD<D>) == 1) {
    return hn::LoadU(d, letters);
  } else {
    return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::uint8_t, D>(), letters));
  }
}
template <class D>
HWY_INLINE hwy::HWY_NAMESPACE::Vec<D> load_letters(D d, const char* letters) {
  return load_letters(d, static_cast<const std::uint8_t*>(static_cast<const void*>(letters)));
}

/// Returns `points`, or the highest value if that is lower. A table answers its question when a
/// value meets the target, which is no higher. So a penalty may be cut off, too: it still kills
/// every value that has not met the target.
template <class Value>
[[nodiscard]] Value capped(std::int64_t points) {
  return static_cast<Value>(std::min<std::int64_t>(points, std::numeric_limits<Value>::max()));
}

/// What a match adds and an edit costs, in all lanes.
template <class Vector>
struct CellWeights {
  Vector reward;
  Vector mismatch;
  Vector indel;
};

/// Returns weights in points: a match scores 1.
template <class D>
CellWeights<hwy::HWY_NAMESPACE::Vec<D>> score_weights(D d, std::int64_t mismatch_penalty,
                                                      std::int64_t indel_penalty) {
  namespace hn = hwy::HWY_NAMESPACE;
  using Value = hn::TFromD<D>;
  return {hn::Set(d, Value{1}), hn::Set(d, capped<Value>(mismatch_penalty)),
          hn::Set(d, capped<Value>(indel_penalty))};
}

/// How bases compare with characters: all bits of a lane are set, or none.
template <class Vector>
struct ComparedLetters {
  Vector is_match;  ///< earns the reward
  Vector is_free;   ///< costs no mismatch: a match or a neutral base
};

/// The letter of a neutral base where there is none: it equals no letter of a text.
inline constexpr std::uint8_t kNoNeutralLetter = 0xFF;

/// Returns the comparison of `base` with characters that are `equal` or not. A base that is
/// `neutral_letter` is neutral, whatever it is compared with. `kMayBeNeutral` is false if there are
/// no such bases.
template <bool kMayBeNeutral, class D, class Vector>
HWY_INLINE ComparedLetters<Vector> compare_letters(D d, Vector base, Vector equal,
                                                   Vector neutral_letter) {
  namespace hn = hwy::HWY_NAMESPACE;
  if constexpr (kMayBeNeutral) {
    const Vector is_neutral = hn::VecFromMask(d, hn::Eq(base, neutral_letter));
    return {hn::AndNot(is_neutral, equal), hn::Or(equal, is_neutral)};
  } else {
    return {equal, equal};
  }
}

/// Returns the value of a cell, see above; `neighbour` is the higher one of the two neighbours. The
/// reward must be `earned`: all of it, or less in lanes that may not have it.
template <class Vector>
HWY_INLINE Vector dp_cell(Vector previous, Vector neighbour, const ComparedLetters<Vector>& letters,
                          const CellWeights<Vector>& weights, Vector earned) {
  namespace hn = hwy::HWY_NAMESPACE;
  Vector value = hn::SaturatedSub(previous, hn::AndNot(letters.is_free, weights.mismatch));
  value = hn::SaturatedAdd(value, hn::And(letters.is_match, earned));
  return hn::Max(value, hn::SaturatedSub(neighbour, weights.indel));
}

/// The cell of a path that must never fall to the floor: a match does not wake a dead state.
/// REQUIRES: the reward is 1.
template <class Vector>
HWY_INLINE Vector living_cell(Vector previous, Vector neighbour,
                              const ComparedLetters<Vector>& letters,
                              const CellWeights<Vector>& weights) {
  return dp_cell(previous, neighbour, letters, weights,
                 hwy::HWY_NAMESPACE::Min(previous, weights.reward));
}

/// The cell of a path that may begin anywhere: a match of a dead state begins one.
template <class Vector>
HWY_INLINE Vector beginning_cell(Vector previous, Vector neighbour,
                                 const ComparedLetters<Vector>& letters,
                                 const CellWeights<Vector>& weights) {
  return dp_cell(previous, neighbour, letters, weights, weights.reward);
}

}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
