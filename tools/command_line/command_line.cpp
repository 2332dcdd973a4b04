#include "tools/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "tools/command_line/convert_options.h"
#include "tools/command_line/exit_status.h"
#include "tools/command_line/html_options.h"
#include "tools/command_line/merge_options.h"
#include "tools/command_line/stats_options.h"
#include "tools/io/closed_descriptors.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"

namespace quorix::tools {

namespace {

constexpr const char* kVersion = "quorix-tools, version 3.3.2b";

constexpr const char* kExamples = R"(Examples:
  quorix-tools convert --to bed genome.report > genome.bed
  quorix genome.fa | quorix-tools convert --to jsonl -o genome.jsonl -
  quorix-tools stats genome.report
  quorix-tools merge -o genome.report part1.report part2.report part3.report
  quorix-tools html -o genome.html genome.report

Statuses: 0 success, 1 internal error, 2 wrong usage, 3 input, 4 output.)";

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

/// The command that the arguments name runs as soon as all of them are read.
int parse_and_run(int argc, const char* const* argv) {
  CLI::App program(
      "Reads the reports of quorix, writes them in other forms, sums them up and puts them "
      "together.",
      "quorix-tools");
  program.footer(kExamples);
  program.set_version_flag("--version", kVersion, "Print the version and exit");
  program.require_subcommand(1);
  add_convert(program);
  add_stats(program);
  add_merge(program);
  add_html(program);
  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    print(program.help());
  } catch (const CLI::CallForVersion&) {
    print(std::string(kVersion) + '\n');
  } catch (const CLI::ParseError& error) {
    return fail(kUsageError, (std::string(error.what()) + "; see --help").c_str());
  }
  return kSuccess;
}

}  // namespace

int run_command_line(int argc, const char* const* argv) {
  occupy_closed_descriptors();
  try {
    return parse_and_run(argc, argv);
  } catch (const UsageError& error) {
    return fail(kUsageError, error.what());
  } catch (const InputCutShort& error) {
    return fail(kInputFailed,
                (std::string(error.what()) + "; --allow-incomplete reads what is there").c_str());
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
