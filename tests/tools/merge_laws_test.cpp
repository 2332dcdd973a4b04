// Random records, settings and ranges: the merged parts are what one run writes, byte for byte.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/engine_comparison.h"
#include "support/gzip_text.h"
#include "support/random_options.h"
#include "support/record_runs.h"
#include "tools/range_runs.h"

namespace quorix::testing {
namespace {

using Range = std::vector<std::string>;

/// Records of all kinds: random ones, empty ones, unknown bases alone, doubled names.
std::string draw_input(RandomEngine& engine, std::size_t record_count) {
  std::vector<NamedBases> records;
  for (std::size_t i = 0; i < record_count; ++i) {
    NamedBases record{"seq " + std::to_string(draw_between(engine, 0, 4)), ""};
    if (draw_chance(engine, 15)) record.name.clear();
    if (draw_chance(engine, 75)) record.bases = draw_record(engine, 300, 6);
    if (draw_chance(engine, 10)) record.bases.assign(draw_between(engine, 1, 170), 'N');
    records.push_back(record);
  }
  return fasta_text(records);
}

Range range_options(std::size_t first, const std::string& last) {
  Range options;
  if (first != 1) options = {"--firstSeq", std::to_string(first)};
  if (!last.empty()) options.insert(options.end(), {"--lastSeq", last});
  return options;
}

/// What a whole run and its parts are given.
struct Split {
  Range whole;
  std::vector<Range> parts;
};

/// Ranges of 0 to 3 records, beginning with the first record or a later one, and ending with an
/// open range or not, before or after the last record.
Split draw_split(RandomEngine& engine, std::size_t record_count) {
  Split split;
  std::size_t first = draw_chance(engine, 80) ? 1 : draw_between(engine, 0, record_count + 2);
  const std::size_t begin = first;
  const std::size_t part_count = draw_between(engine, 0, record_count);
  for (std::size_t i = 0; i < part_count; ++i) {
    // 0 - 4 has the records of 1 - 4.
    const std::size_t next = std::max<std::size_t>(first + draw_between(engine, 0, 3), 1);
    split.parts.push_back(range_options(first, std::to_string(next - 1)));
    first = next;
  }
  if (part_count == 0 || draw_chance(engine, 50)) {
    split.parts.push_back(range_options(first, ""));
    split.whole = range_options(begin, "");
  } else {
    split.whole = range_options(begin, std::to_string(first - 1));
  }
  return split;
}

/// What the draws have come to.
struct Tally {
  std::size_t several_parts = 0;
  std::size_t parts_without_records = 0;
  std::size_t reports_with_repeats = 0;
};

void check_split(RandomEngine& engine, const Split& split, const CRangeRuns& runs, Tally& tally) {
  runs.run("whole", split.whole);
  std::vector<std::string> reports{"merge", "-o", "report"};
  std::vector<std::string> masked{"merge", "--masked", "--report", "report"};
  for (std::size_t i = 0; i < split.parts.size(); ++i) {
    const std::string name = "part" + std::to_string(i);
    runs.run(name, split.parts[i]);
    std::string report = CRangeRuns::report_of(name);
    tally.parts_without_records += runs.read(CRangeRuns::masked_of(name)).empty() ? 1 : 0;
    if (draw_chance(engine, 30)) {
      runs.write(name + ".gz", gzip_member(runs.read(report)));
      report = name + ".gz";
    }
    reports.push_back(report);
    masked.push_back(CRangeRuns::masked_of(name));
  }
  std::shuffle(reports.begin() + 3, reports.end(), engine);

  const ProcessResult merged = runs.run_tool(reports);
  EXPECT_EQ(merged.status, 0) << merged.err;
  EXPECT_EQ(merged.err, "");
  EXPECT_EQ(runs.read("report"), runs.read(CRangeRuns::report_of("whole")));
  const ProcessResult copy = runs.run_tool(masked);
  EXPECT_EQ(copy.status, 0) << copy.err;
  EXPECT_EQ(copy.out, runs.read(CRangeRuns::masked_of("whole")));
  tally.several_parts += split.parts.size() > 1 ? 1 : 0;
  tally.reports_with_repeats += copy.out.find("XXX") != std::string::npos ? 1 : 0;
}

TEST(MergeLaws, parts_become_what_one_run_writes) {
  silence_standard_error();
  Tally tally;
  for (std::uint64_t seed = 1; seed <= 70 && !HasFailure(); ++seed) {
    RandomEngine engine(seed);
    const std::size_t record_count = draw_between(engine, 1, 6);
    const std::string input = draw_input(engine, record_count);
    Options options = draw_options(engine, false);
    options.emplace_back("--maskX");
    const Split split = draw_split(engine, record_count);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + joined(options));
    check_split(engine, split, CRangeRuns(input, options), tally);
  }
  EXPECT_GT(tally.several_parts, 20U);
  EXPECT_GT(tally.parts_without_records, 20U);
  EXPECT_GT(tally.reports_with_repeats, 20U);
}

TEST(MergeLaws, a_report_in_pieces_of_any_size_is_the_same) {
  // Records long enough for several blocks of the reader, some of which end in the closing line.
  RandomEngine engine(1);
  std::vector<NamedBases> records;
  for (int i = 0; i < 3; ++i) {
    NamedBases record{"r" + std::to_string(i), ""};
    while (record.bases.size() < 40'000) record.bases += draw_record(engine, 3000, 6);
    records.push_back(record);
  }
  const CRangeRuns runs(fasta_text(records), {"--maskX", "-s", "4"});
  runs.run("whole");
  runs.run("a", {"--lastSeq", "1"});
  runs.run("b", {"--firstSeq", "2"});
  EXPECT_GT(runs.read(CRangeRuns::report_of("b")).size(), std::size_t{1} << 19U);
  const ProcessResult merged = runs.run_tool(
      {"merge", CRangeRuns::report_of("a"), CRangeRuns::report_of("b"), "-o", "report"});
  EXPECT_EQ(merged.status, 0) << merged.err;
  EXPECT_EQ(runs.read("report"), runs.read(CRangeRuns::report_of("whole")));
}

}  // namespace
}  // namespace quorix::testing
