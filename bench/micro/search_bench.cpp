// The parts of the searches: growing over perfect copies, looking ahead at an edit, whole scans of
// one unit length, and the removal of overlapping repeats.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "console/run_clock.h"
#include "micro/bench_support.h"
#include "report/csat.h"
#include "report/sat_pool.h"
#include "search/extension/direction.h"
#include "search/extension/look_ahead.h"
#include "search/modes/sat_container.h"
#include "search/search_controller.h"
#include "support/test_record.h"

namespace quorix::bench {
namespace {

/// Arguments: the length of the unit, copies.
void extend_exact_over_copies(benchmark::State& state) {
  use_default_settings();
  const std::string unit = random_bases(static_cast<std::size_t>(state.range(0)), 1);
  std::string bases;
  for (std::int64_t copy = 0; copy < state.range(1); ++copy) bases += unit;
  Csat sat;
  for ([[maybe_unused]] auto _ : state) {
    sat.init_from_unit(bases.data(), bases.data() + unit.size());
    benchmark::DoNotOptimize(
        CSearchController::extend_exact_forward(sat, bases.data() + bases.size()));
    if (sat.end != bases.data() + bases.size()) state.SkipWithError("the repeat is not complete");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bases.size()));
}
BENCHMARK(extend_exact_over_copies)->Args({1, 1000})->Args({6, 200})->Args({100, 10});

/// Where the search spends its time on random DNA: one unit, and behind it nothing that fits.
/// Argument: the length of the unit. The seeds differ from round to round, since what a look-ahead
/// costs depends on the bases.
template <class Direction>
void look_ahead_at_an_edit(benchmark::State& state) {
  constexpr std::size_t kSeedCount = 64;
  constexpr std::size_t kMargin = 2000;
  use_default_settings(static_cast<std::uint32_t>(state.range(0)));
  const auto unit_length = static_cast<std::size_t>(state.range(0));
  const std::string bases = random_bases(2 * kMargin + kSeedCount + unit_length, 2);
  constexpr bool kIsRightward = Direction::kIndex == Rightward::kIndex;
  const char* const limit = kIsRightward ? bases.data() + bases.size() : bases.data() - 1;

  CLookAhead look_ahead;
  std::size_t round = 0;
  Csat sat;
  for ([[maybe_unused]] auto _ : state) {
    const char* const unit = bases.data() + kMargin + round++ % kSeedCount;
    sat.init_from_unit(unit, unit + unit_length);
    const LookAheadState from{Direction::edge(sat), Direction::unit_cursor(sat), 0, 0, 0};
    benchmark::DoNotOptimize(look_ahead.highest_score<Direction>(
        from, {sat.unit_begin, sat.unit_end, sat.unit_length(), limit}));
  }
}
BENCHMARK_TEMPLATE(look_ahead_at_an_edit, Rightward)->Arg(5)->Arg(20)->Arg(100);
BENCHMARK_TEMPLATE(look_ahead_at_an_edit, Leftward)->Arg(5)->Arg(20)->Arg(100);

/// The whole imperfect search. Arguments: bases, longest unit.
void search_random_bases(benchmark::State& state) {
  use_default_settings(static_cast<std::uint32_t>(state.range(1)));
  CSequence_Mol record;
  testing::set_record(record, "random", random_bases(static_cast<std::size_t>(state.range(0)), 3));
  update_report_time();  // so that no progress line is due
  for ([[maybe_unused]] auto _ : state) {
    CSearchController controller(1, record);
    controller.complete_imperfect_search(nullptr);
    benchmark::DoNotOptimize(controller.imperfect_sat_list.sat_list.size());
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(search_random_bases)->Args({100'000, 6})->Args({1000, 20})->Unit(benchmark::kMillisecond);

/// A list in which every repeat overlaps its neighbours, so that some of them go. Argument:
/// repeats.
void remove_overlapping_repeats(benchmark::State& state) {
  use_default_settings();
  constexpr std::size_t kStep = 8;
  constexpr std::size_t kLength = 12;
  constexpr std::size_t kUnitLength = 6;
  const auto count = static_cast<std::size_t>(state.range(0));
  const std::string bases = random_bases(count * kStep + kLength, 4);
  std::size_t left = 0;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    CsatContainer container(&sat_alloc);
    for (std::size_t i = 0; i < count; ++i) {
      const char* const start = bases.data() + i * kStep;
      Csat* const sat = sat_alloc.acquire(start, start + kUnitLength);
      sat->end = start + kLength;
      sat->score = static_cast<std::int32_t>(i % 7);
      container.sat_list.push_back(sat);
    }
    // A short move to the left makes it overlap by more than it has beside a unit.
    for (auto it = container.sat_list.begin(); it != container.sat_list.end();) {
      if (++it == container.sat_list.end()) break;
      (*it)->start -= kUnitLength - 1;
      ++it;
      if (it == container.sat_list.end()) break;
    }
    state.ResumeTiming();
    CSearchController::remove_hidden(container);
    left = container.sat_list.size();
  }
  if (left == 0 || left == count) state.SkipWithError("some repeats should go, and some stay");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(remove_overlapping_repeats)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quorix::bench
