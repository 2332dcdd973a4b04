// A lane is a lag, a row is a sum x + y of the positions of base and character. The tables are
// filled row by row, right to left for extensions to the right, then left to right for the others:
//
//     lag           1   2   3   4   5   6   7   8          lanes of one parity: 4
//     row t         .       .      <v>      .              <v> = max of
//     row t + 1         .      (n)     (n)      .            (n) less an indel, the last row filled
//     row t + 2     .       .      [p]      .                [p] and a match or mismatch, before it
//
// Invariants:
//
// - Whole rows are filled, so each lane of the two rows before holds its value. Beside the lanes
//   there are zeros, which no path within its first copy reads (search/filter/lag_grid.h).
// - Each table holds its last three rows. Of a row of the rightward one a byte per lane is stored:
//   the gain, or 255 if the seed is undecided whatever its left side does. So a segment needs a
//   byte for each cell.
// - When row t is joined, the leftward table is at the mirror image of row t: a seed's left side
//   begins with the base before it and its last character, which is two rows further down.
//
// Beyond a segment, rows are filled up to `row_ahead` and from `row_before` on: paths of its seeds
// leave their first copy within these rows, and what they do after it does not matter.
//
// Instructions of a whole search (phage lambda, unit lengths up to 100): without the sieve 26 times
// as many; with 16 unit lengths at once instead of all, 1.8 times.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "search/filter/lag_sieve.cpp"
#include <hwy/foreach_target.h>  // compiles the rest of this file once for each kind of processor

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "search/filter/dp_cell.h"
#include "search/filter/lag_grid.h"

HWY_BEFORE_NAMESPACE();
namespace quorix::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

/// Without vector instructions nothing is rejected.
void sift_segment(CLagGrid& /*grid*/, std::int64_t /*first_row*/, std::int64_t /*row_end*/,
                  std::vector<CBitSet>& /*seeds*/, BoundWork& /*work*/) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

template <class Vector>
auto is_at_least(Vector values, Vector limits) {
  return hn::Eq(hn::Max(values, limits), values);
}

/// Computes row `t` of both tables from the two rows filled before it.
template <bool kMayHaveNs, bool kIsRightward>
void fill_row(const CLagGrid& grid, CLagRows& rows, std::int64_t t) {
  const hn::CappedTag<std::uint8_t, CLagGrid::kLaneGrain> d;
  using Vector = hn::Vec<decltype(d)>;
  const LagWeights& weights = grid.weights();
  const Vector cost = hn::Set(d, weights.cost);
  const CellWeights<Vector> points{hn::Set(d, 1), hn::Set(d, weights.mismatch),
                                   hn::Set(d, weights.indel)};
  const CellWeights<Vector> persistence_weights{hn::Set(d, weights.reward), cost, cost};
  const Vector neutral_letter = hn::Set(d, static_cast<std::uint8_t>('N'));

  const std::int64_t parity = CLagGrid::parity_of(t);
  const LagLanes& lanes = grid.lanes(parity);
  const std::uint8_t* const higher = grid.higher_bases(t);
  const std::uint8_t* const lower = grid.lower_bases(t);
  // Lags one longer and one shorter stand in the same lane and the one beside it.
  const std::ptrdiff_t beside = parity == 0 ? -1 : 1;
  const std::uint8_t* const last_gain = rows.gain(1);
  const std::uint8_t* const last_persistence = rows.persistence(1);
  const std::uint8_t* const before_gain = rows.gain(2);
  const std::uint8_t* const before_persistence = rows.persistence(2);
  std::uint8_t* const gain = rows.gain(0);
  std::uint8_t* const persistence = rows.persistence(0);

  for (std::size_t i = 0; i < grid.lane_count(); i += hn::Lanes(d)) {
    const Vector high = hn::LoadU(d, higher + i);
    const Vector low = hn::LoadU(d, lower + i);
    const Vector equal = hn::VecFromMask(d, hn::Eq(high, low));
    const ComparedLetters<Vector> letters =
        compare_letters<kMayHaveNs>(d, kIsRightward ? high : low, equal, neutral_letter);
    Vector neighbour = hn::Max(hn::LoadU(d, last_gain + i), hn::LoadU(d, last_gain + i + beside));
    Vector value = beginning_cell(hn::LoadU(d, before_gain + i), neighbour, letters, points);
    hn::StoreU(hn::Min(value, hn::LoadU(d, lanes.gain_cap + i)), d, gain + i);

    neighbour =
        hn::Max(hn::LoadU(d, last_persistence + i), hn::LoadU(d, last_persistence + i + beside));
    // A neutral base is rewarded like a match here.
    const ComparedLetters<Vector> free_letters{letters.is_free, letters.is_free};
    value = beginning_cell(hn::LoadU(d, before_persistence + i), neighbour, free_letters,
                           persistence_weights);
    hn::StoreU(hn::Min(value, hn::LoadU(d, lanes.persistence_cap + i)), d, persistence + i);
  }
}

/// Stores of row `t` what the left side needs: the gain, or 255 where the path may persist or gains
/// more than `kMaxGain`.
void store_row(const CLagGrid& grid, const CLagRows& rows, std::int64_t t, std::uint8_t* stored) {
  const hn::CappedTag<std::uint8_t, CLagGrid::kLaneGrain> d;
  using Vector = hn::Vec<decltype(d)>;
  const LagLanes& lanes = grid.lanes(CLagGrid::parity_of(t));
  const Vector max_gain = hn::Set(d, CLagGrid::kMaxGain);
  const Vector full = hn::Set(d, 255);
  for (std::size_t i = 0; i < grid.lane_count(); i += hn::Lanes(d)) {
    const Vector gain = hn::LoadU(d, rows.gain(0) + i);
    const auto may_persist =
        is_at_least(hn::LoadU(d, rows.persistence(0) + i), hn::LoadU(d, lanes.min_persistence + i));
    hn::StoreU(hn::IfThenElse(hn::Or(may_persist, hn::Gt(gain, max_gain)), full, gain), d,
               stored + i);
  }
}

/// Joins row `t` of the extension to the right, as stored, with `rows` of the extension to the
/// left, which are at its mirror image: notes the seeds that are undecided.
void join_row(CLagGrid& grid, const CLagRows& rows, std::int64_t t, const std::uint8_t* stored) {
  const hn::CappedTag<std::uint8_t, CLagGrid::kLaneGrain> d;
  using Vector = hn::Vec<decltype(d)>;
  const LagLanes& lanes = grid.lanes(CLagGrid::parity_of(t));
  const Vector zero = hn::Zero(d);
  const bool is_half = grid.weights().is_half_enough;
  for (std::size_t i = 0; i < grid.lane_count(); i += hn::Lanes(d)) {
    const Vector right_gain = hn::LoadU(d, stored + i);
    const Vector gain = hn::SaturatedAdd(right_gain, hn::LoadU(d, rows.gain(0) + i));
    // The score on entry allows for more edits. A gain to the right that is stored as 255 leaves
    // the seed undecided, whatever the minimum score, which is 255 here at most.
    const Vector credit = is_half ? hn::AverageRound(right_gain, zero) : right_gain;
    const Vector persistence = hn::SaturatedAdd(hn::LoadU(d, rows.persistence(0) + i), credit);
    const auto is_undecided =
        hn::Or(is_at_least(gain, hn::LoadU(d, lanes.min_gain + i)),
               is_at_least(persistence, hn::LoadU(d, lanes.min_persistence + i)));
    const auto searched = hn::Ne(hn::LoadU(d, lanes.is_searched + i), zero);
    const auto found = hn::And(is_undecided, searched);
    if (hn::AllFalse(d, found)) continue;
    std::uint8_t bits[HWY_MAX_BYTES / 8 + 8] = {};
    hn::StoreMaskBits(d, found, bits);
    grid.note_undecided(t, i, bits, hn::Lanes(d));
  }
}

template <bool kMayHaveNs>
void sift_rows(CLagGrid& grid, std::int64_t first_row, std::int64_t row_end,
               std::vector<CBitSet>& seeds, BoundWork& work) {
  const std::uint64_t rows_before = work.rows;
  CLagRows& right = grid.start_rightward_rows();
  for (std::int64_t t = grid.row_ahead(row_end); t >= first_row; --t) {
    right.advance();
    fill_row<kMayHaveNs, true>(grid, right, t);
    ++work.rows;
    if (t < row_end) store_row(grid, right, t, grid.stored_row(t));
  }
  CLagRows& left = grid.start_leftward_rows();
  for (std::int64_t t = grid.row_before(first_row); t < row_end; ++t) {
    left.advance();
    fill_row<kMayHaveNs, false>(grid, left, t - 2);
    ++work.rows;
    if (t >= first_row) join_row(grid, left, t, grid.stored_row(t));
  }
  grid.clear_rejected(first_row, row_end, seeds);
  work.tables += 2;
  work.cells += (work.rows - rows_before) * grid.lane_count();
}

void sift_segment(CLagGrid& grid, std::int64_t first_row, std::int64_t row_end,
                  std::vector<CBitSet>& seeds, BoundWork& work) {
  if (grid.may_have_neutral_Ns()) {
    sift_rows<true>(grid, first_row, row_end, seeds, work);
  } else {
    sift_rows<false>(grid, first_row, row_end, seeds, work);
  }
}

#endif

}  // namespace
}  // namespace quorix::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace quorix {

namespace {

HWY_EXPORT(sift_segment);

}  // namespace

BoundWork sift_by_lags(CLagGrid& workspace, const Segment& segment, std::vector<CBitSet>& seeds) {
  // A row is twice the base in the middle of its seeds.
  const auto first_row = static_cast<std::int64_t>(2 * segment.first);
  const auto row_end = static_cast<std::int64_t>(2 * segment.end);
  BoundWork work;
  workspace.load_segment(first_row, row_end);
  HWY_DYNAMIC_DISPATCH(sift_segment)(workspace, first_row, row_end, seeds, work);
  return work;
}

BoundWork sift_text_by_lags(const char* text, std::uint64_t length, const LagRule& rule,
                            std::vector<CBitSet>& seeds) {
  CLagGrid workspace(text, length, rule);
  BoundWork work;
  for (std::int64_t i = 0; i < workspace.segment_count(); ++i) {
    const BoundWork done = sift_by_lags(workspace, workspace.segment(i), seeds);
    work.tables += done.tables;
    work.rows += done.rows;
    work.cells += done.cells;
  }
  return work;
}

}  // namespace quorix

#endif
