#include "support/record_runs.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "driver/record_analysis.h"
#include "reference/plain_engine.h"
#include "sequence/sequence_mol.h"
#include "support/memory_source.h"
#include "support/memory_stream.h"

namespace quorix::testing {

namespace {

constexpr std::size_t kMaskedLineLength = 80;

}  // namespace

std::string fasta_text(const std::vector<NamedBases>& records, std::size_t line_length,
                       const std::string& line_end) {
  std::string text;
  for (const NamedBases& record : records) {
    text += ">" + record.name + line_end;
    for (std::size_t start = 0; start < record.bases.size(); start += line_length) {
      text += record.bases.substr(start, line_length) + line_end;
    }
  }
  return text;
}

RunOutput run_program(const std::string& fasta) {
  static CSequence_Mol record;
  static CFile input;
  const CMemoryStream report;
  const CMemoryStream masked;
  input.open(std::make_unique<CMemorySource>(fasta));
  for (std::uint64_t number = 1; !input.has_ended_cleanly(); ++number) {
    record.readFastaSequence(input);
    if (input.has_format_error()) throw std::runtime_error("format error in a test's own FASTA");
    analyse_record(number, record, report.stream(), true);
    record.writeSequence(masked.stream(), kMaskedLineLength);
  }
  return {report.text(), masked.text()};
}

RunOutput run_plain_engine(const std::vector<NamedBases>& records) {
  RunOutput output;
  for (const auto& [name, bases] : records) {
    const std::vector<reference::Repeat> repeats =
        reference::remove_hidden(reference::search(bases));
    output.report += reference::report_record(name, bases, repeats);
    output.masked += fasta_text({{name, reference::mask(bases, repeats)}}, kMaskedLineLength);
  }
  return output;
}

}  // namespace quorix::testing
