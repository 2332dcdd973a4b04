#include "tools/commands/filtered_reports.h"

#include <cstdio>

#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/report/report_reader.h"

namespace quorix::tools {

void CFilteredReports::read(const std::string& file_name, CRepeatVisitor& visitor) {
  const std::string name = shown_input_name(file_name);
  CReportReader reader(open_input(file_name), name, reports_.allows_incomplete);
  visitor.begin_report(reader.settings(), name);
  while (reader.next_sequence()) {
    const std::string& identifier = identifiers_.add(name, reader.sequence());
    if (!filter_.takes_sequence(identifier)) continue;
    const OutputSequence sequence{identifier, reader.sequence().length};
    try {
      visitor.begin_sequence(sequence);
    } catch (const InputError& error) {  // for an identifier that cannot stand in the output
      throw InputError(name + ':' + std::to_string(reader.sequence().line) + ": " + error.what());
    }
    while (reader.next_repeat()) {
      progress_.note(name, reader.byte_count());
      if (filter_.takes(reader.repeat())) visitor.add(sequence, reader.repeat());
    }
    visitor.end_sequence(sequence, reader.cut_message().empty());
  }
  visitor.end_report(reader.cut_message().empty());
  progress_.clear();
  if (!reader.cut_message().empty()) {
    std::fprintf(stderr, "quorix-tools: incomplete: %s\n", reader.cut_message().c_str());
  }
}

void CFilteredReports::check_all_found() const {
  if (const std::string missing = filter_.missing_sequence(); !missing.empty()) {
    throw InputError("--sequence " + missing + ": no record has this identifier");
  }
}

}  // namespace quorix::tools
