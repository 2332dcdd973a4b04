#include "tools/formats/columns.h"
#include "tools/formats/summary_writer.h"
#include "tools/formats/text_table.h"

namespace quorix::tools {

namespace {

constexpr std::size_t kMaxNameWidth = 28;

std::string count_text(std::int64_t count) {
  return with_thousands(std::to_string(count));
}

void append_figures(TableRow& row, const GroupFigures& figures, std::int64_t searched_length) {
  const std::string mean = mean_perfection_text(figures);
  row.push_back(count_text(figures.repeat_count));
  row.push_back(count_text(figures.base_count));
  row.push_back(percent_text(figures.base_count, searched_length));
  row.push_back(with_thousands(copies_text(figures)));
  row.push_back(mean.empty() ? std::string(kNoValue) : mean);
}

TableRow header_of(TableRow row) {
  row.insert(row.end(), {"Repeats", "Bases", "Share %", "Copies", "Perfection %"});
  return row;
}

void write_records(const CSummary& summary, COutput& output) {
  const std::vector<RecordSummary>& records = summary.records();
  const GroupFigures total = summary.total();
  write_table(output, header_of({"Record", "Length"}), records.size() + 1, [&](std::size_t i) {
    const bool is_total = i == records.size();
    const std::int64_t length = is_total ? summary.searched_length() : records[i].length;
    TableRow row{is_total ? "Total" : shortened(records[i].identifier, kMaxNameWidth),
                 count_text(length)};
    append_figures(row, is_total ? total : records[i].figures, length);
    return row;
  });
}

void write_unit_lengths(const CSummary& summary, COutput& output) {
  const std::vector<UnitLengthSummary> groups = summary.unit_lengths();
  write_table(output, header_of({"Unit length"}), groups.size(), [&](std::size_t i) {
    TableRow row{count_text(groups[i].unit_length)};
    append_figures(row, groups[i].figures, summary.searched_length());
    return row;
  });
}

void write_units(const SummaryView& view, COutput& output) {
  const CSummary& summary = view.summary;
  const std::vector<std::uint32_t> numbers = summary.commonest_units(view.max_unit_count);
  const std::string title = numbers.size() == summary.unit_count()
                                ? "Unit"
                                : "Unit (" + count_text(std::ssize(numbers)) + " of " +
                                      count_text(static_cast<std::int64_t>(summary.unit_count())) +
                                      ")";
  write_table(output, header_of({title}), numbers.size(), [&](std::size_t i) {
    const UnitSummary group = summary.unit_at(numbers[i]);
    TableRow row{shortened(group.unit, kMaxNameWidth)};
    append_figures(row, group.figures, summary.searched_length());
    return row;
  });
}

}  // namespace

void write_summary_table(const SummaryView& view, COutput& output) {
  write_records(view.summary, output);
  if (view.summary.unit_count() == 0) return;
  output.add('\n');
  write_unit_lengths(view.summary, output);
  output.add('\n');
  write_units(view, output);
}

}  // namespace quorix::tools
