// One table instead of three, so that a file has one header row and any reader of tables takes it.

#include "tools/formats/columns.h"
#include "tools/formats/summary_writer.h"

namespace quorix::tools {

namespace {

void add_summary_column(COutput& output, std::string_view text) {
  add_text(output, text);
  output.add('\t');
}

void add_figure_columns(COutput& output, const GroupFigures& figures,
                        std::int64_t searched_length) {
  output.add_number(figures.repeat_count);
  output.add('\t');
  output.add_number(figures.base_count);
  output.add('\t');
  add_summary_column(output, share_text(figures.base_count, searched_length));
  add_summary_column(output, copies_text(figures));
  add_text(output, mean_perfection_text(figures));
  output.add('\n');
}

/// A row of repeats that are not of one unit length.
void add_record_row(COutput& output, std::string_view kind, std::string_view identifier,
                    std::int64_t length, const GroupFigures& figures) {
  add_summary_column(output, kind);
  add_summary_column(output, identifier);
  output.add_number(length);
  output.add("\t.\t.\t");
  add_figure_columns(output, figures, length);
}

/// A row of repeats of one unit length, and of one unit if that is not empty.
void add_unit_row(COutput& output, std::string_view kind, std::int64_t unit_length,
                  std::string_view unit, const GroupFigures& figures,
                  std::int64_t searched_length) {
  add_summary_column(output, kind);
  output.add(".\t.\t");
  output.add_number(unit_length);
  output.add('\t');
  add_summary_column(output, unit);
  add_figure_columns(output, figures, searched_length);
}

}  // namespace

void write_summary_tsv(const SummaryView& view, COutput& output) {
  const CSummary& summary = view.summary;
  output.add(
      "kind\tsequence\tlength\tunit_length\tunit\trepeats\tbases\tshare\tcopies\t"
      "mean_perfection\n");
  for (const RecordSummary& record : summary.records()) {
    check_column_text(record.identifier, "tsv");
    add_record_row(output, "record", record.identifier, record.length, record.figures);
  }
  const std::int64_t length = summary.searched_length();
  add_record_row(output, "total", "", length, summary.total());
  for (const UnitLengthSummary& group : summary.unit_lengths()) {
    add_unit_row(output, "unit_length", group.unit_length, "", group.figures, length);
  }
  for (const std::uint32_t number : summary.commonest_units(view.max_unit_count)) {
    const UnitSummary group = summary.unit_at(number);
    add_unit_row(output, "unit", static_cast<std::int64_t>(group.unit.size()), group.unit,
                 group.figures, length);
  }
}

}  // namespace quorix::tools
