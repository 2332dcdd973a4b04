#include "tools/commands/convert_command.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "tools/catalogues/catalogue.h"
#include "tools/catalogues/catalogue_writer.h"
#include "tools/catalogues/locus_selection.h"
#include "tools/commands/filtered_reports.h"
#include "tools/formats/format_names.h"
#include "tools/formats/format_writer.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"

namespace quorix::tools {

namespace {

void check_options(const ConvertOptions& options) {
  check_output_name(options.output_name, options.reports);
  if (options.window.has_value() != (options.format == kBedgraph)) {
    throw UsageError("--to bedgraph needs --window, and no other format takes it");
  }
  if (options.window && *options.window < 1) throw UsageError("--window must be 1 or more");
}

std::unique_ptr<CFormatWriter> make_writer(const ConvertOptions& options,
                                           const Catalogue* catalogue, COutput& output) {
  if (catalogue != nullptr) return std::make_unique<CCatalogueWriter>(output, *catalogue);
  return make_format_writer(options.format, output, options.window.value_or(0));
}

/// What a conversion works with.
class CConversion : public CRepeatVisitor {
 public:
  CConversion(const ConvertOptions& options, COutput& output)
      : options_(options),
        reports_(options.reports, options.filters),
        catalogue_(find_catalogue(options.format)),
        writer_(make_writer(options, catalogue_, output)) {
    if (options.sort_key && !writer_->can_be_sorted()) {
      throw UsageError("--to " + options.format + " has an order of its own; leave out --sort");
    }
    if (catalogue_ != nullptr) {
      loci_.emplace(*catalogue_, [this](const OutputSequence& sequence, const Repeat& locus) {
        keep(sequence, locus);
      });
    }
  }

  void run() {
    writer_->begin();
    for (const std::string& name : options_.reports.names) reports_.read(name, *this);
    reports_.check_all_found();
    if (options_.sort_key) list_.write_sorted(*options_.sort_key, *writer_);
    writer_->end();
  }

  /// Says on standard error what a catalogue has left out.
  void tell_left_out() const {
    const std::string summary = loci_ ? loci_->summary() : "";
    if (!summary.empty()) std::fprintf(stderr, "quorix-tools: %s\n", summary.c_str());
  }

 private:
  void begin_report(const ReportSettings& settings, const std::string& name) override {
    if (loci_) check_motifs_are_told(settings, name);
  }

  void begin_sequence(const OutputSequence& sequence) override {
    writer_->begin_sequence(sequence);
    if (loci_) loci_->begin_sequence(sequence);
    if (options_.sort_key) list_.begin_sequence(sequence);
  }

  void add(const OutputSequence& sequence, const Repeat& repeat) override {
    if (loci_) {
      loci_->add(repeat);
    } else {
      keep(sequence, repeat);
    }
  }

  void end_sequence(const OutputSequence& sequence, bool is_complete) override {
    if (loci_) loci_->end_sequence();
    // Of the rest of a record that is cut short nothing is known.
    if (is_complete) writer_->end_sequence(sequence);
  }

  void keep(const OutputSequence& sequence, const Repeat& repeat) {
    if (options_.sort_key) {
      list_.add(repeat);
    } else {
      writer_->add(sequence, repeat);
    }
  }

  const ConvertOptions& options_;
  CFilteredReports reports_;
  const Catalogue* catalogue_;  ///< null for a format that is none
  std::unique_ptr<CFormatWriter> writer_;
  std::optional<CLocusSelection> loci_;
  CRepeatList list_;
};

}  // namespace

void convert(const ConvertOptions& options) {
  check_options(options);
  COutput output(options.output_name);
  CConversion conversion(options, output);
  conversion.run();
  output.finish();
  conversion.tell_left_out();
}

}  // namespace quorix::tools
