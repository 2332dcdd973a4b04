#include "search/kernel/run_seeds.h"

#include <algorithm>
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

/// Calls `visit(first, last)` for every maximal run [first, last) of at least `least` set bits.
template <class Visit>
void for_each_run(const CBitSet& bits, std::uint64_t least, const Visit& visit) {
  const std::vector<std::uint64_t>& words = bits.words();
  const std::uint64_t sieved = std::min(least, kWordBits);
  std::uint64_t done = 0;  // no run that begins below it is still to be told
  for (std::size_t w = 0; w + 1 < words.size(); ++w) {
    if (words[w] == 0) continue;
    std::uint64_t starts = run_starts(words, w, sieved);
    if (done > w * kWordBits) {
      if (done >= (w + 1) * kWordBits) {
        w = done / kWordBits - 1;
        continue;
      }
      starts &= ~std::uint64_t{0} << (done % kWordBits);
    }
    while (starts != 0) {
      const std::uint64_t first =
          w * kWordBits + static_cast<std::uint64_t>(std::countr_zero(starts));
      const std::uint64_t last = bits.find_clear(first);
      done = last;
      if (last - first >= least) visit(first, last);
      if (done >= (w + 1) * kWordBits) break;
      starts &= ~std::uint64_t{0} << (done % kWordBits);
    }
  }
}

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
  if (first < 2) return false;
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

void find_run_seeds(const CNeighbourLags& lags, const RunRule& rule, CBitSet& seeds) {
  const auto unit_length = static_cast<std::uint64_t>(rule.unit_length);
  for_each_run(lags.at(), static_cast<std::uint64_t>(rule.least_run),
               [&](std::uint64_t first, std::uint64_t last) {
                 const bool is_let_through =
                     static_cast<std::int64_t>(last - first) >= rule.sure_run ||
                     (lags.is_N_wild() && lags.planes().has_N_near(first - unit_length, last)) ||
                     has_chained_run(lags, rule, first, last);
                 if (is_let_through) {
                   seeds.set_range(first - unit_length, last - unit_length + 1);
                 }
               });
}

}  // namespace quorix
