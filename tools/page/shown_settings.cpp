#include "tools/page/shown_settings.h"

#include <charconv>
#include <optional>

namespace quorix::tools {

namespace {

std::string number_text(double number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number);
  return {digits, end.ptr};
}

std::string threshold_text(const Threshold& threshold, const std::string& unit) {
  if (threshold.offset == 0 && threshold.factor == 0) {
    return std::to_string(threshold.constant) + unit;
  }
  return "the larger of " + std::to_string(threshold.constant) + " and " +
         std::to_string(threshold.offset) + " + " + number_text(threshold.factor) +
         " × unit length" + (unit.empty() ? "" : "," + unit);
}

std::string shown(SearchMode mode) {
  switch (mode) {
    case SearchMode::kExact:
      return "perfect repeats";
    case SearchMode::kExtendExact:
      return "perfect repeats, extended over edits";
    case SearchMode::kImperfect:
      return "imperfect repeats";
  }
  return "";
}

std::string shown(UnitForm form) {
  switch (form) {
    case UnitForm::kAsFound:
      return "as found";
    case UnitForm::kAlphabetical:
      return "least rotation";
    case UnitForm::kAlphabeticalBothStrands:
      return "least rotation of both strands";
  }
  return "";
}

std::string shown(NPerfection rule) {
  switch (rule) {
    case NPerfection::kMismatch:
      return "as mismatches";
    case NPerfection::kNeutral:
      return "not at all";
    case NPerfection::kMatch:
      return "as matches";
  }
  return "";
}

std::string range_text(const ReportSettings& settings) {
  if (settings.first_sequence == 1 && !settings.last_sequence) return "all";
  return std::to_string(settings.first_sequence) + " to " +
         (settings.last_sequence ? std::to_string(*settings.last_sequence) : "the last");
}

}  // namespace

std::vector<std::pair<std::string, std::string>> shown_settings(const ReportSettings& settings) {
  std::vector<std::pair<std::string, std::string>> lines;
  const auto add = [&](const char* label, const std::string& value) {
    lines.emplace_back(label, value);
  };
  const auto add_if_told = [&](const char* label, const std::optional<std::int32_t>& value) {
    if (value) lines.emplace_back(label, std::to_string(*value));
  };
  add("Input", settings.input_name);
  add("Records searched", range_text(settings));
  add("Searched for", shown(settings.search_mode));
  add("Unit lengths", std::to_string(settings.min_unit_length) + " to " +
                          std::to_string(settings.max_unit_length) + " bp");
  add("Minimum score", threshold_text(settings.min_score, ""));
  add("Minimum length", threshold_text(settings.min_length, " bp"));
  add("Minimum perfection", number_text(settings.min_perfection) + " %");
  add_if_told("Mismatch score", settings.mismatch_score);
  add_if_told("Indel score", settings.indel_score);
  add_if_told("Recursion depth", settings.recursion_depth);
  add_if_told("Maximum score reduction", settings.max_score_reduction);
  add("Unknown bases (N)", settings.treats_ns_as_missense ? "as mismatches" : "neutral");
  add("Most unknown bases in a row", std::to_string(settings.max_successive_ns));
  add("Perfection counts unknown bases", shown(settings.n_perfection));
  add("Mostly overlapping repeats", settings.removes_overlaps ? "removed" : "kept");
  add("Units are printed as", shown(settings.unit_form));
  add("Flanks", std::to_string(settings.flank_length) + " bp");
  add("Written by", "Quorix " + settings.version);
  return lines;
}

}  // namespace quorix::tools
