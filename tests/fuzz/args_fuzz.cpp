// Bytes to an argument list: it gives settings that a search may start with, and that are those
// that the arguments name; or it is refused, by us or by the command-line library; and never
// anything else.
//
// Arguments end at line feeds and NULs. A byte of 128 and more stands for a word of
// argument_words.h, and ends it.

#include <tclap/Arg.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "console/exit_status.h"
#include "driver/command_line.h"
#include "fuzz/argument_words.h"
#include "fuzz/harness.h"
#include "settings/settings.h"

namespace quorix::fuzz {
namespace {

using Arguments = std::vector<std::string>;

/// Once the library has met "--" it takes arguments as they stand ever after, and offers no way
/// back. The name of its mark is private, but an explicit instantiation may name it.
template <bool& (*kMark)()>
struct IgnoreRestMark {
  friend void take_options_again() { kMark() = false; }
};
void take_options_again();
template struct IgnoreRestMark<&TCLAP::Arg::ignoreRestRef>;

/// A stream's end that takes everything and keeps nothing.
class CNowhere : public std::streambuf {
 protected:
  int overflow(int character) override { return character == EOF ? 0 : character; }
  std::streamsize xsputn(const char* /*text*/, std::streamsize count) override { return count; }
};

/// Help and errors of the library are many, and each is written piece by piece: while this lives,
/// nobody gets them.
class CLibrarySilence {
 public:
  CLibrarySilence() : out_(std::cout.rdbuf(&nowhere_)), error_(std::cerr.rdbuf(&nowhere_)) {}
  ~CLibrarySilence() {
    std::cout.rdbuf(out_);
    std::cerr.rdbuf(error_);
  }
  CLibrarySilence(const CLibrarySilence&) = delete;
  CLibrarySilence& operator=(const CLibrarySilence&) = delete;

 private:
  CNowhere nowhere_;
  std::streambuf* out_;
  std::streambuf* error_;
};

Arguments arguments_of(const std::uint8_t* data, std::size_t size) {
  Arguments arguments;
  bool is_begun = false;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] >= 128) {
      if (is_begun) {
        arguments.back() += kWords[(data[i] - 128U) % kWords.size()];
      } else {
        arguments.emplace_back(kWords[(data[i] - 128U) % kWords.size()]);
      }
      is_begun = false;
    } else if (data[i] == '\n' || data[i] == '\0') {
      if (!is_begun) arguments.emplace_back();
      is_begun = false;
    } else {
      if (!is_begun) arguments.emplace_back();
      arguments.back() += static_cast<char>(data[i]);
      is_begun = true;
    }
  }
  return arguments;
}

[[noreturn]] void fail(const Arguments& arguments, const std::string& what) {
  std::string text = what + ":";
  for (const std::string& argument : arguments) text += " " + quoted(argument);
  report_finding(text);
}

/// What became of a command line: a code of ours or an exit status of the library.
struct Verdict {
  bool is_exit;
  int code;

  friend bool operator==(const Verdict&, const Verdict&) = default;
};

Verdict read(const Arguments& arguments) {
  std::vector<const char*> words{"quorix"};
  for (const std::string& argument : arguments) words.push_back(argument.c_str());
  take_options_again();
  global_input_filename.clear();
  global_output_filename.clear();
  try {
    return {false, read_and_init_parameters(static_cast<int>(words.size()), words.data())};
  } catch (const CommandLineEnd& end) {
    return {true, end.status};
  }
}

struct Settings {
  std::array<int, kIntOptions.size()> ints{};
  std::array<std::uint32_t, kUnsignedOptions.size()> counts{};
  std::array<float, kFloatOptions.size()> floats{};
  std::array<int, 4> others{};
  std::string input;
  std::string output;

  friend bool operator==(const Settings&, const Settings&) = default;
};

Settings settings_now() {
  Settings now;
  for (std::size_t i = 0; i < now.ints.size(); ++i) now.ints[i] = *kIntOptions[i].setting;
  for (std::size_t i = 0; i < now.counts.size(); ++i) now.counts[i] = *kUnsignedOptions[i].setting;
  for (std::size_t i = 0; i < now.floats.size(); ++i) now.floats[i] = *kFloatOptions[i].setting;
  now.others = {global_search_mode, global_treat_Ns_as_missense, global_remove_mostly_hidden,
                global_mask_repeats};
  now.input = global_input_filename;
  now.output = global_output_filename;
  return now;
}

Settings default_settings() {
  init_param();
  return settings_now();
}

bool is_mode_code(int value) {
  return value >= 0 && value <= 2;
}

/// What a search relies on.
bool are_settings_fit() {
  const auto least = [](int constant, int offset, float factor) {
    return std::max(static_cast<long double>(constant), static_cast<long double>(offset) + factor);
  };
  return is_mode_code(global_print_sat_mode) && is_mode_code(global_print_sat_seq_mode) &&
         is_mode_code(global_N_and_perfection_mode) && is_mode_code(global_report_unit_mode) &&
         is_mode_code(global_search_mode) && global_mismatch_score <= -2 &&
         global_indel_score <= -2 && global_Ns_allowed_in_a_row >= 0 && global_flanking >= 0 &&
         global_maximum_recursion_depth >= 1 && global_min_unit_length <= global_max_unit_length &&
         global_perfection_minimum == 0.0F &&
         (least(global_min_score, global_min_score_a, global_min_score_bx) >= 2 ||
          least(global_min_length, global_min_length_a, global_min_length_bx) >= 2);
}

template <class Options>
auto option_called(const Options& options, std::string_view word) {
  return std::find_if(options.begin(), options.end(), [&](const auto& option) {
    return word == option.name || (*option.flag != '\0' && word == option.flag);
  });
}

/// What an option has to leave in its setting: the number of `value`, or its default if that is
/// empty, since the library takes an empty value for none.
template <class Number>
Number expected_number(const std::string& value, Number standard) {
  if (value.empty()) return standard;
  if constexpr (std::is_floating_point_v<Number>) {
    return std::strtof(value.c_str(), nullptr);
  } else {
    return static_cast<Number>(std::strtoll(value.c_str(), nullptr, 10));
  }
}

/// True if the setting of the option `word` is what `value` says; true as well if `word` is not one
/// of the options with a value.
bool is_stored(std::string_view word, const std::string& value, const Settings& defaults) {
  if (const auto option = option_called(kIntOptions, word); option != kIntOptions.end()) {
    const auto index = static_cast<std::size_t>(option - kIntOptions.begin());
    const int expected = expected_number(value, defaults.ints[index]);
    // No number of N's or bases is negative.
    const bool is_count =
        option->setting == &global_Ns_allowed_in_a_row || option->setting == &global_flanking;
    return *option->setting == (is_count ? std::max(expected, 0) : expected);
  }
  if (const auto option = option_called(kUnsignedOptions, word); option != kUnsignedOptions.end()) {
    const auto index = static_cast<std::size_t>(option - kUnsignedOptions.begin());
    return *option->setting == expected_number(value, defaults.counts[index]);
  }
  if (const auto option = option_called(kFloatOptions, word); option != kFloatOptions.end()) {
    const auto index = static_cast<std::size_t>(option - kFloatOptions.begin());
    return *option->setting == expected_number(value, defaults.floats[index]);
  }
  if (word != "-M" && word != "--searchMode") return true;
  const std::array<std::string_view, 3> modes{"exact", "extendExact", "imperfect"};
  return modes[static_cast<std::size_t>(global_search_mode)] == value;
}

/// In what was accepted a word that is an option is one, and the word after it its value: no value
/// and no file name looks like an option, up to "--".
void expect_stored_values(const Arguments& arguments, const Settings& defaults) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--" || arguments[i] == "--ignore_rest") return;
    const std::string value = i + 1 < arguments.size() ? arguments[i + 1] : "";
    if (!is_stored(arguments[i], value, defaults))
      fail(arguments, arguments[i] + " stored another value");
  }
}

/// The command line that names every setting that is not its default.
Arguments command_line_of_settings(const Settings& defaults) {
  Arguments arguments;
  const auto add = [&](const auto& option, const auto& standard, const auto& text_of) {
    if (*option.setting == standard) return;
    arguments.emplace_back(option.name);
    arguments.push_back(text_of(*option.setting));
  };
  const auto whole = [](auto number) { return std::to_string(static_cast<int>(number)); };
  const auto exact = [](float number) {
    std::array<char, 40> digits{};
    std::snprintf(digits.data(), digits.size(), "%.9g", static_cast<double>(number));
    return std::string(digits.data());
  };
  for (std::size_t i = 0; i < kIntOptions.size(); ++i) add(kIntOptions[i], defaults.ints[i], whole);
  for (std::size_t i = 0; i < kUnsignedOptions.size(); ++i) {
    add(kUnsignedOptions[i], defaults.counts[i], whole);
  }
  for (std::size_t i = 0; i < kFloatOptions.size(); ++i) {
    add(kFloatOptions[i], defaults.floats[i], exact);
  }
  if (global_search_mode == kSearchExact) arguments.insert(arguments.end(), {"-M", "exact"});
  if (global_search_mode == kSearchExtendExact) {
    arguments.insert(arguments.end(), {"-M", "extendExact"});
  }
  if (global_treat_Ns_as_missense) arguments.emplace_back("--NsAsMissense");
  if (!global_remove_mostly_hidden) arguments.emplace_back("--dontRemoveMostlyOverlapping");
  if (global_mask_repeats) arguments.emplace_back("--maskX");
  arguments.emplace_back("--");
  // Without names there were too many.
  const bool has_names = !global_input_filename.empty() || !global_output_filename.empty();
  if (!has_names) arguments.insert(arguments.end(), 2, "name");
  arguments.push_back(global_input_filename);
  if (!has_names || !global_output_filename.empty()) arguments.push_back(global_output_filename);
  return arguments;
}

/// Read back, the settings as a command line give the same settings.
void expect_same_settings_again(const Arguments& arguments, const Settings& defaults) {
  const Settings settings = settings_now();
  const Arguments again = command_line_of_settings(defaults);
  if (read(again) != Verdict{false, kSuccess}) fail(again, "settings are refused as arguments");
  if (settings_now() != settings) fail(arguments, "other settings when named as arguments");
}

void expect_allowed_verdict(const Arguments& arguments, const Verdict& verdict) {
  const bool is_allowed = verdict.is_exit
                              ? verdict.code == 0 || verdict.code == 1
                              : verdict.code == kSuccess || verdict.code == kInvalidSetting ||
                                    verdict.code == kUnknownMode;
  if (!is_allowed) fail(arguments, "ended with " + std::to_string(verdict.code));
}

void try_arguments(const Arguments& arguments) {
  static const Settings defaults = default_settings();
  const Verdict verdict = read(arguments);
  expect_allowed_verdict(arguments, verdict);
  if (verdict != Verdict{false, kSuccess}) return;
  if (!are_settings_fit()) fail(arguments, "accepted settings that no search may start with");
  expect_stored_values(arguments, defaults);
  expect_same_settings_again(arguments, defaults);
}

}  // namespace
}  // namespace quorix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix::fuzz;
  const CLibrarySilence silence;
  try_arguments(arguments_of(data, size));
  return 0;
}
