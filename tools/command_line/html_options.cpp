#include "tools/command_line/html_options.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/command_line/shared_options.h"
#include "tools/commands/html_command.h"

namespace quorix::tools {

namespace {

constexpr const char* kHtmlExamples = R"(Examples:
  quorix-tools html -o genome.html genome.report
  quorix-tools html --unit-length 2-6 --min-copies 10 -o long.html genome.report.gz
  quorix genome.fa | quorix-tools html -o genome.html -

The page is one file, which needs no network. Its table lists up to 200,000 repeats; of more, every
second, fourth, eighth... is listed. Totals and charts are always of all.)";

}  // namespace

void add_html(CLI::App& program) {
  CLI::App& command = *program.add_subcommand("html", "Writes a report as a page for a browser.");
  const auto options = std::make_shared<HtmlOptions>();
  command.footer(kHtmlExamples);
  add_output(command, options->output_name);
  add_filters(command, options->filters);
  add_reports(command, options->reports);
  command.get_option("REPORT")->expected(1);
  command.callback([options] { write_html(*options); });
}

}  // namespace quorix::tools
