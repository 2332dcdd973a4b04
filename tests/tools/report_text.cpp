#include "tools/report_text.h"

#include <algorithm>
#include <cstring>

#include "console/console_texts.h"
#include "driver/parameter_report.h"
#include "report/output_format.h"
#include "support/memory_stream.h"
#include "support/random_options.h"
#include "tools/io/errors.h"

namespace quorix::testing {

std::size_t CTextInput::read(char* block, std::size_t size) {
  const std::size_t count = std::min({size, piece_length_, text_.size() - taken_});
  std::memcpy(block, text_.data() + taken_, count);
  taken_ += count;
  return count;
}

std::string whole_report(const std::vector<NamedBases>& records) {
  const CMemoryStream head;
  creator_message(head.stream(), "# ");
  print_search_parameters(head.stream(), "# ");
  print_output_format(head.stream(), "# ");
  std::string report = head.text();
  if (!records.empty()) report += run_program(fasta_text(records)).report;
  return report + "## Finished successfully. ##\n";
}

std::string example_report() {
  static const std::string kReport = [] {
    if (!apply_options({})) throw std::runtime_error("the defaults are refused");
    return whole_report({{"exact", "GGTCCTACATACATACATACATACGGTT"},
                         {"none at all", "ACGTGGCA"},
                         {"mismatch", "TTAGCAGCAGCAGCAGCTGCAGCAGCAGCAGCCC"},
                         {"insertion", "TTAGCAGCAGCAGCAGTCAGCAGCAGCAGCAGCCC"},
                         {"deletion", "TTAGCAGCAGCAGCACAGCAGCAGCAGCAGCCC"},
                         {"unknown", "TTAGCAGCAGNAGCAGCAGCAGCAGCAGCCC"}});
  }();
  return kReport;
}

OwnedRepeat::OwnedRepeat(const tools::Repeat& repeat)
    : figures(repeat),
      perfection(repeat.perfection),
      unit(repeat.unit),
      motif(repeat.motif),
      edits(repeat.edits),
      bases(repeat.bases),
      marks(repeat.marks),
      aligned_unit(repeat.aligned_unit),
      left_flank(repeat.left_flank),
      right_flank(repeat.right_flank) {}

OwnedReport read_whole(const std::string& text, bool allow_incomplete, std::size_t piece_length,
                       std::size_t block_size) {
  tools::CReportReader reader(std::make_unique<CTextInput>(text, piece_length), "r",
                              allow_incomplete, block_size);
  OwnedReport report{reader.settings(), {}, ""};
  while (reader.next_sequence()) {
    report.sequences.push_back({std::string(reader.sequence().name), reader.sequence().length, {}});
    while (reader.next_repeat()) report.sequences.back().repeats.emplace_back(reader.repeat());
  }
  report.cut_message = reader.cut_message();
  return report;
}

std::string refusal_of(const std::string& text) {
  try {
    read_whole(text);
  } catch (const tools::InputError& error) {
    return error.what();
  }
  return "";
}

}  // namespace quorix::testing
