#pragma once

/// @file
/// The memory of the tables of search/filter/lag_sieve.h, which explains the symbols: rows, and
/// what the lags of a row demand.
///
/// Row t holds the pairs of a base at x and a unit character at y with x + y = t. Their lags x - y
/// have the parity of t. `first_lag` is odd: lane k of an odd row is lag `first_lag` + 2 k, of an
/// even row one more. So of the lags one longer and one shorter, one is in the same lane of the
/// neighbouring rows and the other in the lane beside it.
///
/// Every lag that a path of one of the unit lengths may have within its first copy has a lane: from
/// the first unit length less `max_indels`, or 1 if that is more, to the last one plus
/// `max_indels`. What is beside the lanes reads as 0, which is sound only because no path gets
/// there within its first copy. Rows are whole vectors, so they have some lags more at the upper
/// end, and one more at the lower end if that makes `first_lag` odd.
///
/// What a path needs to persist and how far it may fall increase with the unit length, and so does
/// its lowest lag. So the caps of a lane are those of the longest unit length whose paths come
/// there.

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "search/filter/lag_sieve.h"

namespace quorix {

/// What a path pays and gets.
struct LagWeights {
  std::uint8_t mismatch;  ///< penalties, for the gain
  std::uint8_t indel;
  std::uint8_t reward;  ///< of a match or N, for the persistence
  std::uint8_t cost;    ///< of an edit, for the persistence
  /// True if half of the score on entry, rounded up, is enough credit for the persistence of the
  /// left side; else it takes all of it.
  bool is_half_enough;
};

/// One value a lane, see search/filter/lag_sieve.h.
struct LagLanes {
  std::uint8_t* gain_cap;
  std::uint8_t* persistence_cap;
  std::uint8_t* min_gain;         ///< to both sides together
  std::uint8_t* min_persistence;  ///< to one side
  std::uint8_t* is_searched;      ///< not 0 for the unit lengths of the rule
};

/// The last three rows of both tables. Lanes on both sides of a row are 0: they are read, one lane
/// far, and never written, since rows are whole vectors.
class CLagRows {
 public:
  explicit CLagRows(std::size_t lane_count)
      : stride_(lane_count + 2 * kMargin), values_(6 * stride_) {}

  /// Row `age` before the newest one, 0 to 2.
  [[nodiscard]] std::uint8_t* gain(std::size_t age) { return row(age); }
  [[nodiscard]] const std::uint8_t* gain(std::size_t age) const { return row(age); }
  [[nodiscard]] std::uint8_t* persistence(std::size_t age) { return row(age) + 3 * stride_; }
  [[nodiscard]] const std::uint8_t* persistence(std::size_t age) const {
    return row(age) + 3 * stride_;
  }

  /// The oldest row becomes the newest, to be overwritten.
  void advance() { newest_ = (newest_ + 1) % 3; }

  /// All rows are 0 again.
  void clear() { values_.assign(values_.size(), 0); }

 private:
  static constexpr std::size_t kMargin = 64;

  [[nodiscard]] std::uint8_t* row(std::size_t age) {
    return values_.data() + (newest_ + 3 - age) % 3 * stride_ + kMargin;
  }
  [[nodiscard]] const std::uint8_t* row(std::size_t age) const {
    return values_.data() + (newest_ + 3 - age) % 3 * stride_ + kMargin;
  }

  std::size_t stride_;
  std::vector<std::uint8_t> values_;
  std::size_t newest_ = 0;
};

class CLagGrid {
 public:
  /// Rows are whole vectors of this many lanes.
  static constexpr std::size_t kLaneGrain = 32;
  /// A seed with a higher gain to the right is undecided, whatever its left side does. So this
  /// bounds the score on entry to the left, and with it `max_indels`. Any value would be sound.
  static constexpr std::uint8_t kMaxGain = 31;

  /// The text and the rule must outlive this.
  /// Throws: std::bad_alloc.
  CLagGrid(const char* text, std::uint64_t length, const LagRule& rule);

  /// The rows of the whole text: two for each base.
  [[nodiscard]] std::int64_t row_count() const { return 2 * length_; }
  /// The rows of a segment; the last one may have fewer.
  [[nodiscard]] std::int64_t rows_per_segment() const { return rows_per_segment_; }
  [[nodiscard]] std::size_t lane_count() const { return lane_count_; }
  [[nodiscard]] const LagWeights& weights() const { return weights_; }

  /// 0 for odd rows, 1 for even ones.
  [[nodiscard]] static std::int64_t parity_of(std::int64_t t) { return 1 - (t & 1); }
  /// What each lag of the rows of `parity` demands, see `parity_of`.
  [[nodiscard]] const LagLanes& lanes(std::int64_t parity) const {
    return lanes_[static_cast<std::size_t>(parity)];
  }

  /// The text is sieved in segments of `rows_per_segment()` rows, the last one shorter.
  [[nodiscard]] std::int64_t segment_count() const {
    return (row_count() + rows_per_segment_ - 1) / rows_per_segment_;
  }
  [[nodiscard]] Segment segment(std::int64_t i) const {
    const std::int64_t first = i * rows_per_segment_;
    return {static_cast<std::uint64_t>(first / 2),
            static_cast<std::uint64_t>(std::min(first + rows_per_segment_, row_count()) / 2)};
  }

  /// Prepares for the rows [first_row, row_end), `rows_per_segment()` at most, of any segment.
  void load_segment(std::int64_t first_row, std::int64_t row_end);

  /// True if the bases loaded have N's that stand for any base.
  [[nodiscard]] bool may_have_neutral_Ns() const { return may_have_neutral_Ns_; }

  /// The row to begin with when filling from right to left: paths from rows below `row_end` leave
  /// their first copy before it, so what lies beyond may be left out. After the text there is
  /// nothing.
  [[nodiscard]] std::int64_t row_ahead(std::int64_t row_end) const {
    return std::min(row_end + rows_ahead_, row_count()) - 1;
  }
  /// The row to begin with when filling from left to right: paths to the left, from rows from
  /// `first_row` on, leave their first copy after it.
  [[nodiscard]] std::int64_t row_before(std::int64_t first_row) const {
    return std::max<std::int64_t>(first_row - rows_ahead_, 0);
  }

  /// Bases and characters of row `t`, those of higher and of lower positions, by lane. Outside the
  /// text and in walls are letters that match nothing. REQUIRES: the rows are loaded, from
  /// `row_before(first_row)` - 2 up to `row_ahead(row_end)`.
  [[nodiscard]] const std::uint8_t* higher_bases(std::int64_t t) const {
    const std::int64_t offset = (t + first_lag_ + parity_of(t)) / 2 - first_higher_;
    assert(has_row(higher_bases_, offset));
    return higher_bases_.data() + offset;
  }
  [[nodiscard]] const std::uint8_t* lower_bases(std::int64_t t) const {
    const std::int64_t offset = last_lower_ - (t - first_lag_ - parity_of(t)) / 2;
    assert(has_row(lower_bases_, offset));
    return lower_bases_.data() + offset;
  }

  /// Clears and returns the rows of the extension to the right, or to the left.
  [[nodiscard]] CLagRows& start_rightward_rows() {
    rightward_rows_.clear();
    return rightward_rows_;
  }
  [[nodiscard]] CLagRows& start_leftward_rows() {
    leftward_rows_.clear();
    return leftward_rows_;
  }

  /// Room for what is stored of a row of the segment, a byte for each lane.
  [[nodiscard]] std::uint8_t* stored_row(std::int64_t t) {
    assert(t >= first_row_ && t < first_row_ + rows_per_segment_);
    return stored_.data() + static_cast<std::size_t>(t - first_row_) * lane_count_;
  }

  /// Notes that the seeds of row `t` are undecided in those lanes from `first_lane` on whose bit is
  /// set in `lane_bits`.
  void note_undecided(std::int64_t t, std::size_t first_lane, const std::uint8_t* lane_bits,
                      std::size_t lane_count);

  /// Clears the bits of the other seeds in the rows [first_row, row_end), and forgets those noted.
  void clear_rejected(std::int64_t first_row, std::int64_t row_end, std::vector<CBitSet>& seeds);

 private:
  /// True if as many letters as a row has lanes stand from `offset` on.
  [[nodiscard]] bool has_row(const std::vector<std::uint8_t>& letters, std::int64_t offset) const {
    return offset >= 0 && static_cast<std::size_t>(offset) + lane_count_ <= letters.size();
  }
  [[nodiscard]] std::int64_t max_indels(std::int64_t unit_length) const;
  [[nodiscard]] std::int64_t min_persistence(std::int64_t unit_length) const;
  void choose_weights();
  void fill_lanes();

  const char* text_;
  std::int64_t length_;
  const LagRule& rule_;
  LagWeights weights_{};
  std::int64_t first_lag_ = 1;  ///< odd, no higher than the lowest lag that a path may use
  std::size_t lane_count_ = 0;
  std::int64_t rows_ahead_ = 0;
  std::int64_t rows_per_segment_ = 0;

  std::array<LagLanes, 2> lanes_{};  ///< by parity
  std::vector<std::uint8_t> lane_values_;
  CLagRows rightward_rows_{0};
  CLagRows leftward_rows_{0};

  std::int64_t first_row_ = 0;
  std::int64_t first_higher_ = 0;  ///< position of the first one of `higher_bases_`
  std::int64_t last_lower_ = 0;    ///< position of the first one of `lower_bases_`, which descend
  std::vector<std::uint8_t> higher_bases_;
  std::vector<std::uint8_t> lower_bases_;
  bool may_have_neutral_Ns_ = false;
  std::vector<std::uint8_t> stored_;

  /// The undecided seeds of the segment at the bases of word `w`.
  [[nodiscard]] std::uint64_t& undecided_word(std::int64_t unit_length, std::uint64_t w) {
    const auto first_base =
        static_cast<std::uint64_t>(std::max<std::int64_t>(first_row_ - unit_length, 0)) / 2;
    const std::uint64_t i = w - first_base / kWordBits;
    assert(i < undecided_words_);
    const auto unit = static_cast<std::size_t>(unit_length - rule_.first_unit_length);
    return undecided_[unit * undecided_words_ + i];
  }
  /// `undecided_words_` for each unit length; 0 but from `note_undecided` to `clear_rejected`.
  std::vector<std::uint64_t> undecided_;
  std::size_t undecided_words_ = 0;
};

}  // namespace quorix
