#include "search/filter/run_sieve.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

namespace quorix {

namespace {

constexpr std::uint64_t kWordBits = CBitSet::kWordBits;

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

/// Calls `visit(first, last)` for the maximal runs [first, last) of at least `least` set bits that
/// begin at a bit of `candidates(w)`, for each word w in ascending order.
template <class Candidates, class Visit>
RunWork for_each_run(const CBitSet& bits, std::uint64_t least, Candidates candidates,
                     const Visit& visit) {
  assert(least >= 1);
  RunWork work;
  const std::vector<std::uint64_t>& words = bits.words();
  const std::uint64_t sieved = std::min(least, kWordBits);
  std::uint64_t before = 0;
  for (std::size_t w = 0; w + 1 < words.size(); ++w) {
    const std::uint64_t first_bits = words[w] & ~(words[w] << 1U | before >> (kWordBits - 1));
    before = words[w];
    std::uint64_t starts = candidates(w);
    if ((first_bits & starts) == 0) continue;
    starts &= first_bits & run_starts(words, w, sieved);
    ++work.words;
    for (; starts != 0; starts &= starts - 1) {
      ++work.runs;
      const std::uint64_t first =
          w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(starts));
      const std::uint64_t last = bits.find_clear(first);
      if (last - first >= least) visit(first, last);
    }
  }
  return work;
}

/// Tells where a run may begin that a run one edit away makes long enough, or that is long enough
/// by itself. Of two runs that make up `chained_runs` together one has half of them, or as much as
/// the unit allows for; where no run of that length is near, none has to be looked at.
///
/// A run of `half_` bases or more has `near_` at its beginning. A shorter one lacks `half_` or
/// more, so the run one edit off that is asked for has `near_`, which is no more than `half_` and
/// than L - 1. On the right it begins up to `half_` bases after the beginning of the short one; on
/// the left its last `near_` bases begin `near_` or `near_` + 1 bases before it. These are two or
/// three neighbouring words, so `half_` and `near_` + 1 are less than 64.
class CNearRuns {
 public:
  CNearRuns(const CNeighbourLags& lags, const RunRule& rule)
      : lags_(lags),
        unit_length_(static_cast<std::uint64_t>(rule.unit_length)),
        half_(static_cast<std::uint64_t>((rule.chained_runs + 1) / 2)),
        near_(static_cast<std::uint64_t>(rule.near_run())),
        here_(long_runs(0)),
        behind_(long_runs(1)) {
    assert(1 <= near_ && near_ <= half_ && half_ < kWordBits - 1 && near_ < unit_length_);
  }

  /// For each word in turn.
  std::uint64_t operator()(std::size_t w) {
    if (w > 0) {
      before_ = here_;
      here_ = behind_;
      behind_ = long_runs(w + 1);
    }
    const std::uint64_t first = w * kWordBits;
    if (lags_.is_N_wild() && lags_.planes().has_N_near(first - std::min(first, unit_length_),
                                                       first + kWordBits + half_)) {
      return ~std::uint64_t{0};
    }
    // A run to the left ends one or two bases before; one to the right begins up to a base behind
    // the end of a short run.
    std::uint64_t candidates = here_;
    for (std::uint64_t i = 1; i <= half_; ++i)
      candidates |= here_ >> i | behind_ << (kWordBits - i);
    for (std::uint64_t i = 1; i <= near_ + 1; ++i)
      candidates |= here_ << i | before_ >> (kWordBits - i);
    return candidates;
  }

 private:
  /// Where a run at one of the lags has as many bases behind it as are told of.
  [[nodiscard]] std::uint64_t long_runs(std::size_t w) const {
    const auto starts = [&](const CBitSet& matches) {
      return w + 1 < matches.words().size() ? run_starts(matches.words(), w, near_) : 0;
    };
    return starts(lags_.shorter()) | starts(lags_.at()) | starts(lags_.longer());
  }

  const CNeighbourLags& lags_;
  std::uint64_t unit_length_;
  std::uint64_t half_;
  std::uint64_t near_;
  std::uint64_t before_ = 0;
  std::uint64_t here_;
  std::uint64_t behind_;
};

/// True if a run one edit away from [first, last) is long enough, see `RunRule::chained_runs`.
bool has_chained_run(const CNeighbourLags& lags, const RunRule& rule, std::uint64_t first,
                     std::uint64_t last) {
  const std::int64_t missing = rule.chained_runs - static_cast<std::int64_t>(last - first);
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
  // At lag 0 all bases match; no rule asks for that many.
  if (lag > 1) make(lag - 1);
  make(lag + 1);
}

RunWork find_run_seeds(const CNeighbourLags& lags, const RunRule& rule, CBitSet& seeds) {
  const auto unit_length = static_cast<std::uint64_t>(rule.unit_length);
  const auto min_run = static_cast<std::uint64_t>(rule.min_run);
  assert(seeds.size() + unit_length == lags.at().size());
  const auto set_seeds = [&](std::uint64_t first, std::uint64_t last) {
    const bool is_let_through =
        static_cast<std::int64_t>(last - first) >= rule.sure_run ||
        (lags.is_N_wild() && lags.planes().has_N_near(first - unit_length, last)) ||
        has_chained_run(lags, rule, first, last);
    if (!is_let_through) return;
    // At the end of the text there is no base behind the last unit.
    seeds.set_range(first - unit_length, std::min(last - unit_length + 1, seeds.size()));
  };
  if (rule.near_run() > 0) {
    return for_each_run(lags.at(), min_run, CNearRuns(lags, rule), set_seeds);
  }
  return for_each_run(
      lags.at(), min_run, [](std::size_t) { return ~std::uint64_t{0}; }, set_seeds);
}

}  // namespace quorix
