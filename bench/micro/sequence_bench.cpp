// Reading records from memory, without the operating system, and normalizing units.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "micro/bench_support.h"
#include "sequence/dna_string.h"
#include "sequence/file.h"
#include "sequence/sequence_mol.h"
#include "support/memory_source.h"

namespace quorix::bench {
namespace {

constexpr std::size_t kBaseCount = 1'000'000;

std::string fasta(std::size_t bases_a_record, std::size_t line_length) {
  const std::string bases = random_bases(kBaseCount, 1);
  std::string text;
  for (std::size_t start = 0; start < bases.size(); start += line_length) {
    if (start % bases_a_record == 0) text += ">record\n";
    text += bases.substr(start, line_length) + "\n";
  }
  return text;
}

/// Arguments: bases of a record, bases of a line.
void read_records(benchmark::State& state) {
  const std::string text =
      fasta(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
  CSequence_Mol record;
  CFile input;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    input.open(std::make_unique<testing::CMemorySource>(text));
    state.ResumeTiming();
    std::size_t bases = 0;
    while (!input.has_ended_cleanly() && !input.has_format_error()) {
      record.readFastaSequence(input);
      bases += record.sequence.size();
    }
    if (bases != kBaseCount) state.SkipWithError("bases are missing");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(read_records)->Args({1'000'000, 50})->Args({1'000'000, 1'000'000})->Args({300, 60});

/// Argument: the unit length.
void least_rotation(benchmark::State& state) {
  const std::string bases = random_bases(static_cast<std::size_t>(state.range(0)), 2);
  const CDnaString unit(bases);
  CDnaString least;
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(least.setToMinAlphaRepModCyclicPermOf(unit));
  }
}
BENCHMARK(least_rotation)->Arg(6)->Arg(100)->Arg(500);

}  // namespace
}  // namespace quorix::bench
