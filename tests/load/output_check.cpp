#include "load/output_check.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <vector>

#include "load/expected_repeats.h"
#include "load/line_reader.h"
#include "load/planted_bases.h"

namespace quorix::load {

namespace {

constexpr std::size_t kMaskedLineLength = 80;
constexpr std::string_view kClosingLine = "## Finished successfully. ##";

/// Bases from `start` to `end`, half-open, from 0.
struct Stretch {
  std::uint64_t start;
  std::uint64_t end;
};

std::string closing_line_of(const std::string& name) {
  return "# Analysis of sequence \"" + name + "\" completed.";
}

class COutputCheck {
 public:
  COutputCheck(const InputPlan& plan, bool is_exact_search, const std::string& report_name,
               const std::string& masked_name)
      : plan_(plan),
        is_exact_search_(is_exact_search),
        bases_(plan.seed),
        report_(report_name),
        masked_(masked_name) {}

  CheckedOutput check() {
    std::string_view line = report_.next();
    while (line.substr(0, 2) == "# ") line = report_.next();
    for (std::uint64_t number = 1; number <= plan_.record_count; ++number) {
      const std::string name = record_name(plan_, number);
      if (line.substr(0, 1) != ">" || line.substr(1) != name) report_.complain("another name");
      bases_.begin_record(plan_.bases);
      check_block(name);
      check_masked_record(name);
      line = report_.next();
    }
    if (line != kClosingLine) report_.complain("no closing line");
    report_.expect_end();
    masked_.expect_end();
    return checked_;
  }

 private:
  /// Reads the block of a record after its name, and keeps what has to be masked.
  void check_block(const std::string& name) {
    report_.expect("sequence length: " + std::to_string(plan_.bases));
    const std::vector<ExpectedRepeat> expected =
        expected_repeats(bases_.planted(), is_exact_search_);
    auto next_expected = expected.begin();
    std::uint64_t repeats = 0;
    last_ = {0, 0};
    repeated_.clear();
    const std::string closing_line = closing_line_of(name);
    for (std::string_view line = report_.next(); line != closing_line; line = report_.next()) {
      const std::string information(line);
      const Stretch stretch = stretch_of(information);
      const std::string missense(report_.next());
      const std::string bases = check_alignment(stretch);
      if (next_expected != expected.end() && information == next_expected->information &&
          missense == next_expected->missense && bases == next_expected->bases) {
        ++next_expected;
      }
      keep(stretch);
      ++repeats;
    }
    if (next_expected != expected.end()) {
      report_.complain("there is no line \"" + next_expected->information + "\" with \"" +
                       next_expected->missense + "\"");
    }
    checked_.planted += expected.size();
    checked_.repeats += repeats;
    checked_.most_repeats = std::max(checked_.most_repeats, repeats);
  }

  /// Takes the number at `text`, after blanks and before `suffix`.
  std::uint64_t take_number(std::string_view& text, std::string_view suffix) const {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    std::uint64_t number = 0;
    const std::from_chars_result result =
        std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    if (result.ec != std::errc() || text.substr(0, suffix.size()) != suffix) {
      report_.complain("not a line of a repeat");
    }
    text.remove_prefix(suffix.size());
    return number;
  }

  Stretch stretch_of(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    line.remove_prefix(std::min(line.find(' '), line.size()));
    const std::uint64_t first = take_number(line, " : ");
    const std::uint64_t last = take_number(line, " | ");
    const std::uint64_t length = take_number(line, " bp | ");
    if (first < 1 || last < first || last > plan_.bases || length != last - first + 1) {
      report_.complain("impossible positions");
    }
    return {first - 1, last};
  }

  /// Reads an alignment. Returns its bases.
  std::string check_alignment(const Stretch& stretch) {
    std::string bases(report_.next());
    const std::size_t width = bases.size();
    const bool is_even = report_.next().size() == width && report_.next().size() == width;
    bases.erase(std::remove(bases.begin(), bases.end(), '-'), bases.end());
    if (!is_even || bases.size() != stretch.end - stretch.start) {
      report_.complain("an alignment of another length");
    }
    return bases;
  }

  /// Keeps a stretch, as part of the one before where they overlap.
  void keep(const Stretch& stretch) {
    if (stretch.start < last_.start || (stretch.start == last_.start && stretch.end < last_.end)) {
      report_.complain("out of order");
    }
    last_ = stretch;
    if (!repeated_.empty() && stretch.start <= repeated_.back().end) {
      repeated_.back().end = std::max(repeated_.back().end, stretch.end);
    } else {
      repeated_.push_back(stretch);
    }
  }

  void check_masked_record(const std::string& name) {
    const std::string_view header = masked_.next();
    if (header.substr(0, 1) != ">" || header.substr(1) != name) masked_.complain("another name");
    auto stretch = repeated_.begin();
    std::string expected;
    for (std::uint64_t start = 0; start < plan_.bases; start += expected.size()) {
      expected = bases_.next(kMaskedLineLength);
      const std::uint64_t end = start + expected.size();
      for (; stretch != repeated_.end() && stretch->start < end; ++stretch) {
        const std::uint64_t first = std::max(stretch->start, start) - start;
        const std::uint64_t last = std::min(stretch->end, end) - start;
        std::fill(expected.begin() + static_cast<std::ptrdiff_t>(first),
                  expected.begin() + static_cast<std::ptrdiff_t>(last), 'X');
        checked_.masked_bases += last - first;
        if (stretch->end > end) break;
      }
      masked_.expect(expected);
    }
    checked_.bases += plan_.bases;
  }

  const InputPlan& plan_;
  bool is_exact_search_;
  CPlantedBases bases_;
  CLineReader report_;
  CLineReader masked_;
  Stretch last_{0, 0};
  std::vector<Stretch> repeated_;
  CheckedOutput checked_;
};

}  // namespace

CheckedOutput check_output(const InputPlan& plan, bool is_exact_search,
                           const std::string& report_name, const std::string& masked_name) {
  return COutputCheck(plan, is_exact_search, report_name, masked_name).check();
}

}  // namespace quorix::load
