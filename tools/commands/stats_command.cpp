#include "tools/commands/stats_command.h"

#include <map>

#include "tools/commands/filtered_reports.h"
#include "tools/formats/multiqc_writer.h"
#include "tools/formats/summary_writer.h"
#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"
#include "tools/summary/summary.h"

namespace quorix::tools {

namespace {

void check_options(const StatsOptions& options) {
  check_output_name(options.output_name, options.reports);
  if (options.format == kMultiqc && options.max_unit_count) {
    throw UsageError("--to multiqc lists no units; leave out --top");
  }
  if (options.max_unit_count.value_or(0) < 0) throw UsageError("--top must be 0 or more");
}

/// Returns the name of a sample: that of the report's file, or of the input in its head for one on
/// standard input, without folders and without the endings ".gz" and ".report".
std::string sample_name(const std::string& report_name, const std::string& input_name) {
  std::string name = report_name == "-" ? input_name : report_name;
  name.erase(0, name.rfind('/') + 1);
  for (const std::string_view ending : {".gz", ".report"}) {
    if (name.size() > ending.size() && name.ends_with(ending)) {
      name.resize(name.size() - ending.size());
    }
  }
  return name;
}

/// Adds reports to a summary.
class CSummaryVisitor : public CRepeatVisitor {
 public:
  [[nodiscard]] const CSummary& summary() const { return summary_; }
  /// The name of the last report's input.
  [[nodiscard]] const std::string& input_name() const { return input_name_; }

  void begin_report(const ReportSettings& settings, const std::string& /*name*/) override {
    input_name_ = settings.input_name;
    summary_.begin_report(settings.unit_form);
  }
  void begin_sequence(const OutputSequence& sequence) override {
    summary_.begin_record(sequence.identifier, sequence.length);
  }
  void add(const OutputSequence& /*sequence*/, const Repeat& repeat) override {
    summary_.add(repeat);
  }
  void end_sequence(const OutputSequence& /*sequence*/, bool is_complete) override {
    summary_.end_record(is_complete);
  }
  void end_report(bool is_complete) override { summary_.end_report(is_complete); }

 private:
  CSummary summary_;
  std::string input_name_;
};

/// All reports are one table.
void write_summary(const StatsOptions& options, CFilteredReports& reports, COutput& output) {
  CSummaryVisitor visitor;
  for (const std::string& name : options.reports.names) reports.read(name, visitor);
  const std::int64_t max_unit_count = options.max_unit_count.value_or(kDefaultUnitCount);
  const SummaryView view{visitor.summary(), static_cast<std::size_t>(max_unit_count)};
  if (options.format == "json") {
    write_summary_json(view, output);
  } else if (options.format == "tsv") {
    write_summary_tsv(view, output);
  } else {
    write_summary_table(view, output);
  }
}

/// Each report is a sample, with records of its own.
void write_samples(const StatsOptions& options, CFilteredReports& reports, COutput& output) {
  CMultiqcWriter writer(output);
  std::map<std::string, std::string> report_of_sample;
  for (const std::string& name : options.reports.names) {
    CSummaryVisitor visitor;
    reports.read(name, visitor);
    reports.forget_identifiers();
    const std::string sample = sample_name(name, visitor.input_name());
    const auto [found, is_new] = report_of_sample.try_emplace(sample, shown_input_name(name));
    if (!is_new) {
      throw InputError(shown_input_name(name) + ": this sample is called \"" + sample +
                       "\" like that of " + found->second);
    }
    writer.add_sample(sample, visitor.summary());
  }
  writer.end();
}

}  // namespace

void stats(const StatsOptions& options) {
  check_options(options);
  COutput output(options.output_name);
  CFilteredReports reports(options.reports, options.filters);
  if (options.format == kMultiqc) {
    write_samples(options, reports, output);
  } else {
    write_summary(options, reports, output);
  }
  reports.check_all_found();
  output.finish();
}

}  // namespace quorix::tools
