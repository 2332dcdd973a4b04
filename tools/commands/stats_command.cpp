#include "tools/commands/stats_command.h"

#include <map>

#include "tools/commands/progress.h"
#include "tools/formats/multiqc_writer.h"
#include "tools/formats/summary_writer.h"
#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"
#include "tools/report/identifiers.h"
#include "tools/report/report_reader.h"
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

/// What the figures are made with.
class CStatistics {
 public:
  CStatistics(const StatsOptions& options, COutput& output)
      : options_(options), output_(output), filter_(options.filters) {}

  void run() {
    if (options_.format == kMultiqc) {
      write_samples();
    } else {
      write_summary();
    }
    if (const std::string missing = filter_.missing_sequence(); !missing.empty()) {
      throw InputError("--sequence " + missing + ": no record has this identifier");
    }
  }

 private:
  /// All reports are one table.
  void write_summary() {
    CSummary summary;
    CIdentifiers identifiers(options_.reports.has_full_names);
    for (const std::string& name : options_.reports.names) add_report(name, summary, identifiers);
    const std::int64_t max_unit_count = options_.max_unit_count.value_or(kDefaultUnitCount);
    const SummaryView view{summary, static_cast<std::size_t>(max_unit_count)};
    if (options_.format == "json") {
      write_summary_json(view, output_);
    } else if (options_.format == "tsv") {
      write_summary_tsv(view, output_);
    } else {
      write_summary_table(view, output_);
    }
  }

  /// Each report is a sample, with records of its own.
  void write_samples() {
    CMultiqcWriter writer(output_);
    std::map<std::string, std::string> report_of_sample;
    for (const std::string& name : options_.reports.names) {
      CSummary summary;
      CIdentifiers identifiers(options_.reports.has_full_names);
      const std::string sample = sample_name(name, add_report(name, summary, identifiers));
      const auto [found, is_new] = report_of_sample.try_emplace(sample, shown_input_name(name));
      if (!is_new) {
        throw InputError(shown_input_name(name) + ": this sample is called \"" + sample +
                         "\" like that of " + found->second);
      }
      writer.add_sample(sample, summary);
    }
    writer.end();
  }

  /// Adds a report and returns the name of its input.
  std::string add_report(const std::string& file_name, CSummary& summary,
                         CIdentifiers& identifiers) {
    const std::string name = shown_input_name(file_name);
    CReportReader reader(open_input(file_name), name, options_.reports.allows_incomplete);
    summary.begin_report(reader.settings().unit_form);
    while (reader.next_sequence()) {
      const std::string& identifier = identifiers.add(name, reader.sequence());
      if (!filter_.takes_sequence(identifier)) continue;
      summary.begin_record(identifier, reader.sequence().length);
      while (reader.next_repeat()) {
        progress_.note(name, reader.byte_count());
        if (filter_.takes(reader.repeat())) summary.add(reader.repeat());
      }
      summary.end_record(reader.cut_message().empty());
    }
    tell_incomplete(reader.cut_message());
    return reader.settings().input_name;
  }

  const StatsOptions& options_;
  COutput& output_;
  CRepeatFilter filter_;
  CProgress progress_;
};

}  // namespace

void stats(const StatsOptions& options) {
  check_options(options);
  COutput output(options.output_name);
  CStatistics statistics(options, output);
  statistics.run();
  output.finish();
}

}  // namespace quorix::tools
