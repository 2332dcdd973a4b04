#include "tools/command_line/shared_options.h"

#include <CLI/CLI.hpp>

namespace quorix::tools {

void add_output(CLI::App& command, std::string& output_name) {
  command
      .add_option("-o,--output", output_name,
                  "The file to write, which replaces an old one when it is complete; without it, "
                  "or for -, standard output.")
      ->type_name(kFileType);
}

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

void add_reports(CLI::App& command, ReportChoice& reports) {
  command.add_flag("--full-names", reports.has_full_names,
                   "Identify records by their whole names instead of the first words.");
  command.add_flag("--allow-incomplete", reports.allows_incomplete,
                   "Read a report that is cut short up to there, with a note on standard error.");
  command
      .add_option("REPORT", reports.names,
                  "A report, plain or compressed by gzip, or - for standard input.")
      ->type_name(kFileType)
      ->required();
}

}  // namespace quorix::tools
