// Reporting repeats: the line, the list of edits and the alignment; and packing their edits.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "micro/bench_support.h"
#include "report/csat.h"
#include "report/packed_edits.h"
#include "search/search_controller.h"
#include "support/test_record.h"

namespace quorix::bench {
namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Reports one repeat over and over to /dev/null. Arguments: the unit length, copies, bases between
/// two mismatches (0: none).
void report_repeat(benchmark::State& state) {
  use_default_settings();
  const std::unique_ptr<std::FILE, FileCloser> nowhere(std::fopen("/dev/null", "wb"));
  if (nowhere == nullptr) return state.SkipWithError("/dev/null cannot be opened");
  const std::string unit = random_bases(static_cast<std::size_t>(state.range(0)), 1);
  std::string bases;
  for (std::int64_t copy = 0; copy < state.range(1); ++copy) bases += unit;
  CSequence_Mol record;
  testing::set_record(record, "array", bases);
  const char* const start = record.sequence.data();
  Csat repeat;
  repeat.init_from_unit(start, start + unit.size());
  repeat.end = start + bases.size();
  if (const std::int64_t step = state.range(2); step != 0) {
    for (const char* position = start + unit.size(); position < repeat.end; position += step) {
      repeat.missense.push_back({position, 'M'});
      ++repeat.mismatches;
    }
  }

  for ([[maybe_unused]] auto _ : state) repeat.report_sat(nowhere.get(), record);
  if (std::ferror(nowhere.get()) != 0) state.SkipWithError("the report cannot be written");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bases.size()));
}
BENCHMARK(report_repeat)->Args({2, 5, 0})->Args({6, 10, 20})->Args({171, 100, 20});

/// Reports the exact repeats of a rich sequence of 100 kbp.
void report_a_sequence(benchmark::State& state) {
  use_default_settings();
  const std::unique_ptr<std::FILE, FileCloser> nowhere(std::fopen("/dev/null", "wb"));
  if (nowhere == nullptr) return state.SkipWithError("/dev/null cannot be opened");
  CSequence_Mol record;
  testing::set_record(record, "rich", repeat_rich_bases(100'000, 2));
  CSearchController controller(1, record);
  controller.exact_search_2();
  const auto& repeats = controller.exact_sat_list.sat_list;
  if (repeats.empty()) state.SkipWithError("there is nothing to report");
  for ([[maybe_unused]] auto _ : state) controller.report_SATList(nowhere.get(), repeats);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(repeats.size()));
}
BENCHMARK(report_a_sequence)->Unit(benchmark::kMillisecond);

/// Packs the edits of one repeat after the other, as in a long array: each list has only a few
/// edits of its own. Argument: edits of a list.
void pack_edits(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const std::string text = random_bases(8 * count, 3);
  fastvector<Edit> edits;
  for (std::size_t i = 0; i < count; ++i) edits.push_back({text.data() + 8 * i, "MID"[i % 3]});
  CEditStore store;
  std::size_t changed = 0;
  for ([[maybe_unused]] auto _ : state) {
    edits.begin()[changed].kind = edits[changed].kind == 'M' ? 'I' : 'M';
    if (++changed == count) changed = 0;
    benchmark::DoNotOptimize(store.pack(edits, text.data()));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(pack_edits)->Arg(4)->Arg(5000)->Iterations(10'000);

void unpack_edits(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const std::string text = random_bases(8 * count, 3);
  fastvector<Edit> edits;
  for (std::size_t i = 0; i < count; ++i) edits.push_back({text.data() + 8 * i, "MID"[i % 3]});
  CEditStore store;
  const CPackedEdits packed = store.pack(edits, text.data());
  for ([[maybe_unused]] auto _ : state) {
    packed.unpack_to(edits);
    benchmark::DoNotOptimize(edits.begin());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(unpack_edits)->Arg(4)->Arg(5000);

}  // namespace
}  // namespace quorix::bench
