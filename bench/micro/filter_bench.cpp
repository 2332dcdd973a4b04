// The filters: matches at a lag, the sieves by runs and by lags, and the bounds of a single seed
// and of a batch.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "micro/bench_support.h"
#include "search/bits/base_planes.h"
#include "search/bits/bit_set.h"
#include "search/filter/batch_bound.h"
#include "search/filter/lag_sieve.h"
#include "search/filter/run_sieve.h"
#include "search/filter/single_bound.h"

namespace quorix::bench {
namespace {

constexpr std::size_t kBases = 1'000'000;
constexpr std::int64_t kPenalty = 6;

/// Argument: one N in that many bases, 0 for none.
void find_matches(benchmark::State& state) {
  std::string bases = repeat_rich_bases(kBases, 1);
  const auto spacing = static_cast<std::size_t>(state.range(0));
  for (std::size_t i = spacing; spacing != 0 && i < bases.size(); i += spacing) bases[i] = 'N';
  const CBasePlanes planes(bases.data(), bases.size());
  CBitSet matches;
  std::uint64_t lag = 0;
  for ([[maybe_unused]] auto _ : state) {
    planes.find_matches(++lag % 100 + 1, true, matches);
    benchmark::DoNotOptimize(matches.words().data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bases.size()));
}
BENCHMARK(find_matches)->Arg(0)->Arg(1000)->Unit(benchmark::kMicrosecond);

/// With the default penalties and minimum score. Arguments: the length of the unit, whether half of
/// the bases lie in arrays.
void sift_by_runs_of_unit(benchmark::State& state) {
  const std::string bases =
      state.range(1) != 0 ? repeat_rich_bases(kBases, 1) : random_bases(kBases, 1);
  const std::int64_t unit_length = state.range(0);
  const std::int64_t edited_run = kPenalty - unit_length + 1;
  const RunRule rule{unit_length, edited_run, kPenalty, edited_run + kPenalty};
  const CBasePlanes planes(bases.data(), bases.size());
  CNeighbourLags lags(planes, false);
  lags.move_to(static_cast<std::uint64_t>(unit_length), true);
  CBitSet seeds;
  for ([[maybe_unused]] auto _ : state) {
    seeds.reset_to_set(bases.size() - static_cast<std::size_t>(unit_length));
    sift_by_runs(lags, rule, {0, bases.size()}, seeds);
    benchmark::DoNotOptimize(seeds.words().data());
  }
  if (seeds.find_set(0) == seeds.size()) state.SkipWithError("some seeds should stay undecided");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bases.size()));
}
BENCHMARK(sift_by_runs_of_unit)
    ->Args({2, 0})
    ->Args({4, 0})
    ->Args({6, 0})
    ->Args({6, 1})
    ->Unit(benchmark::kMicrosecond);

/// Arguments: the first and the last length of the units. Items are pairs of a base and a length.
void sift_units_by_lags(benchmark::State& state) {
  constexpr std::size_t kLagBases = 200'000;
  const std::string bases = random_bases(kLagBases, 2);
  LagRule rules{state.range(0), {}, {kPenalty, kPenalty, true}};
  for (std::int64_t unit = state.range(0); unit <= state.range(1); ++unit) {
    rules.min_scores.push_back(unit);
  }
  for ([[maybe_unused]] auto _ : state) {
    std::vector<CBitSet> seeds;
    for (std::size_t i = 0; i < rules.min_scores.size(); ++i) {
      seeds.emplace_back().reset_to_set(bases.size() -
                                        static_cast<std::size_t>(rules.first_unit_length) - i);
    }
    sift_text_by_lags(bases.data(), bases.size(), rules, seeds);
    benchmark::DoNotOptimize(seeds.data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(bases.size()) *
                          static_cast<std::int64_t>(rules.min_scores.size()));
}
BENCHMARK(sift_units_by_lags)
    ->Args({7, 20})
    ->Args({7, 100})
    ->Args({100, 500})
    ->Unit(benchmark::kMillisecond);

/// Seeds in random bases, nearly all of which are rejected. Argument: the length of the unit.
void bound_rejected_seed(benchmark::State& state) {
  constexpr std::size_t kMargin = 20'000;
  constexpr std::size_t kSeedCount = 64;
  const auto unit_length = static_cast<std::size_t>(state.range(0));
  const std::string bases = random_bases(2 * kMargin + kSeedCount + unit_length, 3);
  const ScoredText text{bases.data(), bases.data() + bases.size(), {kPenalty, kPenalty, true}};
  BoundWorkspace workspace;
  std::size_t round = 0;
  std::int64_t rejected = 0;
  for ([[maybe_unused]] auto _ : state) {
    const char* const unit = bases.data() + kMargin + round++ % kSeedCount;
    const std::int64_t min_score = std::max(state.range(0), kPenalty);
    rejected += single_bound(text, {unit, state.range(0), 1, min_score}, workspace) == 0 ? 1 : 0;
  }
  if (rejected == 0) state.SkipWithError("most seeds should be rejected");
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(bound_rejected_seed)->Arg(6)->Arg(20)->Arg(100)->Arg(300);

/// The same for seeds side by side, all of them asked for. Argument: the length of the unit. Items
/// are seeds.
void bound_rejected_batch(benchmark::State& state) {
  constexpr std::size_t kMargin = 20'000;
  constexpr std::size_t kBatchCount = 16;
  constexpr auto kSeeds = static_cast<std::size_t>(kBatchSeeds);
  const std::int64_t unit_length = state.range(0);
  const std::string bases =
      random_bases(2 * kMargin + kBatchCount * kSeeds + static_cast<std::size_t>(unit_length), 3);
  const ScoredText text{bases.data(), bases.data() + bases.size(), {kPenalty, kPenalty, true}};
  BoundWorkspace workspace;
  std::size_t round = 0;
  std::int64_t rejected = 0;
  for ([[maybe_unused]] auto _ : state) {
    const char* const first = bases.data() + kMargin + round++ % kBatchCount * kSeeds;
    const std::uint64_t undecided =
        batch_bound(text, {first, unit_length, ~std::uint32_t{0}, unit_length}, workspace);
    rejected += kBatchSeeds - std::popcount(undecided);
  }
  if (rejected == 0) state.SkipWithError("most seeds should be rejected");
  state.SetItemsProcessed(state.iterations() * kBatchSeeds);
}
BENCHMARK(bound_rejected_batch)->Arg(10)->Arg(100);

}  // namespace
}  // namespace quorix::bench
