// The records of a run on several threads: limits of what is in flight, and failures in a search.

#include "tools/search/record_pipeline.h"

#include <gtest/gtest.h>

#include "driver/record_loop.h"
#include "search/search_controller.h"
#include "support/engine_comparison.h"
#include "support/memory_source.h"
#include "support/random_dna.h"
#include "support/random_options.h"
#include "support/record_runs.h"
#include "tools/tool_run.h"

namespace quorix::testing {
namespace {

/// Runs a loop over the records of a text, and returns report and masked copy.
template <class Loop>
RunOutput output_of_loop(const std::string& fasta, const Loop& loop) {
  const CToolFolder folder;
  {
    RunFiles files;
    files.input.open(std::make_unique<CMemorySource>(fasta));
    EXPECT_TRUE(files.report.open(folder.path("report")));
    EXPECT_TRUE(files.masked.open(folder.path("masked")));
    EXPECT_EQ(loop(files), 0);
  }
  return {folder.read("report"), folder.read("masked")};
}

RunOutput plain_output(const std::string& fasta) {
  return output_of_loop(fasta, [](RunFiles& files) {
    CSequence_Mol record;
    return process_records(files, record);
  });
}

std::string many_records(RandomEngine& engine) {
  std::vector<NamedBases> records;
  for (int i = 0; i < 40; ++i) {
    records.push_back(
        {"r" + std::to_string(i), draw_record(engine, draw_between(engine, 1, 600), 6)});
  }
  return fasta_text(records);
}

TEST(RecordPipeline, keeps_the_order_whatever_is_in_flight) {
  silence_standard_error();
  RandomEngine engine(1);
  for (const std::uint64_t max_bases : {1U, 500U, 2'000U, 32'000'000U}) {
    for (const std::size_t thread_count : {1U, 2U, 3U, 9U}) {
      draw_options(engine, false);
      global_mask_repeats = true;
      const std::string fasta = many_records(engine);
      const tools::PipelineLimits limits{
          max_bases, thread_count == 2 ? 1U : 4U, {64, 64, 1, 64, 5}};
      const RunOutput output = output_of_loop(fasta, [&](RunFiles& files) {
        return tools::CRecordPipeline(files, thread_count, limits).run();
      });
      ASSERT_EQ(output, plain_output(fasta)) << max_bases << " " << thread_count;
    }
  }
}

TEST(RecordPipeline, an_input_without_a_record_is_an_error_as_ever) {
  silence_standard_error();
  for (const char* const text : {"", "no header\n"}) {
    RunFiles files;
    files.input.open(std::make_unique<CMemorySource>(text));
    EXPECT_EQ(tools::CRecordPipeline(files, 3).run(), -25) << text;
  }
}

}  // namespace
}  // namespace quorix::testing
