#include "tools/commands/html_command.h"

#include <cstdio>

#include "tools/commands/progress.h"
#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"
#include "tools/page/page_contents.h"
#include "tools/page/page_template.h"
#include "tools/page/page_writer.h"
#include "tools/report/identifiers.h"
#include "tools/report/report_reader.h"

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

/// Reads the report into `contents`.
void collect(CReportReader& reader, const std::string& name, const HtmlOptions& options,
             CPageContents& contents) {
  CRepeatFilter filter(options.filters);
  CIdentifiers identifiers(options.reports.has_full_names);
  CProgress progress;
  while (reader.next_sequence()) {
    const std::string& identifier = identifiers.add(name, reader.sequence());
    if (!filter.takes_sequence(identifier)) continue;
    contents.begin_sequence(identifier, reader.sequence().length);
    while (reader.next_repeat()) {
      progress.note(name, reader.byte_count());
      if (filter.takes(reader.repeat())) contents.add(reader.repeat());
    }
    contents.end_sequence(reader.cut_message().empty());
  }
  if (const std::string missing = filter.missing_sequence(); !missing.empty()) {
    throw InputError("--sequence " + missing + ": no record has this identifier");
  }
}

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
  const std::string& file_name = options.reports.names.front();
  const std::string name = shown_input_name(file_name);
  CReportReader reader(open_input(file_name), name, options.reports.allows_incomplete);
  CPageContents contents(reader.settings(), options.limits);
  collect(reader, name, options, contents);
  tell_incomplete(reader.cut_message());
  write_page(contents, output);
  output.finish();
  tell_sample(contents);
}

}  // namespace quorix::tools
