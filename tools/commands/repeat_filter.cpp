#include "tools/commands/repeat_filter.h"

#include <array>
#include <charconv>
#include <cmath>

#include "tools/io/errors.h"
#include "tools/report/dna_letters.h"
#include "tools/report/repeat_figures.h"

namespace quorix::tools {

namespace {

/// Returns the base that a letter of a motif stands for, upper case and with T for U.
char base_of(char letter) {
  const char upper =
      letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  return upper == 'U' ? 'T' : upper;
}

/// Returns the number that a whole text spells. Throws: UsageError.
std::int64_t number_of(std::string_view text, const std::string& range) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < 1) {
    throw UsageError("--unit-length: \"" + range + "\" is no range such as 2-6, 2-, -6 or 3");
  }
  return number;
}

}  // namespace

std::string in_words(const FilterOptions& options) {
  std::string text;
  const auto add = [&](const char* name, const std::string& value) {
    text += text.empty() ? name : std::string(", ") + name;
    text += ' ' + value;
  };
  const auto number = [](double value) {
    std::array<char, 32> digits{};
    return std::string(digits.data(),
                       std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
  };
  if (!options.unit_lengths.empty()) add("--unit-length", options.unit_lengths);
  if (options.min_length > 0) add("--min-length", std::to_string(options.min_length));
  if (options.min_copies > 0) add("--min-copies", number(options.min_copies));
  if (options.min_score) add("--min-score", std::to_string(*options.min_score));
  if (options.min_perfection > 0) add("--min-perfection", number(options.min_perfection));
  for (const std::string& motif : options.motifs) add("--motif", motif);
  for (const std::string& sequence : options.sequences) add("--sequence", sequence);
  return text;
}

CRepeatFilter::CRepeatFilter(const FilterOptions& options)
    : options_(options),
      sequences_(options.sequences.begin(), options.sequences.end()),
      missing_sequences_(sequences_) {
  if (std::isnan(options.min_copies) || std::isnan(options.min_perfection)) {
    throw UsageError("--min-copies and --min-perfection take numbers");
  }
  if (!options.unit_lengths.empty()) set_unit_lengths(options.unit_lengths);
  for (const std::string& motif : options.motifs) add_motif(motif);
}

void CRepeatFilter::set_unit_lengths(const std::string& range) {
  const std::size_t dash = range.find('-');
  const std::string_view text = range;
  const std::string_view first = text.substr(0, dash);
  const std::string_view last = dash == std::string::npos ? first : text.substr(dash + 1);
  if (!first.empty() || last.empty()) min_unit_length_ = number_of(first, range);
  if (!last.empty()) max_unit_length_ = number_of(last, range);
  if (min_unit_length_ > max_unit_length_) {
    throw UsageError("--unit-length: \"" + range + "\" ends before it begins");
  }
}

void CRepeatFilter::add_motif(const std::string& motif) {
  std::string bases;
  for (const char letter : motif) bases += base_of(letter);
  if (bases.empty() || !are_base_letters(bases)) {
    throw UsageError("--motif: \"" + motif + "\" is not of the letters ACGTUN");
  }
  const std::string form(forms_.normal_form(bases, UnitForm::kAlphabeticalBothStrands));
  if (forms_.is_reducible()) {
    throw UsageError("--motif: \"" + motif + "\" repeats a shorter motif; no unit does");
  }
  motifs_.insert(form);
}

bool CRepeatFilter::takes_sequence(const std::string& identifier) {
  if (sequences_.empty()) return true;
  missing_sequences_.erase(identifier);
  return sequences_.contains(identifier);
}

std::string CRepeatFilter::missing_sequence() const {
  return missing_sequences_.empty() ? "" : *missing_sequences_.begin();
}

bool CRepeatFilter::takes(const Repeat& repeat) {
  return repeat.unit_length >= min_unit_length_ && repeat.unit_length <= max_unit_length_ &&
         repeat.length() >= options_.min_length && copies_of(repeat) >= options_.min_copies &&
         (!options_.min_score || repeat.score >= *options_.min_score) &&
         (options_.min_perfection <= 0 || perfection_of(repeat) >= options_.min_perfection) &&
         (motifs_.empty() || takes_motif(repeat.unit));
}

bool CRepeatFilter::takes_motif(std::string_view unit) {
  return motifs_.contains(forms_.normal_form(unit, UnitForm::kAlphabeticalBothStrands));
}

}  // namespace quorix::tools
