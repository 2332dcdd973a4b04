#include "tools/command_line/convert_options.h"

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "tools/catalogues/catalogue.h"
#include "tools/command_line/shared_options.h"
#include "tools/commands/convert_command.h"
#include "tools/formats/format_names.h"

namespace quorix::tools {

namespace {

constexpr const char* kConvertExamples = R"(Examples:
  quorix-tools convert --to tsv -o genome.tsv genome.report
  quorix-tools convert --to bed --motif CAG --min-copies 10 genome.report.gz
  quorix-tools convert --to gff3 --unit-length 1-6 --sequence chr1 --sequence chr2 genome.report
  quorix-tools convert --to bedgraph --window 1000 genome.report
  quorix-tools convert --to trgt --unit-length 1-50 --min-copies 3 --min-length 9 genome.report
  quorix genome.fa | quorix-tools convert --to tsv --sort score - | head

Catalogues for genotypers are expansionhunter, gangstr, hipstr, longtr, straglr, trgt and vamos. They
need a report with alignments, or with bases and edits. What a catalogue cannot hold is left out; how
many repeats and why is said on standard error.

Positions in bed, bedgraph, expansionhunter, straglr and trgt count from 0, and the end is the first
base after the repeat. All others are those of the report: counted from 1, and the end belongs to the
repeat.)";

/// The orders by their names.
const std::map<std::string, SortKey> kSortKeys{{"position", SortKey::kPosition},
                                               {"length", SortKey::kLength},
                                               {"copies", SortKey::kCopies},
                                               {"score", SortKey::kScore},
                                               {"perfection", SortKey::kPerfection}};

std::set<std::string> format_names() {
  std::set<std::string> names(kFormatNames.begin(), kFormatNames.end());
  for (const Catalogue& catalogue : kCatalogues) names.emplace(catalogue.name);
  return names;
}

}  // namespace

void add_convert(CLI::App& program) {
  CLI::App& command =
      *program.add_subcommand("convert", "Writes the repeats of reports in another format.");
  const auto options = std::make_shared<ConvertOptions>();
  command.footer(kConvertExamples);
  command.add_option("--to", options->format, "The format to write.")
      ->required()
      ->check(CLI::IsMember(format_names()));
  add_output(command, options->output_name);
  command.add_option("--window", options->window, "For bedgraph: the length of a window in bases.");
  command
      .add_option_function<std::string>(
          "--sort", [options](const std::string& name) { options->sort_key = kSortKeys.at(name); },
          "The order of the repeats: by identifier and position, or the largest first. All of them "
          "are held in memory.")
      ->check(CLI::IsMember(&kSortKeys));
  add_filters(command, options->filters);
  add_reports(command, options->reports);
  command.callback([options] { convert(*options); });
}

}  // namespace quorix::tools
