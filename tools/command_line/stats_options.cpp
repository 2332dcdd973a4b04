#include "tools/command_line/stats_options.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <set>
#include <string>

#include "tools/command_line/shared_options.h"
#include "tools/commands/stats_command.h"
#include "tools/formats/summary_writer.h"

namespace quorix::tools {

namespace {

constexpr const char* kStatsExamples = R"(Examples:
  quorix-tools stats genome.report
  quorix-tools stats --to tsv --top 0 -o genome.tsv genome.report.gz
  quorix-tools stats --to json --unit-length 1-6 --min-perfection 90 genome.report
  quorix-tools stats --to multiqc -o repeats_mqc.json one.report two.report

Figures are those of the repeats that pass the filters. A base in several repeats counts once. The
share is that of the bases of all records, or of those named with --sequence.)";

}  // namespace

void add_stats(CLI::App& program) {
  CLI::App& command = *program.add_subcommand(
      "stats", "Sums up the repeats of reports by record, unit length and unit.");
  const auto options = std::make_shared<StatsOptions>();
  options->format = kTable;
  command.footer(kStatsExamples);
  command.add_option("--to", options->format, "The format to write; table without it.")
      ->check(CLI::IsMember(
          std::set<std::string>(kSummaryFormatNames.begin(), kSummaryFormatNames.end())));
  add_output(command, options->output_name);
  command.add_option("--top", options->max_unit_count,
                     "How many units are listed, the commonest first; 20 without it, all for 0.");
  add_filters(command, options->filters);
  add_reports(command, options->reports);
  command.callback([options] { stats(*options); });
}

}  // namespace quorix::tools
