#include "tools/commands/html_command.h"

#include <cstdio>
#include <optional>

#include "tools/commands/filtered_reports.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"
#include "tools/page/page_contents.h"
#include "tools/page/page_template.h"
#include "tools/page/page_writer.h"

namespace quorix::tools {

namespace {

void check_options(const HtmlOptions& options) {
  if (page_template().empty()) {
    throw PageMissing(
        "this program was built without its page; install Node.js 18 or later with npm, and build "
        "it "
        "again with -DQUORIX_BUILD_PAGE=ON");
  }
  if (options.reports.names.size() != 1) throw UsageError("html takes one report");
  check_output_name(options.output_name, options.reports);
}

/// Collects what the page shows.
class CPageVisitor : public CRepeatVisitor {
 public:
  explicit CPageVisitor(const HtmlOptions& options) : options_(options) {}

  /// REQUIRES: a report was read.
  [[nodiscard]] CPageContents& contents() { return *contents_; }

  void begin_report(const ReportSettings& settings, const std::string& /*name*/) override {
    contents_.emplace(settings, options_.limits, in_words(options_.filters));
  }
  void begin_sequence(const OutputSequence& sequence) override {
    contents_->begin_sequence(sequence.identifier, sequence.length);
  }
  void add(const OutputSequence& /*sequence*/, const Repeat& repeat) override {
    contents_->add(repeat);
  }
  void end_sequence(const OutputSequence& /*sequence*/, bool is_complete) override {
    contents_->end_sequence(is_complete);
  }
  void end_report(bool is_complete) override { contents_->end_report(is_complete); }

 private:
  const HtmlOptions& options_;
  std::optional<CPageContents> contents_;
};

/// Says what the page leaves out.
void tell_sample(const CPageContents& contents) {
  const CRowSample& sample = contents.sample();
  if (sample.stride() > 1) {
    std::fprintf(
        stderr,
        "quorix-tools: the table of the page lists %zu of %lld repeats, one in %llu; totals "
        "and charts are of all\n",
        sample.rows().size(), static_cast<long long>(contents.summary().total().repeat_count),
        static_cast<unsigned long long>(sample.stride()));
  }
  if (const std::size_t count = sample.left_out_count(); count > 0) {
    std::fprintf(
        stderr, "quorix-tools: the page leaves out the longest alignments, %zu of %zu, for space\n",
        count, sample.rows().size());
  }
}

}  // namespace

void write_html(const HtmlOptions& options) {
  check_options(options);
  COutput output(options.output_name);
  CFilteredReports reports(options.reports, options.filters);
  CPageVisitor visitor(options);
  reports.read(options.reports.names.front(), visitor);
  reports.check_all_found();
  write_page(visitor.contents(), output);
  output.finish();
  tell_sample(visitor.contents());
}

}  // namespace quorix::tools
