#include "tools/page/page_head.h"

#include <cstdint>

#include "tools/io/utf8.h"
#include "tools/page/shown_settings.h"

namespace quorix::tools {

namespace {

constexpr std::size_t kShownUnits = 30;
constexpr std::uint32_t kReplacement = 0xFFFD;

void append_escape(std::string& text, std::uint32_t unit) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  text += "\\u";
  for (const unsigned shift : {12U, 8U, 4U, 0U}) text += kHexDigits[(unit >> shift) & 0xFU];
}

/// Builds an object member by member.
class CJsonObject {
 public:
  void add(std::string_view key, const std::string& value) {
    text_ += text_.empty() ? '{' : ',';
    text_ += json_string(key) + ':' + value;
  }
  void add(std::string_view key, std::int64_t value) { add(key, std::to_string(value)); }
  [[nodiscard]] std::string text() const { return text_ + '}'; }

 private:
  std::string text_;
};

/// Returns an array of what `text_of` makes of each item.
template <class Items, class TextOf>
std::string json_array(const Items& items, const TextOf& text_of) {
  std::string text = "[";
  for (const auto& item : items) {
    if (text.size() > 1) text += ',';
    text += text_of(item);
  }
  return text + ']';
}

template <class Items>
std::string json_numbers(const Items& items) {
  return json_array(items, [](std::int64_t number) { return std::to_string(number); });
}

/// Adds what a group has besides its name.
void add_figures(CJsonObject& object, const GroupFigures& figures, std::int64_t length) {
  object.add("repeats", figures.repeat_count);
  object.add("bases", figures.base_count);
  object.add("share", share_text(figures.base_count, length));
  object.add("copies", copies_text(figures));
  const std::string perfection = mean_perfection_text(figures);
  if (!perfection.empty()) object.add("perfection", perfection);
}

std::string json_unit_lengths(const CSummary& summary) {
  return json_array(summary.unit_lengths(), [&](const UnitLengthSummary& group) {
    CJsonObject object;
    object.add("unit_length", group.unit_length);
    add_figures(object, group.figures, summary.searched_length());
    return object.text();
  });
}

std::string json_units(const CSummary& summary) {
  return json_array(summary.commonest_units(kShownUnits), [&](std::uint32_t number) {
    const UnitSummary group = summary.unit_at(number);
    CJsonObject object;
    object.add("unit", json_string(group.unit));
    add_figures(object, group.figures, summary.searched_length());
    return object.text();
  });
}

std::string json_total(const CSummary& summary) {
  CJsonObject object;
  object.add("records", static_cast<std::int64_t>(summary.records().size()));
  object.add("length", summary.searched_length());
  add_figures(object, summary.total(), summary.searched_length());
  object.add("units", static_cast<std::int64_t>(summary.unit_count()));
  return object.text();
}

std::string json_distributions(const CDistributions& distributions) {
  const std::size_t class_count = distributions.length_counts().size();
  std::vector<std::int64_t> bounds = distributions.length_bounds();
  bounds.resize(class_count + 1);
  CJsonObject object;
  object.add("length_bounds", json_numbers(bounds));
  object.add("length_counts", json_numbers(distributions.length_counts()));
  object.add("perfection_counts", json_numbers(distributions.perfection_counts()));
  object.add("without_perfection", distributions.without_perfection());
  return object.text();
}

/// What of the report is listed.
void add_sample(CJsonObject& object, const CPageContents& contents) {
  const CRowSample& sample = contents.sample();
  const std::size_t left_out = sample.left_out_count();
  object.add("rows", static_cast<std::int64_t>(sample.rows().size()));
  object.add("stride", static_cast<std::int64_t>(sample.stride()));
  object.add("left_out", static_cast<std::int64_t>(left_out));
}

}  // namespace

std::string json_string(std::string_view bytes) {
  std::string text = "\"";
  while (!bytes.empty()) {
    const std::uint32_t code = take_utf8_character(bytes).value_or(kReplacement);
    if (code >= 0x10000U) {
      append_escape(text, 0xD7C0U + (code >> 10U));
      append_escape(text, 0xDC00U | (code & 0x3FFU));
    } else if (code < 0x20U || code >= 0x7FU || code == '"' || code == '\\') {
      append_escape(text, code);
    } else {
      text += static_cast<char>(code);
    }
  }
  return text + '"';
}

std::string page_head(const CPageContents& contents, std::size_t word_count) {
  const ReportSettings& settings = contents.settings();
  CJsonObject object;
  object.add("settings", json_array(shown_settings(settings), [](const auto& line) {
               return '[' + json_string(line.first) + ',' + json_string(line.second) + ']';
             }));
  object.add("input", json_string(settings.input_name));
  object.add("filters", json_string(contents.filters()));
  object.add("complete", contents.summary().is_complete() ? 1 : 0);
  object.add("total", json_total(contents.summary()));
  object.add("unit_lengths", json_unit_lengths(contents.summary()));
  object.add("units", json_units(contents.summary()));
  object.add("distributions", json_distributions(contents.distributions()));
  object.add("window", contents.density().window());
  object.add("words", static_cast<std::int64_t>(word_count));
  object.add("decimals", settings.format == ReportFormat::kSputnik ? 0 : 3);
  object.add("bases", json_string(settings.sequence_mode == SequenceMode::kNone    ? "none"
                                  : settings.sequence_mode == SequenceMode::kBases ? "bases"
                                                                                   : "alignment"));
  add_sample(object, contents);
  return object.text();
}

}  // namespace quorix::tools
