// Runs are found word by word, as set bits of the matches at one lag. A word is 64 boundaries:
//
//     bit              0   1   2   3   4   5   6   7 ...
//     matches          0   1   1   1   0   0   1   1         base i equals the one a lag before
//     first bits       0   1   0   0   0   0   1   0         matches & ~(matches << 1)
//     run starts (3)   0   1   0   0   0   0   ?   ?         the bits of the next word decide
//
// Invariant of the scan: the seeds before `decided` have their verdict, all others are as they
// came. A run [first, last) is the boundary run of the seeds first - L to last - L, and a seed has
// no other one. So clearing the seeds between those of two undecided runs rejects exactly the seeds
// whose run is too short or has no run one edit away, and seeds at no run at all.
//
// What is skipped, and why that is sound:
//
// - A word without a first bit: no run begins in it.
// - A first bit that is no run start for `min_run`, or for 64 if that is less: its run is short.
// - A bit that is no possible start of `CNearRuns`: neither run of the two has half of what both
//   need.
//
// A run that began before the segment is found by going back to its first base, once.
//
// Instructions of a whole search (phage lambda, default options unless said otherwise): without the
// sieve 11 times as many in a search of exact repeats; without `CNearRuns` 19 % more.

#include "search/filter/run_sieve.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

namespace quorix {

namespace {

/// The bits of word `w` at which a run of `length` set bits begins, 1 <= length <= 64.
std::uint64_t run_starts(const std::vector<std::uint64_t>& words, std::size_t w,
                         std::uint64_t length) {
  std::uint64_t starts = words[w];
  std::uint64_t next = words[w + 1];
  // After each step a bit stands for `known` set bits from it on.
  for (std::uint64_t known = 1; known < length && starts != 0;) {
    const std::uint64_t step = std::min(known, length - known);
    starts &= starts >> step | next << (kWordBits - step);
    next &= next >> step;
    known += step;
  }
  return starts;
}

/// Calls `visit(first, last)` for the maximal runs [first, last) of at least `min_length` set bits
/// with `starts.first` <= first < `starts.end` that begin at a bit of `possible_starts(w)`,
/// for each word w in ascending order.
template <class PossibleStarts, class Visit>
RunWork for_each_run(const CBitSet& bits, std::uint64_t min_length, const Segment& starts,
                     PossibleStarts possible_starts, const Visit& visit) {
  assert(min_length >= 1 && starts.first < starts.end);
  RunWork work;
  const std::vector<std::uint64_t>& words = bits.words();
  const std::uint64_t sieved = std::min(min_length, kWordBits);
  const std::size_t first_word = starts.first / kWordBits;
  const std::size_t last_word = (starts.end - 1) / kWordBits;
  std::uint64_t before = first_word == 0 ? 0 : words[first_word - 1];
  for (std::size_t w = first_word; w <= last_word; ++w) {
    const std::uint64_t first_bits = words[w] & ~(words[w] << 1U | before >> (kWordBits - 1));
    before = words[w];
    std::uint64_t run_bits = first_bits & possible_starts(w);
    if (run_bits == 0) continue;
    run_bits &= run_starts(words, w, sieved);
    ++work.words;
    if (run_bits == 0) continue;
    if (w == first_word) run_bits &= ~std::uint64_t{0} << (starts.first % kWordBits);
    if (w == last_word) {
      run_bits &= ~std::uint64_t{0} >> (kWordBits - 1 - (starts.end - 1) % kWordBits);
    }
    for (; run_bits != 0; run_bits &= run_bits - 1) {
      ++work.runs;
      const std::uint64_t first =
          w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(run_bits));
      const std::uint64_t last = bits.find_clear(first);
      if (last - first >= min_length) visit(first, last);
    }
  }
  return work;
}

/// Where the run of set bits begins that ends at or after `position`, but not before `lowest`;
/// `position` if there is none.
std::uint64_t run_start_at(const CBitSet& bits, std::uint64_t position, std::uint64_t lowest) {
  while (position > lowest) {
    const auto ones = static_cast<std::uint64_t>(bits.ones_down_from(position - 1));
    position -= ones;
    if (ones < kWordBits) break;
  }
  return position;
}

/// Finds where a run may begin that a run one edit away makes long enough, or that is long enough
/// by itself. Of two runs that make up `min_two_runs` together one has half of them, or as much as
/// the unit allows for; where no run of that length is near, none has to be looked at.
///
/// A run of `half_` bases or more has `near_` at its beginning. A shorter one lacks `half_` or
/// more, so the run one edit off that is asked for has `near_`, which is no more than `half_` and
/// than L - 1. On the right it begins up to `half_` bases after the beginning of the short one; on
/// the left its last `near_` bases begin `near_` or `near_` + 1 bases before it. These are two or
/// three neighbouring words, so `half_` and `near_` + 1 are less than 64.
class CNearRuns {
 public:
  /// `near_run` is that of `rule`, and above 0.
  CNearRuns(const CNeighbourLags& lags, const RunRule& rule, std::int64_t near_run,
            std::size_t first_word)
      : lags_(lags),
        first_word_(first_word),
        unit_length_(static_cast<std::uint64_t>(rule.unit_length)),
        half_(static_cast<std::uint64_t>((rule.min_two_runs + 1) / 2)),
        near_(static_cast<std::uint64_t>(near_run)),
        before_(first_word == 0 ? 0 : long_runs(first_word - 1)),
        here_(long_runs(first_word)),
        after_(long_runs(first_word + 1)) {
    assert(1 <= near_ && near_ <= half_ && half_ < kWordBits - 1 && near_ < unit_length_);
  }

  /// For each word in turn.
  std::uint64_t operator()(std::size_t w) {
    if (w > first_word_) {
      before_ = here_;
      here_ = after_;
      after_ = long_runs(w + 1);
    }
    const std::uint64_t first = w * kWordBits;
    if (lags_.is_N_wild() && lags_.planes().has_N_near(first - std::min(first, unit_length_),
                                                       first + kWordBits + half_)) {
      return ~std::uint64_t{0};
    }
    // A run to the left ends one or two bases before; one to the right begins up to a base after
    // the end of a short run.
    std::uint64_t possible_starts = here_;
    for (std::uint64_t i = 1; i <= half_; ++i)
      possible_starts |= here_ >> i | after_ << (kWordBits - i);
    for (std::uint64_t i = 1; i <= near_ + 1; ++i)
      possible_starts |= here_ << i | before_ >> (kWordBits - i);
    return possible_starts;
  }

 private:
  /// Bit i: at one of the lags a run of `near_` bases begins at base i of word `w`.
  [[nodiscard]] std::uint64_t long_runs(std::size_t w) const {
    const auto starts = [&](const CBitSet& matches) {
      return w + 1 < matches.words().size() ? run_starts(matches.words(), w, near_) : 0;
    };
    return starts(lags_.shorter()) | starts(lags_.at()) | starts(lags_.longer());
  }

  const CNeighbourLags& lags_;
  std::size_t first_word_;
  std::uint64_t unit_length_;
  std::uint64_t half_;
  std::uint64_t near_;
  std::uint64_t before_;
  std::uint64_t here_;
  std::uint64_t after_;
};

/// True if a run one edit away from [first, last) is long enough, see `RunRule::min_two_runs`.
bool has_second_run(const CNeighbourLags& lags, const RunRule& rule, std::uint64_t first,
                    std::uint64_t last) {
  const std::int64_t missing = rule.min_two_runs - static_cast<std::int64_t>(last - first);
  // The counts go up to 64.
  const std::int64_t at_lag = std::min({missing, rule.unit_length - 1, std::int64_t{64}});
  const std::int64_t at_longer_lag = std::min({missing, rule.unit_length, std::int64_t{64}});
  if (at_lag <= 0) return true;
  if (last < lags.at().size()) {
    if (lags.at().ones_from(last + 1) >= at_lag) return true;
    if (lags.longer().ones_from(last + 1) >= at_longer_lag) return true;
    if (lags.shorter().ones_from(last) >= at_lag) return true;
  }
  // A unit of one base has got its answer, so there are two bases before the run.
  assert(first >= 2 && first >= static_cast<std::uint64_t>(rule.unit_length));
  return lags.at().ones_down_from(first - 2) >= at_lag ||
         lags.longer().ones_down_from(first - 1) >= at_longer_lag ||
         lags.shorter().ones_down_from(first - 2) >= at_lag;
}

}  // namespace

CNeighbourLags::CNeighbourLags(const CBasePlanes& planes, bool is_N_wild)
    : planes_(planes), is_N_wild_(is_N_wild) {}

void CNeighbourLags::make(std::uint64_t lag) {
  if (made_[lag % 3] == lag) return;
  made_[lag % 3] = lag;
  ++made_count_;
  planes_.find_matches(lag, is_N_wild_, matches_[lag % 3]);
}

void CNeighbourLags::move_to(std::uint64_t lag, bool needs_neighbours) {
  lag_ = lag;
  make(lag);
  if (!needs_neighbours) return;
  // Lag 0 is never read: a unit of one base asks for no second run.
  if (lag > 1) make(lag - 1);
  make(lag + 1);
}

RunWork sift_by_runs(const CNeighbourLags& lags, const RunRule& rule, const Segment& segment,
                     CBitSet& seeds) {
  const auto unit_length = static_cast<std::uint64_t>(rule.unit_length);
  const auto min_run = static_cast<std::uint64_t>(rule.min_run);
  // At the end of the text there is no base after the last unit.
  const std::uint64_t seed_end = std::min(segment.end, seeds.size());
  assert(seeds.size() + unit_length == lags.at().size());
  if (segment.first >= seed_end) return {};
  std::uint64_t decided = segment.first;  // seeds before this one have their verdict
  const auto keep_seeds = [&](std::uint64_t first, std::uint64_t last) {
    const bool is_undecided =
        static_cast<std::int64_t>(last - first) >= rule.sure_run ||
        (lags.is_N_wild() && lags.planes().has_N_near(first - unit_length, last)) ||
        has_second_run(lags, rule, first, last);
    if (!is_undecided) return;
    seeds.clear_range(decided, std::max(first - unit_length, decided));
    decided = std::min(last - unit_length + 1, seed_end);
  };
  // A run is that of the seeds whose boundary it touches.
  const Segment starts{run_start_at(lags.at(), segment.first + unit_length, unit_length),
                       seed_end + unit_length};
  RunWork work;
  if (const std::int64_t near_run = rule.near_run(); near_run > 0) {
    work = for_each_run(lags.at(), min_run, starts,
                        CNearRuns(lags, rule, near_run, starts.first / kWordBits), keep_seeds);
  } else {
    work = for_each_run(
        lags.at(), min_run, starts, [](std::size_t) { return ~std::uint64_t{0}; }, keep_seeds);
  }
  seeds.clear_range(decided, seed_end);
  return work;
}

}  // namespace quorix
