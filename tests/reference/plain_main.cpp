// quorix_plain: the program's command line before the plain engine, for tests and benchmarks.
//
// It writes the blocks of the searched records alone, without head and closing lines. With --maskX
// the masked records go to a file named after the report, so that a run of the program on the same
// input is not disturbed.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "driver/command_line.h"
#include "reference/plain_engine.h"
#include "reference/plain_fasta.h"
#include "settings/settings.h"

namespace {

using quorix::reference::FastaRecord;
using quorix::reference::FastaText;
using quorix::reference::Repeat;

constexpr int kNoMaskedFile = 1;
constexpr int kReportNotOpened = 154;
constexpr int kInputNotOpened = 155;
constexpr int kWriteFailed = 153;
constexpr int kFormatError = 231;
constexpr std::int64_t kMaskedLineWidth = 80;

/// Appends the whole file to `text`; false if it cannot be opened. A failed read just ends the
/// text: a directory, say, reads as an empty file.
bool slurp(const std::string& file_name, std::string& text) {
  std::FILE* const file = std::fopen(file_name.c_str(), "rb");
  if (file == nullptr) {
    return false;
  }
  std::vector<char> block(std::size_t{1} << 20);
  std::size_t count = std::fread(block.data(), 1, block.size(), file);
  while (count > 0) {
    text.append(block.data(), count);
    count = std::fread(block.data(), 1, block.size(), file);
  }
  std::fclose(file);
  return true;
}

int fail(const std::string& message, int status) {
  std::cerr << message << "\n";
  return status;
}

void search_record(const FastaRecord& record, std::ostream& report, std::ostream& masked) {
  using namespace quorix::reference;
  const std::vector<Repeat> repeats = remove_hidden(search(record.bases));
  report << report_record(record.name, record.bases, repeats);
  if (quorix::global_mask_repeats) {
    masked << write_fasta({record.name, mask(record.bases, repeats)}, kMaskedLineWidth);
  }
}

int run() {
  using namespace quorix;
  if (global_mask_repeats && global_output_filename.empty()) {
    return fail("--maskX needs the name of a report file", kNoMaskedFile);
  }
  std::string text;
  if (!slurp(global_input_filename, text)) {
    return fail("cannot open " + global_input_filename, kInputNotOpened);
  }
  std::ofstream report_file;
  std::ofstream masked;
  if (!global_output_filename.empty()) {
    report_file.open(global_output_filename, std::ios::binary);
    if (!report_file) {
      return fail("cannot open " + global_output_filename, kReportNotOpened);
    }
  }
  if (global_mask_repeats) {
    masked.open(global_output_filename + ".masked", std::ios::binary);
    if (!masked) {
      return fail("cannot open " + global_output_filename + ".masked", kWriteFailed);
    }
  }
  std::ostream& report = report_file.is_open() ? report_file : std::cout;

  const FastaText fasta = reference::read_fasta(text);
  for (std::size_t index = 0; index < fasta.records.size(); ++index) {
    const std::size_t number = index + 1;
    if (number >= global_sequence_from && number <= global_sequence_to) {
      search_record(fasta.records[index], report, masked);
    }
  }
  report.flush();
  masked.flush();
  if (!report || (global_mask_repeats && !masked)) {
    return fail("cannot write the report or the masked file", kWriteFailed);
  }
  if (fasta.error_line != 0) {
    return fail("format error in line " + std::to_string(fasta.error_line), kFormatError);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const int result = quorix::read_and_init_parameters(argc, argv);
  if (result != 0) {
    return result;
  }
  return run();
}
