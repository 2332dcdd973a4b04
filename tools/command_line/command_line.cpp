#include "tools/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "tools/command_line/convert_options.h"
#include "tools/command_line/exit_status.h"
#include "tools/command_line/html_options.h"
#include "tools/command_line/merge_options.h"
#include "tools/command_line/stats_options.h"
#include "tools/io/closed_descriptors.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"
#include "tools/search/search_command.h"

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

constexpr std::string_view kSearchCommand = "search";
constexpr const char* kSearchName = "quorix-tools search";

/// Prints a message on one line. What a terminal would take for a command is shown as '?'.
int fail(ExitStatus status, const char* message) {
  std::string text(message);
  const auto is_command = [](unsigned char code) {
    return (code < 0x20U && code != '\t') || code == 0x7FU;
  };
  std::replace_if(text.begin(), text.end(), is_command, '?');
  std::fprintf(stderr, "quorix-tools: %s\n", text.c_str());
  return status;
}

/// Refuses empty values: from an unset variable of a script they must not mean that nothing was
/// asked for.
void refuse_empty_values(CLI::App& program) {
  for (CLI::App* const command : program.get_subcommands({})) {
    for (CLI::Option* const option : command->get_options()) {
      option->check([](const std::string& value) {
        return value.empty() ? std::string("the value is empty") : std::string();
      });
    }
  }
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
  program.add_subcommand("search", "Searches as quorix does, on several threads.");
  refuse_empty_values(program);
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
  if (argc >= 2 && std::string_view(argv[1]) == kSearchCommand) {
    // Its options are those of quorix, which has a command line of its own.
    std::vector<const char*> arguments(argv + 1, argv + argc);
    arguments.front() = kSearchName;
    return search(static_cast<int>(arguments.size()), arguments.data());
  }
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
