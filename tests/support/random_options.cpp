#include "support/random_options.h"

#include <algorithm>

#include "driver/command_line.h"
#include "search/search_controller.h"

namespace quorix::testing {

namespace {

/// Adds an option with one of `values` in `percent` of all draws.
void draw_option(RandomEngine& engine, Options& options, std::size_t percent, const char* flag,
                 const std::vector<std::string>& values) {
  if (!draw_chance(engine, percent)) return;
  options.emplace_back(flag);
  options.push_back(values[draw_between(engine, 0, values.size() - 1)]);
}

void draw_switch(RandomEngine& engine, Options& options, std::size_t percent, const char* flag) {
  if (draw_chance(engine, percent)) options.emplace_back(flag);
}

/// A penalty from 2 to 100, mostly a mild one: under large ones few records have room for an edit.
std::string draw_score_of_edit(RandomEngine& engine) {
  if (draw_chance(engine, 5)) return "-2147483648";
  const std::size_t most = draw_chance(engine, 60) ? 5 : draw_chance(engine, 60) ? 20 : 100;
  return "-" + std::to_string(draw_between(engine, 2, most));
}

/// Scores of both kinds of edit, uneven ones half of the time, or the defaults.
void draw_scores_of_edits(RandomEngine& engine, Options& options) {
  const std::string mismatch = draw_score_of_edit(engine);
  const std::string indel = draw_chance(engine, 50) ? mismatch : draw_score_of_edit(engine);
  if (draw_chance(engine, 75)) options.insert(options.end(), {"-m", mismatch});
  if (draw_chance(engine, 75)) options.insert(options.end(), {"-g", indel});
}

void draw_thresholds(RandomEngine& engine, Options& options) {
  draw_option(engine, options, 60, "-s", {"0", "1", "2", "3", "4", "8", "15", "-5"});
  draw_option(engine, options, 20, "--minScore_a", {"-4", "-1", "2", "5"});
  draw_option(engine, options, 40, "--minScore_b", {"0", "0.1", "0.5", "0.7", "1.5", "2"});
  draw_option(engine, options, 25, "-l", {"0", "2", "5", "12", "30"});
  draw_option(engine, options, 15, "--minLength_a", {"-3", "1", "4"});
  draw_option(engine, options, 15, "--minLength_b", {"0.1", "1", "2.5"});
}

void draw_search(RandomEngine& engine, Options& options, bool may_be_unlimited) {
  options.emplace_back("-M");
  options.push_back(std::vector<std::string>{"exact", "extendExact", "imperfect"}[engine() % 3]);

  const std::size_t shortest = draw_between(engine, 0, draw_chance(engine, 70) ? 1 : 6);
  const std::size_t longest = shortest + draw_between(engine, 0, draw_chance(engine, 70) ? 6 : 14);
  options.insert(options.end(), {"-u", std::to_string(shortest)});
  options.insert(options.end(), {"-U", std::to_string(longest)});

  draw_scores_of_edits(engine, options);
  draw_option(engine, options, 20, "-R",
              {"0", "1", "2", "3", "5", "8", "20", "-1", "-2147483648", "2147483647"});
  if (may_be_unlimited) {
    draw_option(engine, options, 50, "-r", {"255", "256", "300", "2147483647"});
  } else {
    draw_option(engine, options, 50, "-r", {"1", "1", "2", "3", "4"});
  }
  draw_option(engine, options, 40, "-N", {"0", "1", "2", "3", "7", "-1", "2147483647"});
  draw_switch(engine, options, 15, "--NsAsMissense");
  draw_switch(engine, options, 40, "-D");
}

/// One or a few neighbouring unit lengths up to 60, and what keeps the plain engine quick.
void draw_long_unit_search(RandomEngine& engine, Options& options) {
  options.emplace_back("-M");
  options.push_back(draw_chance(engine, 80) ? "imperfect" : "extendExact");
  const std::size_t shortest = draw_between(engine, 1, 60);
  const std::size_t longest = shortest + (draw_chance(engine, 70) ? 0 : draw_between(engine, 1, 9));
  options.insert(options.end(), {"-u", std::to_string(shortest)});
  options.insert(options.end(), {"-U", std::to_string(std::min<std::size_t>(longest, 60))});

  if (draw_chance(engine, 60)) {
    const std::vector<std::string> usual{"-5", "-6", "-6", "-7", "-8", "-9"};
    draw_option(engine, options, 80, "-m", usual);
    draw_option(engine, options, 80, "-g", usual);
  } else if (draw_chance(engine, 95)) {
    const auto draw_score = [&] { return "-" + std::to_string(draw_between(engine, 5, 100)); };
    const std::string mismatch = draw_score();
    options.insert(options.end(),
                   {"-m", mismatch, "-g", draw_chance(engine, 25) ? mismatch : draw_score()});
  } else {
    draw_option(engine, options, 80, "-m", {"-2", "-3", "-300"});
    draw_option(engine, options, 80, "-g", {"-2", "-3", "-300"});
  }
  draw_option(engine, options, 20, "-R", {"0", "5", "20", "60"});
  options.insert(options.end(), {"-r", draw_chance(engine, 80) ? "1" : "2"});
  draw_option(engine, options, 30, "-N", {"0", "1", "2", "7", "2147483647"});
  draw_switch(engine, options, 15, "--NsAsMissense");
  draw_switch(engine, options, 40, "-D");
  draw_option(engine, options, 50, "-s", {"1", "4", "8", "15", "30"});
  draw_option(engine, options, 60, "--minScore_b", {"0", "0.1", "0.3", "0.5", "0.7", "1.5", "6"});
  draw_option(engine, options, 15, "-l", {"12", "30", "100"});
}

void draw_report(RandomEngine& engine, Options& options) {
  draw_option(engine, options, 40, "--outputFormat", {"0", "1", "2"});
  draw_option(engine, options, 40, "--printRepeatSeqMode", {"0", "1", "2"});
  draw_option(engine, options, 40, "--reportUnit", {"0", "1", "2"});
  draw_option(engine, options, 40, "--NPerfectionMode", {"0", "1", "2"});
  draw_option(engine, options, 30, "-f", {"1", "4", "500", "2147483647", "-2"});
}

}  // namespace

std::string joined(const Options& options) {
  std::string line;
  for (const std::string& option : options) line += (line.empty() ? "" : " ") + option;
  return line;
}

bool apply_options(const Options& options) {
  std::vector<const char*> arguments{"quorix"};
  for (const std::string& option : options) arguments.push_back(option.c_str());
  arguments.push_back("in.fa");
  CSearchController::reset_minimum_arrays();
  return read_and_init_parameters(static_cast<int>(arguments.size()), arguments.data()) == 0;
}

Options draw_options(RandomEngine& engine, bool may_be_unlimited) {
  while (true) {
    Options options;
    draw_search(engine, options, may_be_unlimited);
    draw_thresholds(engine, options);
    draw_report(engine, options);
    if (apply_options(options)) return options;
  }
}

Options draw_long_unit_options(RandomEngine& engine) {
  while (true) {
    Options options;
    draw_long_unit_search(engine, options);
    draw_report(engine, options);
    if (apply_options(options)) return options;
  }
}

}  // namespace quorix::testing
