// Settings and repeats to text: whoever reads the report gets the same settings and numbers back,
// and the text of the repeats is that of the plain engine.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "console/console_texts.h"
#include "driver/parameter_report.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_settings.h"
#include "fuzz/harness.h"
#include "fuzz/report_scene.h"
#include "reference/plain_report.h"
#include "reference/plain_unit_forms.h"
#include "report/output_format.h"
#include "search/search_controller.h"
#include "settings/settings.h"
#include "support/memory_stream.h"
#include "support/report_reader.h"

namespace quorix::fuzz {
namespace {

using reference::Repeat;
using testing::ReadEdit;
using testing::ReadRepeat;
using testing::ReadReport;

int take_int(CFuzzInput& input) {
  return std::bit_cast<int>(input.take_word());
}

float take_factor(CFuzzInput& input) {
  const auto factor = std::bit_cast<float>(input.take_word());
  return std::isfinite(factor) ? factor : 1.0F;
}

std::string take_file_name(CFuzzInput& input) {
  std::string name = input.take_text(input.take_byte() % 20);
  std::erase_if(name, [](char letter) { return letter == '\n' || letter == '\0'; });
  return name;
}

/// Any value for what is only printed, and one of their own for the modes.
void take_settings(CFuzzInput& input) {
  init_param();
  take_report_settings(input);
  global_treat_Ns_as_missense = input.take_flag();
  global_remove_mostly_hidden = input.take_flag();
  global_mask_repeats = input.take_flag();
  global_search_mode = static_cast<int>(input.take_between(0, 2));
  global_input_filename = take_file_name(input);
  global_output_filename = take_file_name(input);
  if (input.take_flag()) return;  // the defaults, so that an input may soon come to the repeats
  global_sequence_from = input.take_word();
  global_sequence_to = input.take_word();
  global_maximum_recursion_depth = take_int(input);
  global_maximum_scorereduction = take_int(input);
  global_min_unit_length = input.take_word();
  global_max_unit_length = input.take_word();
  global_Ns_allowed_in_a_row = take_int(input);
  global_min_score = take_int(input);
  global_min_score_a = take_int(input);
  global_min_score_bx = take_factor(input);
  global_min_length = take_int(input);
  global_min_length_a = take_int(input);
  global_min_length_bx = take_factor(input);
  global_mismatch_score = take_int(input);
  global_indel_score = take_int(input);
}

/// Holds what was read against what was written.
class CReportCheck {
 public:
  CReportCheck(const ReportScene& scene, const std::string& text, const ReadReport& report)
      : scene_(scene), text_(text), report_(report) {}

  void check_settings() const {
    const bool is_exact = global_search_mode == kSearchExact;
    const bool has_no_limit = global_maximum_scorereduction == kNoScoreReductionLimit;
    expect_setting("Input file name", global_input_filename);
    expect_setting("Output file name", global_output_filename, !global_output_filename.empty());
    expect_setting("Sequence range to process",
                   std::to_string(global_sequence_from) + " - " +
                       (global_sequence_to == kLastSequence ? "last sequence"
                                                            : std::to_string(global_sequence_to)));
    expect_number("Recursion depth", global_maximum_recursion_depth, !is_exact);
    if (has_no_limit) {
      expect_setting("Maximum score reduction", "-", !is_exact);
    } else {
      expect_number("Maximum score reduction", global_maximum_scorereduction, !is_exact);
    }
    expect_number("Minimum unit length", global_min_unit_length);
    expect_number("Maximum unit length", global_max_unit_length);
    expect_threshold("Minimum score", global_min_score, global_min_score_a, global_min_score_bx);
    expect_threshold("Minimum length", global_min_length, global_min_length_a,
                     global_min_length_bx);
    expect_number("Max. succesive N's allowed", global_Ns_allowed_in_a_row);
    expect_number("Mismatch score", global_mismatch_score, !is_exact);
    expect_number("Indel score", global_indel_score, !is_exact);
    expect_setting("Minimum perfection", "0 %");
    expect_number("Number of flanking nucletides", global_flanking);
    check_choices();
    const bool is_extended = global_print_sat_mode == kFormatExtendedQuorix;
    const std::size_t columns = is_extended ? global_treat_Ns_as_missense ? 11 : 12 : 8;
    require(report_.columns.size() == columns, "the number of columns");
  }

  void check_block() const {
    require(report_.blocks.size() == 1, "the number of blocks");
    const testing::ReadBlock& block = report_.blocks.front();
    require(block.name == std::string(scene_.name.c_str()), "the name");
    require(block.sequence_length == static_cast<std::int64_t>(scene_.bases.size()), "the length");
    auto read = block.repeats.begin();
    for (const Repeat& repeat : scene_.repeats) {
      const auto [unit, is_reducible] = printed_unit(unit_of(repeat));
      if (is_reducible) continue;
      require(read != block.repeats.end(), "the number of repeats");
      check_repeat(*read, repeat, unit);
      ++read;
    }
    require(read == block.repeats.end(), "the number of repeats");
  }

 private:
  void require(bool is_right, const char* what) const {
    expect(is_right, [&] { return std::string("read back wrong: ") + what + " of\n" + text_; });
  }

  void expect_setting(const char* label, const std::string& value, bool is_printed = true) const {
    const auto found = report_.settings.find(label);
    require((found != report_.settings.end()) == is_printed, label);
    if (is_printed) require(found->second == value, label);
  }

  void expect_number(const char* label, std::int64_t number, bool is_printed = true) const {
    expect_setting(label, std::to_string(number), is_printed);
  }

  /// A factor is printed with six digits.
  void expect_threshold(const char* label, int constant, int offset, float factor) const {
    const auto found = report_.settings.find(label);
    require(found != report_.settings.end(), label);
    int read_constant = 0;
    int read_offset = 0;
    double read_factor = 0;
    int end = -1;
    std::sscanf(found->second.c_str(), "maximum (%d, %d+%lf*unitlength )%n", &read_constant,
                &read_offset, &read_factor, &end);
    const auto exact = static_cast<double>(factor);
    require(end == static_cast<int>(found->second.size()) && read_constant == constant &&
                read_offset == offset &&
                std::abs(read_factor - exact) <= 5.001e-6 * std::abs(exact),
            label);
  }

  void check_choices() const {
    const auto choice = [this](const char* label, int value,
                               const std::vector<const char*>& texts) {
      expect_setting(label, texts[static_cast<std::size_t>(value)]);
    };
    choice("Satellites searched for", global_search_mode,
           {"exact repeats", "exact repeats which are extended to imperfect repeats",
            "imperfect repeats"});
    choice("Treat N's as", global_treat_Ns_as_missense, {"neutral", "missense"});
    choice("Remove mostly overlapping satellites", global_remove_mostly_hidden, {"no", "yes"});
    choice("Write file with masked seq.", global_mask_repeats, {"no", "yes"});
    choice("Computing perfections treat N's", global_N_and_perfection_mode,
           {"asMismatch", "asNeutral", "asMatch"});
    choice("Report units as", global_report_unit_mode,
           {"as they are", "alphabetical normal form",
            "alphabetical normal form using reverse complement"});
    choice("Output format", global_print_sat_mode,
           {"quorix format", "extended quorix format", "sputnik compatible format"});
    choice("Print sequence mode", global_print_sat_seq_mode,
           {"don't print sequence", "print sequence", "print alignment"});
  }

  [[nodiscard]] std::string stretch(std::int64_t first, std::int64_t last) const {
    const auto length = static_cast<std::int64_t>(scene_.bases.size());
    first = std::max<std::int64_t>(first, 0);
    last = std::min(last, length);
    return scene_.bases.substr(static_cast<std::size_t>(first),
                               static_cast<std::size_t>(last - first));
  }
  [[nodiscard]] std::string unit_of(const Repeat& repeat) const {
    return stretch(repeat.unit_begin, repeat.unit_end);
  }

  [[nodiscard]] static reference::LeastRotation printed_unit(const std::string& unit) {
    if (global_report_unit_mode == kUnitAsFound) return {unit, reference::is_reducible_unit(unit)};
    const reference::LeastRotation forward = reference::least_rotation(unit);
    if (global_report_unit_mode == kUnitAlphabetical) return forward;
    const reference::LeastRotation backward =
        reference::least_rotation(reference::reverse_complement(unit).text);
    return {std::min(forward.unit, backward.unit), backward.is_reducible};
  }

  void check_repeat(const ReadRepeat& read, const Repeat& repeat, const std::string& unit) const {
    const bool is_extended = global_print_sat_mode == kFormatExtendedQuorix;
    const auto is_printed_as = [&](const std::optional<std::int64_t>& number,
                                   std::int64_t true_number, bool is_printed) {
      return is_printed ? number == true_number : !number.has_value();
    };
    require(read.unit_length == reference::unit_length(repeat), "the class");
    require(read.first_position == repeat.start + 1, "the start");
    require(read.last_position == repeat.end, "the end");
    require(is_printed_as(read.length, repeat.end - repeat.start,
                          global_print_sat_mode != kFormatSputnik),
            "bp");
    require(read.normalized_length == reference::normalized_length(repeat), "BP");
    require(read.score == repeat.score, "the score");
    require(is_printed_as(read.mismatches, repeat.mismatches, is_extended), "the mismatches");
    require(is_printed_as(read.insertions, repeat.insertions, is_extended), "the insertions");
    require(is_printed_as(read.deletions, repeat.deletions, is_extended), "the deletions");
    require(
        is_printed_as(read.n_count, repeat.n_count, is_extended && !global_treat_Ns_as_missense),
        "the N's");
    require(read.unit == unit, "the unit");
    if (is_extended) require(read.edits == edits_of(repeat), "the edits");
    check_perfection(read, repeat);
    if (global_print_sat_seq_mode == kPrintSequence) {
      require(read.lines.front() == flanked(repeat, stretch(repeat.start, repeat.end)),
              "the bases");
    }
    if (global_print_sat_seq_mode == kPrintAlignment) check_alignment(read, repeat);
  }

  [[nodiscard]] static std::vector<ReadEdit> edits_of(const Repeat& repeat) {
    std::vector<ReadEdit> edits;
    for (const auto& [position, kind] : repeat.edits) {
      edits.push_back({position - repeat.start + 1, kind});
    }
    return edits;
  }

  void check_perfection(const ReadRepeat& read, const Repeat& repeat) const {
    const std::int64_t length = reference::normalized_length(repeat);
    const std::int64_t edits = repeat.mismatches + repeat.insertions + repeat.deletions;
    const bool are_Ns_matches = global_N_and_perfection_mode == kNAsMatch;
    const bool are_Ns_neutral = global_N_and_perfection_mode == kNAsNeutral;
    const std::int64_t matched = length - edits - (are_Ns_matches ? 0 : repeat.n_count);
    const std::int64_t counted = length - (are_Ns_neutral ? repeat.n_count : 0);
    const bool is_sputnik = global_print_sat_mode == kFormatSputnik;
    char* end = nullptr;
    const double printed = std::strtod(read.perfection.c_str(), &end);
    require(*end == '\0' && !read.perfection.empty(), "the perfection");
    if (counted == 0) {
      require(is_sputnik ? printed == 0 : !std::isfinite(printed), "the perfection of nothing");
      return;
    }
    const double exact = 100.0 * static_cast<double>(matched) / static_cast<double>(counted);
    // Below 0, which no search leads to, a whole percent is cut off and not rounded.
    const double tolerance = !is_sputnik ? 0.0005 : exact < 0 ? 1.5 : 0.5;
    require(std::abs(printed - exact) <= tolerance + 1e-12 * std::abs(exact), "the perfection");
  }

  [[nodiscard]] std::string flanked(const Repeat& repeat, const std::string& line) const {
    const std::int64_t flanking = global_flanking;
    if (flanking == 0) return line;
    return stretch(repeat.start - flanking, repeat.start) + ":" + line + ":" +
           stretch(repeat.end, repeat.end + flanking);
  }

  /// The three lines show the bases, the edits, and the unit from phase to phase.
  void check_alignment(const ReadRepeat& read, const Repeat& repeat) const {
    const auto& [bases, marks, unit_line] = std::tie(read.lines[0], read.lines[1], read.lines[2]);
    require(bases.size() == marks.size() && bases.size() == unit_line.size(), "the line lengths");
    const std::size_t before = global_flanking == 0 ? 0 : bases.find(':') + 1;
    const std::size_t after = global_flanking == 0 ? bases.size() : bases.rfind(':');
    require(after != std::string::npos && before <= after, "the colons");

    const std::string unit = unit_of(repeat);
    std::int64_t character = repeat.unit_pos_left - repeat.unit_begin;
    std::string own_bases;
    std::vector<ReadEdit> edits;
    for (std::size_t i = before; i < after; ++i) {
      const auto position = static_cast<std::int64_t>(own_bases.size()) + 1;
      if (bases[i] != '-') own_bases += bases[i];
      if (unit_line[i] != '-') {
        character = (character + 1) % reference::unit_length(repeat);
        require(unit_line[i] == unit[static_cast<std::size_t>(character)], "the unit line");
      }
      const char kind = bases[i] == '-' ? 'D' : unit_line[i] == '-' ? 'I' : 'M';
      const bool is_N = bases[i] == 'N';
      if (marks[i] == ' ') edits.push_back({position, kind});
      require(marks[i] == ' ' || marks[i] == (is_N ? '*' : '|'), "the marks");
      require(marks[i] != '|' || bases[i] == unit_line[i], "a match");
    }
    require(own_bases == stretch(repeat.start, repeat.end), "the bases of the alignment");
    require(edits == edits_of(repeat), "the edits of the alignment");
    require(bases.substr(0, before) + bases.substr(after) == flanked(repeat, ""), "the flanks");
    const auto is_blank_beside = [&](const std::string& line) {
      return (line.substr(0, before) + line.substr(after)).find_first_not_of(' ') ==
             std::string::npos;
    };
    require(is_blank_beside(marks) && is_blank_beside(unit_line), "the lines beside the repeat");
  }

  const ReportScene& scene_;
  const std::string& text_;
  const ReadReport& report_;
};

std::string written_report(const ReportScene& scene) {
  static CSequence_Mol record;
  const std::list<Csat*> repeats = as_program_holds(scene, record);
  CSearchController controller(1, record);
  constexpr const char* kComment = "# ";
  return testing::printed_by([&](std::FILE* stream) {
    creator_message(stream, kComment);
    print_search_parameters(stream, kComment);
    print_output_format(stream, kComment);
    controller.report_SATList(stream, repeats);
    good_bye(stream);
  });
}

/// No plain perfection is defined for repeats of which nothing is left to count.
bool can_plain_engine_report(const ReportScene& scene) {
  return std::all_of(scene.repeats.begin(), scene.repeats.end(), [](const Repeat& repeat) {
    return std::isfinite(reference::percentage_perfection(repeat));
  });
}

void try_scene(const ReportScene& scene) {
  const std::string text = written_report(scene);
  ReadReport report;
  try {
    report = testing::read_report(text);
  } catch (const std::runtime_error& failure) {
    report_finding(failure.what() + std::string("\n") + text);
  }
  const CReportCheck check(scene, text, report);
  check.check_settings();
  check.check_block();
  if (!can_plain_engine_report(scene)) return;
  const std::string block = reference::report_record(scene.name, scene.bases, scene.repeats);
  expect(text.find(block + "## Finished") != std::string::npos,
         [&] { return "the plain engine reports\n" + block + "and not\n" + text; });
}

}  // namespace
}  // namespace quorix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix::fuzz;
  CFuzzInput input(data, size);
  take_settings(input);
  try_scene(take_scene(input));
  return 0;
}
