// The only file that knows the library which reads arguments. It reports faults in them by
// exceptions of its own; all of those are faults of usage here.

#include "tools/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <map>
#include <set>
#include <string>

#include "tools/commands/convert_command.h"
#include "tools/commands/exit_status.h"
#include "tools/formats/format_names.h"
#include "tools/io/closed_descriptors.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"

namespace quorix::tools {

namespace {

constexpr const char* kVersion = "quorix-tools, version 3.3.2b";

constexpr const char* kExamples = R"(Examples:
  quorix-tools convert --to bed genome.report > genome.bed
  quorix genome.fa | quorix-tools convert --to jsonl -o genome.jsonl -

Statuses: 0 success, 1 internal error, 2 wrong usage, 3 input, 4 output.)";

constexpr const char* kConvertExamples = R"(Examples:
  quorix-tools convert --to tsv -o genome.tsv genome.report
  quorix-tools convert --to bed --motif CAG --min-copies 10 genome.report.gz
  quorix-tools convert --to gff3 --unit-length 1-6 --sequence chr1 --sequence chr2 genome.report
  quorix-tools convert --to bedgraph --window 1000 genome.report
  quorix genome.fa | quorix-tools convert --to tsv --sort score - | head

Positions in bed and bedgraph count from 0, and the end is the first base after the repeat. All
others are those of the report: counted from 1, and the end belongs to the repeat.)";

/// The orders by their names.
const std::map<std::string, SortKey> kSortKeys{{"position", SortKey::kPosition},
                                               {"length", SortKey::kLength},
                                               {"copies", SortKey::kCopies},
                                               {"score", SortKey::kScore},
                                               {"perfection", SortKey::kPerfection}};

void add_filters(CLI::App& command, FilterOptions& filters) {
  constexpr const char* kGroup = "Filters";
  command
      .add_option("--unit-length", filters.unit_lengths,
                  "Only units of A to B bases; A-, -B and A are ranges as well.")
      ->type_name("A-B")
      ->group(kGroup);
  command.add_option("--min-length", filters.min_length, "Only repeats of so many bases or more.")
      ->group(kGroup);
  command
      .add_option("--min-copies", filters.min_copies,
                  "Only repeats of so many copies or more (normalized length / unit length).")
      ->group(kGroup);
  command.add_option("--min-score", filters.min_score, "Only repeats with this score or more.")
      ->group(kGroup);
  command
      .add_option("--min-perfection", filters.min_perfection,
                  "Only repeats with this perfection or more, in percent.")
      ->group(kGroup);
  command
      .add_option("--motif", filters.motifs,
                  "Only repeats of this motif, in any rotation and on either strand. May be given "
                  "several times.")
      ->allow_extra_args(false)
      ->group(kGroup);
  command
      .add_option("--sequence", filters.sequences,
                  "Only the record with this identifier. May be given several times.")
      ->allow_extra_args(false)
      ->group(kGroup);
}

void add_convert(CLI::App& program, ConvertOptions& options) {
  CLI::App* const command =
      program.add_subcommand("convert", "Writes the repeats of reports in another format.");
  command->footer(kConvertExamples);
  command->add_option("--to", options.format, "The format to write.")
      ->required()
      ->check(CLI::IsMember(std::set<std::string>(kFormatNames.begin(), kFormatNames.end())));
  command->add_option("-o,--output", options.output_name,
                      "The file to write, which replaces an old one when it is complete; without "
                      "it, or for -, standard output.");
  command->add_option("--window", options.window, "For bedgraph: the length of a window in bases.");
  command
      ->add_option_function<std::string>(
          "--sort", [&options](const std::string& name) { options.sort_key = kSortKeys.at(name); },
          "The order of the repeats: by identifier and position, or the largest first. All of them "
          "are held in memory.")
      ->check(CLI::IsMember(&kSortKeys));
  add_filters(*command, options.filters);
  command->add_flag("--full-names", options.has_full_names,
                    "Identify records by their whole names instead of the first words.");
  command->add_flag("--allow-incomplete", options.allows_incomplete,
                    "Read a report that is cut short up to there, with a note on standard error.");
  command
      ->add_option("REPORT", options.report_names,
                   "A report, plain or compressed by gzip, or - for standard input.")
      ->required();
}

int fail(ExitStatus status, const char* message) {
  std::fprintf(stderr, "quorix-tools: %s\n", message);
  return status;
}

/// Prints what was asked for instead of a command.
void print(const std::string& text) {
  COutput output("");
  output.add(text);
  output.finish();
}

int parse_and_run(int argc, const char* const* argv) {
  CLI::App program("Reads the reports of quorix and writes them in other forms.", "quorix-tools");
  program.footer(kExamples);
  program.set_version_flag("--version", kVersion, "Print the version and exit");
  program.require_subcommand(1);
  ConvertOptions convert_options;
  add_convert(program, convert_options);
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    print(program.help());
    return kSuccess;
  } catch (const CLI::CallForVersion&) {
    print(std::string(kVersion) + '\n');
    return kSuccess;
  } catch (const CLI::ParseError& error) {
    return fail(kUsageError, (std::string(error.what()) + "; see --help").c_str());
  }
  convert(convert_options);
  return kSuccess;
}

}  // namespace

int run_command_line(int argc, const char* const* argv) {
  occupy_closed_descriptors();
  try {
    return parse_and_run(argc, argv);
  } catch (const UsageError& error) {
    return fail(kUsageError, error.what());
  } catch (const InputError& error) {
    return fail(kInputFailed, error.what());
  } catch (const OutputError& error) {
    return fail(kOutputFailed, error.what());
  } catch (const std::bad_alloc&) {
    return fail(kInternalError, "there is not enough memory");
  } catch (const std::exception& error) {
    return fail(kInternalError, error.what());
  }
}

}  // namespace quorix::tools
