// Bases are laid out so that a row is two loads, one of bases and one of characters, without a
// shuffle. From one lane to the next the lag is two longer: the base is one higher and the
// character one lower. So the text is stored twice, once ascending and once descending:
//
//     lane              0         1         2              row t, lags l, l + 2, l + 4
//     higher bases      x         x + 1     x + 2          x = (t + l) / 2
//     lower bases       y         y - 1     y - 2          y = (t - l) / 2
//
// The next row of the same parity begins one base further in both. Outside the text and in walls
// stand letters that match nothing, so that no loop needs the ends of the text. To the right the
// higher position is the base, to the left the lower one: the same rows serve both sides.
//
// Rows after the last base are left out: there a cell has no base, only a mismatch, and is 0.
//
// Segments trade memory for rows filled twice. Twice `kSegmentBytes` saves 1 % of the instructions
// of a search of unit lengths up to 100, and costs 3 % of its time on 50,000 bases: more pages are
// new.

#include "search/filter/lag_grid.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "search/filter/walled_text.h"

namespace quorix {

namespace {

constexpr std::int64_t kSignedGrain = CLagGrid::kLaneGrain;
/// Bytes that are stored of a segment, unless that makes it too short.
constexpr std::int64_t kSegmentBytes = 1'000'000;
/// Rows of a segment for each row that is filled beyond it, on either side, at least.
constexpr std::int64_t kMinSegmentHalos = 6;

/// Letters that no base has, and that differ from each other.
constexpr std::uint8_t kAfterText = 1;
constexpr std::uint8_t kBeforeText = 2;

std::uint8_t as_byte(std::int64_t value) {
  return static_cast<std::uint8_t>(std::clamp<std::int64_t>(value, 0, 255));
}

std::int64_t divided_up(std::int64_t dividend, std::int64_t divisor) {
  return (dividend + divisor - 1) / divisor;
}

}  // namespace

CLagGrid::CLagGrid(const char* text, std::uint64_t length, const LagRule& rule)
    : text_(text), length_(static_cast<std::int64_t>(length)), rule_(rule) {
  choose_weights();
  const auto first = rule.first_unit_length;
  const auto last = rule.last_unit_length();
  const std::int64_t indels = max_indels(last);
  // Within a copy a character lies before its base, so no lag is below 1. An even one is rounded
  // down: a lag without a lane would be read as one that no path lives through.
  const std::int64_t lowest_lag = std::max<std::int64_t>(first - indels, 1);
  first_lag_ = (lowest_lag - 1) | 1;
  const std::int64_t lags = last + indels - first_lag_ + 1;
  lane_count_ = static_cast<std::size_t>(divided_up(lags, 2 * kSignedGrain) * kSignedGrain);
  assert(first_lag_ >= 1 && first_lag_ % 2 == 1);
  // Every lag that a path may have has a lane.
  assert(first_lag_ <= lowest_lag);
  assert(first_lag_ + 2 * static_cast<std::int64_t>(lane_count_) > last + indels);
  // Within a copy a path uses up to L characters, and that many bases and its insertions.
  rows_ahead_ = 2 * last + indels + 2;
  rows_per_segment_ = std::max(kSegmentBytes / static_cast<std::int64_t>(lane_count_),
                               kMinSegmentHalos * rows_ahead_);
  rows_per_segment_ = std::min((rows_per_segment_ + 1) / 2 * 2, row_count());
  rightward_rows_ = CLagRows(lane_count_);
  leftward_rows_ = CLagRows(lane_count_);
  stored_.resize(static_cast<std::size_t>(rows_per_segment_) * lane_count_);
  undecided_words_ = static_cast<std::size_t>(rows_per_segment_) / 2 / kWordBits + 2;
  undecided_.resize(undecided_words_ * rule.min_scores.size());
  fill_lanes();
}

void CLagGrid::choose_weights() {
  const std::int64_t min_penalty = rule_.scoring.min_penalty();
  weights_.mismatch = as_byte(rule_.scoring.mismatch_penalty);
  weights_.indel = as_byte(rule_.scoring.indel_penalty);
  assert(min_penalty >= kMinLagPenalty);
  // The cost has to be below the penalties, and so high that noise collects nothing.
  const std::int64_t reward = min_penalty > kMinLagPenalty ? 1 : 2;
  const std::int64_t cost = min_penalty > kMinLagPenalty ? 2 : 3;
  weights_.reward = as_byte(reward);
  weights_.cost = as_byte(cost);
  weights_.is_half_enough =
      2 * (reward + cost) <= min_penalty + 1 && 2 * cost <= rule_.scoring.indel_penalty;
  // All of the score on entry is enough, an edit costs less here than in points, and matches pay
  // for the edits that they allow for.
  assert(reward + cost <= min_penalty + 1 && cost <= min_penalty && reward * min_penalty >= cost);
}

/// Insertions or deletions on a path through one copy that begins with at most `kMaxGain`: they
/// cost no more than that score, a match for each character, and what lies above minus the unit
/// length.
std::int64_t CLagGrid::max_indels(std::int64_t unit_length) const {
  return (kMaxGain + 2 * unit_length - 1) / rule_.scoring.indel_penalty;
}

/// The persistence of a path that begins with score 0 and lives on after the first copy.
std::int64_t CLagGrid::min_persistence(std::int64_t unit_length) const {
  const std::int64_t min_penalty = rule_.scoring.min_penalty();
  const std::int64_t budget = 2 * unit_length - 1;
  // A mismatch or deletion costs a character and its reward, too.
  const std::int64_t max_loss =
      std::max((weights_.reward + weights_.cost) * budget / (min_penalty + 1),
               weights_.cost * budget / rule_.scoring.indel_penalty);
  return std::max<std::int64_t>(weights_.reward * unit_length - max_loss, 0);
}

void CLagGrid::fill_lanes() {
  lane_values_.assign(10 * lane_count_, 0);
  const std::int64_t min_penalty = rule_.scoring.min_penalty();
  const auto first = rule_.first_unit_length;
  const auto last = rule_.last_unit_length();
  // A path that lives has never collected less than minus this, with score 0 on entry.
  const auto deepest_fall = [&](std::int64_t unit_length) {
    return divided_up(weights_.cost * unit_length, min_penalty) + 1;
  };
  for (std::size_t parity = 0; parity < 2; ++parity) {
    std::uint8_t* const values = lane_values_.data() + 5 * parity * lane_count_;
    LagLanes& limits = lanes_[parity];
    limits = {values, values + lane_count_, values + 2 * lane_count_, values + 3 * lane_count_,
              values + 4 * lane_count_};
    std::int64_t max_unit = first;  // the max unit length whose paths may come here
    for (std::size_t k = 0; k < lane_count_; ++k) {
      const std::int64_t lag =
          first_lag_ + static_cast<std::int64_t>(parity) + 2 * static_cast<std::int64_t>(k);
      while (max_unit < last && max_unit + 1 - max_indels(max_unit + 1) <= lag) ++max_unit;
      limits.gain_cap[k] = as_byte(max_unit);
      limits.persistence_cap[k] = as_byte(min_persistence(max_unit) + deepest_fall(max_unit));
      // So the cap serves the shorter unit lengths, too.
      assert(k == 0 || (limits.gain_cap[k] >= limits.gain_cap[k - 1] &&
                        limits.persistence_cap[k] >= limits.persistence_cap[k - 1]));
      const bool is_searched = lag >= first && lag <= last;
      limits.is_searched[k] = is_searched ? 255 : 0;
      limits.min_gain[k] =
          is_searched ? as_byte(rule_.min_scores[static_cast<std::size_t>(lag - first)]) : 255;
      // Where need and fall together exceed a byte, 255 less the fall is enough (lag_sieve.h, 4).
      limits.min_persistence[k] =
          is_searched ? as_byte(std::min(min_persistence(lag), 255 - deepest_fall(lag))) : 255;
    }
  }
}

void CLagGrid::load_segment(std::int64_t first_row, std::int64_t row_end) {
  assert(row_end - first_row <= rows_per_segment_);
  first_row_ = first_row;
  const std::int64_t first_loaded = row_before(first_row) - 2;
  const std::int64_t lane_room = static_cast<std::int64_t>(lane_count_) + kSignedGrain;
  // The rows used are [first_loaded, row_end + rows_ahead).
  first_higher_ = (first_loaded + first_lag_) / 2 - 1;
  const std::int64_t higher_end = (row_end + rows_ahead_ + first_lag_) / 2 + 2 + lane_room;
  last_lower_ = (row_end + rows_ahead_ - first_lag_) / 2 + 2;
  const std::int64_t lower_begin = (first_loaded - first_lag_) / 2 - 2 - lane_room;

  higher_bases_.assign(static_cast<std::size_t>(higher_end - first_higher_), kAfterText);
  lower_bases_.assign(static_cast<std::size_t>(last_lower_ - lower_begin), kBeforeText);
  for (std::int64_t x = std::max<std::int64_t>(first_higher_, 0); x < std::min(higher_end, length_);
       ++x) {
    const char base = text_[x];
    // The letter that is there already: two walls must not match, or paths would gain in a gap.
    if (base == kWallLetter) continue;
    higher_bases_[static_cast<std::size_t>(x - first_higher_)] = static_cast<std::uint8_t>(base);
  }
  for (std::int64_t y = std::max<std::int64_t>(lower_begin + 1, 0);
       y <= std::min(last_lower_, length_ - 1); ++y) {
    const char base = text_[y];
    lower_bases_[static_cast<std::size_t>(last_lower_ - y)] = static_cast<std::uint8_t>(base);
  }
  const auto has_N = [](const std::vector<std::uint8_t>& bases) {
    return std::find(bases.begin(), bases.end(), static_cast<std::uint8_t>('N')) != bases.end();
  };
  may_have_neutral_Ns_ =
      rule_.scoring.is_N_neutral && (has_N(higher_bases_) || has_N(lower_bases_));
}

void CLagGrid::note_undecided(std::int64_t t, std::size_t first_lane, const std::uint8_t* lane_bits,
                              std::size_t lane_count) {
  for (std::size_t lane = 0; lane < lane_count; lane += 8) {
    for (unsigned bits = lane_bits[lane / 8]; bits != 0; bits &= bits - 1) {
      const std::size_t k = first_lane + lane + static_cast<std::size_t>(std::countr_zero(bits));
      const std::int64_t unit_length = first_lag_ + parity_of(t) + 2 * static_cast<std::int64_t>(k);
      const std::int64_t start = (t - unit_length) / 2;
      if (t < unit_length || start >= length_ - unit_length) continue;
      undecided_word(unit_length, static_cast<std::uint64_t>(start) / kWordBits) |=
          std::uint64_t{1} << (static_cast<std::uint64_t>(start) % kWordBits);
    }
  }
}

void CLagGrid::clear_rejected(std::int64_t first_row, std::int64_t row_end,
                              std::vector<CBitSet>& seeds) {
  for (std::size_t unit = 0; unit < seeds.size(); ++unit) {
    const std::int64_t unit_length = rule_.first_unit_length + static_cast<std::int64_t>(unit);
    // A seed that begins at p stands in row 2 p + unit length.
    const auto base_of = [&](std::int64_t row) {
      return std::min(
          static_cast<std::uint64_t>(std::max<std::int64_t>(row - unit_length + 1, 0)) / 2,
          seeds[unit].size());
    };
    const std::uint64_t first = base_of(first_row);
    const std::uint64_t end = base_of(row_end);
    if (first >= end) continue;
    const std::uint64_t first_word = first / kWordBits;
    const std::uint64_t last_word = (end - 1) / kWordBits;
    std::uint64_t* const undecided = &undecided_word(unit_length, first_word);
    const std::size_t word_count = last_word - first_word + 1;
    // Bits of other segments stay.
    undecided[0] |= ~(~std::uint64_t{0} << (first % kWordBits));
    undecided[word_count - 1] |= ~(~std::uint64_t{0} >> (kWordBits - 1 - (end - 1) % kWordBits));
    std::uint64_t* const words = seeds[unit].words().data() + first_word;
    for (std::size_t i = 0; i < word_count; ++i) words[i] &= undecided[i];
    std::fill_n(undecided, word_count, 0);
  }
}

}  // namespace quorix
