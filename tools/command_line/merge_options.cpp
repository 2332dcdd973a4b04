#include "tools/command_line/merge_options.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/command_line/shared_options.h"
#include "tools/commands/merge_command.h"

namespace quorix::tools {

namespace {

constexpr const char* kMergeExamples = R"(Examples:
  quorix --lastSeq 9 genome.fa part1.report
  quorix --firstSeq 10 genome.fa part2.report
  quorix-tools merge -o genome.report part1.report part2.report
  quorix-tools merge part*.report.gz | gzip > genome.report.gz
  quorix-tools merge --masked --report genome.report -o genome.masked part1.masked part2.masked

Reports come in any order. Parts that overlap, leave out records, differ in input or settings, or are
incomplete are refused. Masked copies come in the order of their records; only with --report is it
noticed that one is cut short, missing or out of place.)";

}  // namespace

void add_merge(CLI::App& program) {
  CLI::App& command = *program.add_subcommand(
      "merge", "Puts reports over consecutive ranges of records together, as one run writes them.");
  const auto options = std::make_shared<MergeOptions>();
  command.footer(kMergeExamples);
  add_output(command, options->output_name);
  command.add_flag("--masked", options->is_masked,
                   "The parts are masked copies, in the order of their records.");
  command
      .add_option("--report", options->report_name,
                  "With --masked: the report of all parts, with which records, lengths and masked "
                  "bases are compared.")
      ->type_name(kFileType);
  command.add_option("PART", options->parts, "A file, plain or compressed by gzip.")
      ->type_name(kFileType)
      ->required();
  command.callback([options] { merge(*options); });
}

}  // namespace quorix::tools
