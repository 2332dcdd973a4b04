// One object a line inside the lists, which people and line tools can read as well.

#include "tools/formats/json_text.h"
#include "tools/formats/summary_writer.h"

namespace quorix::tools {

namespace {

void add_member(COutput& output, std::string_view key, std::int64_t number) {
  output.add(key);
  output.add_number(number);
}

/// Appends the members that every group has, after those that name it.
void add_figure_members(COutput& output, const GroupFigures& figures,
                        std::int64_t searched_length) {
  add_member(output, R"(,"repeats":)", figures.repeat_count);
  add_member(output, R"(,"bases":)", figures.base_count);
  output.add(R"(,"share":)");
  output.add(share_text(figures.base_count, searched_length));
  output.add(R"(,"copies":)");
  output.add(copies_text(figures));
  if (const std::string mean = mean_perfection_text(figures); !mean.empty()) {
    output.add(R"(,"mean_perfection":)");
    output.add(mean);
  }
  output.add('}');
}

/// Separates the elements of a list.
class CList {
 public:
  CList(COutput& output, std::string_view key) : output_(output) {
    output_.add(key);
    output_.add('[');
  }

  void begin_element() {
    output_.add(is_empty_ ? "\n" : ",\n");
    is_empty_ = false;
  }

  void end() { output_.add(is_empty_ ? "]" : "\n]"); }

 private:
  COutput& output_;
  bool is_empty_ = true;
};

void add_records(COutput& output, const CSummary& summary) {
  CList list(output, R"("records":)");
  for (const RecordSummary& record : summary.records()) {
    list.begin_element();
    output.add(R"({"sequence":)");
    output.add(json_quoted(record.identifier, "json"));
    add_member(output, R"(,"length":)", record.length);
    if (!record.is_complete) output.add(R"(,"incomplete":true)");
    add_figure_members(output, record.figures, record.length);
  }
  list.end();
}

void add_total(COutput& output, const CSummary& summary) {
  add_member(output, R"("total":{"records":)", std::ssize(summary.records()));
  add_member(output, R"(,"length":)", summary.searched_length());
  add_member(output, R"(,"distinct_units":)", static_cast<std::int64_t>(summary.unit_count()));
  if (!summary.is_complete()) output.add(R"(,"incomplete":true)");
  add_figure_members(output, summary.total(), summary.searched_length());
}

void add_unit_lengths(COutput& output, const CSummary& summary) {
  CList list(output, R"("unit_lengths":)");
  for (const UnitLengthSummary& group : summary.unit_lengths()) {
    list.begin_element();
    add_member(output, R"({"unit_length":)", group.unit_length);
    add_figure_members(output, group.figures, summary.searched_length());
  }
  list.end();
}

void add_units(COutput& output, const SummaryView& view) {
  CList list(output, R"("units":)");
  for (const std::uint32_t number : view.summary.commonest_units(view.max_unit_count)) {
    const UnitSummary group = view.summary.unit_at(number);
    list.begin_element();
    output.add(R"({"unit":")");
    output.add(group.unit);
    add_member(output, R"(","unit_length":)", std::ssize(group.unit));
    add_figure_members(output, group.figures, view.summary.searched_length());
  }
  list.end();
}

}  // namespace

void write_summary_json(const SummaryView& view, COutput& output) {
  output.add('{');
  add_records(output, view.summary);
  output.add(",\n");
  add_total(output, view.summary);
  output.add(",\n");
  add_unit_lengths(output, view.summary);
  output.add(",\n");
  add_units(output, view);
  output.add("}\n");
}

}  // namespace quorix::tools
