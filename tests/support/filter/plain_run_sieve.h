#pragma once

/// @file
/// The slow twin of search/filter/run_sieve.h: the rule by which runs of matching bases leave seeds
/// undecided, written out base by base.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "search/bits/base_planes.h"
#include "search/filter/run_sieve.h"

namespace quorix::testing {

/// A text of which it can be asked which bases match those before them.
class CPlainText {
 public:
  CPlainText(std::string bases, bool is_N_wild) : bases_(std::move(bases)), is_N_wild_(is_N_wild) {}

  [[nodiscard]] std::int64_t length() const { return static_cast<std::int64_t>(bases_.size()); }

  [[nodiscard]] bool is_N_wild() const { return is_N_wild_; }

  [[nodiscard]] bool matches(std::int64_t x, std::int64_t lag) const {
    if (x - lag < 0 || x >= length()) return false;
    const char base = bases_[static_cast<std::size_t>(x)];
    const char before = bases_[static_cast<std::size_t>(x - lag)];
    if (base == 'N' || before == 'N') return is_N_wild_;
    return base == before;
  }

  /// Matches at `lag` from `x` on, in steps of 1 or -1.
  [[nodiscard]] std::int64_t count(std::int64_t x, std::int64_t lag, std::int64_t step) const {
    std::int64_t matching = 0;
    while (matches(x + step * matching, lag)) ++matching;
    return matching;
  }

 private:
  std::string bases_;
  bool is_N_wild_;
};

/// Returns true if the rule leaves the seed at p undecided. The run that touches its boundary is
/// [first, last). After an edit the lag is one of three, and matches count up to where the text has
/// to be the edit itself, and up to 64.
inline bool is_run_seed(const CPlainText& text, const CBasePlanes& planes, const RunRule& rule,
                        std::int64_t p) {
  const std::int64_t lag = rule.unit_length;
  const std::int64_t boundary = p + lag;
  const std::int64_t first = boundary - text.count(boundary - 1, lag, -1);
  const std::int64_t last = boundary + text.count(boundary, lag, 1);
  const std::int64_t run = last - first;
  if (run < rule.min_run) return false;
  if (run >= rule.sure_run || run >= rule.min_two_runs) return true;
  if (text.is_N_wild() && planes.has_N_near(static_cast<std::uint64_t>(first - lag),
                                            static_cast<std::uint64_t>(last))) {
    return true;
  }
  const auto chains = [&](std::int64_t x, std::int64_t other_lag, std::int64_t step,
                          std::int64_t max_count) {
    const std::int64_t enough =
        std::min({rule.min_two_runs - run, max_count, std::int64_t{64}});  // that many count
    return enough <= 0 || text.count(x, other_lag, step) >= enough;
  };
  return chains(last + 1, lag, 1, lag - 1) || chains(last + 1, lag + 1, 1, lag) ||
         chains(last, lag - 1, 1, lag - 1) || chains(first - 2, lag, -1, lag - 1) ||
         chains(first - 1, lag + 1, -1, lag) || chains(first - 2, lag - 1, -1, lag - 1);
}

}  // namespace quorix::testing
