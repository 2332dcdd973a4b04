#include "tools/commands/convert_command.h"

#include <sys/stat.h>

#include <cstdio>
#include <memory>

#include "tools/formats/format_writer.h"
#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/io/output.h"
#include "tools/report/identifiers.h"
#include "tools/report/report_reader.h"

namespace quorix::tools {

namespace {

/// True if both names lead to one file.
bool is_same_file(const std::string& left, const std::string& right) {
  struct stat left_file {};
  struct stat right_file {};
  return ::stat(left.c_str(), &left_file) == 0 && ::stat(right.c_str(), &right_file) == 0 &&
         left_file.st_dev == right_file.st_dev && left_file.st_ino == right_file.st_ino;
}

/// Reports are read to the end after the output may have been emptied or replaced.
void check_output_name(const ConvertOptions& options) {
  if (options.output_name.empty() || options.output_name == "-") return;
  for (const std::string& name : options.report_names) {
    if (name != "-" && is_same_file(name, options.output_name)) {
      throw UsageError("the output " + options.output_name + " is one of the reports");
    }
  }
}

void convert_report(const std::string& file_name, const ConvertOptions& options,
                    CIdentifiers& identifiers, CFormatWriter& writer) {
  const std::string name = shown_input_name(file_name);
  CReportReader reader(open_input(file_name), name, options.allows_incomplete);
  while (reader.next_sequence()) {
    const OutputSequence sequence{identifiers.add(name, reader.sequence()),
                                  reader.sequence().length};
    writer.begin_sequence(sequence);
    while (reader.next_repeat()) writer.add(sequence, reader.repeat());
    writer.end_sequence(sequence);
  }
  if (!reader.cut_message().empty()) {
    std::fprintf(stderr, "quorix-tools: incomplete: %s\n", reader.cut_message().c_str());
  }
}

}  // namespace

void convert(const ConvertOptions& options) {
  check_output_name(options);
  COutput output(options.output_name);
  const std::unique_ptr<CFormatWriter> writer = make_format_writer(options.format, output);
  CIdentifiers identifiers(options.has_full_names);
  writer->begin();
  for (const std::string& name : options.report_names) {
    convert_report(name, options, identifiers, *writer);
  }
  output.finish();
}

}  // namespace quorix::tools
