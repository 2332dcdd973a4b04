#include "tools/formats/multiqc_writer.h"

#include "tools/formats/columns.h"
#include "tools/formats/json_text.h"

namespace quorix::tools {

namespace {

/// The columns and how they are shown. A share is a percentage there.
constexpr std::string_view kBegin = R"({
  "id": "quorix",
  "section_name": "Tandem repeats",
  "description": "What quorix reports. A base in several repeats counts once.",
  "plot_type": "table",
  "pconfig": {
    "id": "quorix_table",
    "title": "Tandem repeats",
    "namespace": "Quorix",
    "col1_header": "Report"
  },
  "headers": {
    "records": {"title": "Records", "description": "Records searched", "min": 0, "format": "{:,.0f}", "scale": "Greys", "hidden": true},
    "length": {"title": "Searched", "description": "Bases searched", "min": 0, "format": "{:,.0f}", "suffix": " bp", "scale": "Greys"},
    "repeats": {"title": "Repeats", "description": "Repeats found", "min": 0, "format": "{:,.0f}", "scale": "Blues"},
    "bases": {"title": "In repeats", "description": "Bases that lie in repeats, none counted twice", "min": 0, "format": "{:,.0f}", "suffix": " bp", "scale": "Blues"},
    "share": {"title": "Share", "description": "Share of the searched bases that lie in repeats", "min": 0, "max": 100, "format": "{:,.3f}", "suffix": "%", "scale": "Oranges"},
    "copies": {"title": "Copies", "description": "Sum of normalized length / unit length", "min": 0, "format": "{:,.2f}", "scale": "Purples", "hidden": true},
    "mean_perfection": {"title": "Perfection", "description": "Mean perfection of the repeats", "max": 100, "format": "{:,.3f}", "suffix": "%", "scale": "RdYlGn"},
    "microsatellites": {"title": "Microsatellites", "description": "Repeats with units of 1 to 9 bases", "min": 0, "format": "{:,.0f}", "scale": "Greens"},
    "minisatellites": {"title": "Minisatellites", "description": "Repeats with units of 10 to 99 bases", "min": 0, "format": "{:,.0f}", "scale": "Greens"},
    "satellites": {"title": "Satellites", "description": "Repeats with units of 100 bases or more", "min": 0, "format": "{:,.0f}", "scale": "Greens"}
  },
  "data": {)";

/// Repeats by the classes of their units.
struct ClassCounts {
  std::int64_t microsatellites = 0;
  std::int64_t minisatellites = 0;
  std::int64_t satellites = 0;
};

ClassCounts class_counts(const CSummary& summary) {
  ClassCounts counts;
  for (const UnitLengthSummary& group : summary.unit_lengths()) {
    std::int64_t& count = group.unit_length < kMinMinisatelliteUnit ? counts.microsatellites
                          : group.unit_length < kMinSatelliteUnit   ? counts.minisatellites
                                                                    : counts.satellites;
    count += group.figures.repeat_count;
  }
  return counts;
}

}  // namespace

CMultiqcWriter::CMultiqcWriter(COutput& output) : output_(output) {
  output_.add(kBegin);
}

void CMultiqcWriter::add_sample(std::string_view name, const CSummary& summary) {
  const GroupFigures total = summary.total();
  const ClassCounts counts = class_counts(summary);
  const auto add = [this](std::string_view key, std::string_view value) {
    output_.add(", \"");
    output_.add(key);
    output_.add("\": ");
    output_.add(value);
  };
  const auto add_number = [&add](std::string_view key, std::int64_t count) {
    add(key, std::to_string(count));
  };
  output_.add(has_sample_ ? ",\n    " : "\n    ");
  has_sample_ = true;
  output_.add(json_quoted(name, "multiqc"));
  output_.add(R"(: {"records": )");
  output_.add_number(std::ssize(summary.records()));
  add_number("length", summary.searched_length());
  add_number("repeats", total.repeat_count);
  add_number("bases", total.base_count);
  add("share", percent_text(total.base_count, summary.searched_length()));
  add("copies", copies_text(total));
  if (const std::string mean = mean_perfection_text(total); !mean.empty()) {
    add("mean_perfection", mean);
  }
  add_number("microsatellites", counts.microsatellites);
  add_number("minisatellites", counts.minisatellites);
  add_number("satellites", counts.satellites);
  output_.add('}');
}

void CMultiqcWriter::end() {
  output_.add("\n  }\n}\n");
}

}  // namespace quorix::tools
