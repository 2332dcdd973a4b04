// Bytes to records: whatever the bytes are, and in whatever pieces they come, the reader gives the
// records that its plain twin gives, or an error at the same line.

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/harness.h"
#include "reference/plain_fasta.h"
#include "sequence/sequence_mol.h"
#include "support/piece_source.h"

namespace quorix::fuzz {
namespace {

using reference::FastaText;
using Outcome = CByteSource::Outcome;

constexpr std::array<std::size_t, 5> kPieceLengths{1, 7, 64, 4096, 1'000'000};

/// What is being tried, for the report of a finding.
struct Reading {
  const std::string& text;
  std::size_t piece_length;
  Outcome last;

  [[noreturn]] void fail(const std::string& what) const {
    report_finding(what + ", in pieces of " + std::to_string(piece_length) +
                   (last == Outcome::kError ? " and then an error" : "") + ": " + quoted(text));
  }
};

void expect_record(const Reading& reading, const FastaText& expected, std::size_t index,
                   const CSequence_Mol& record) {
  if (index >= expected.records.size()) reading.fail("a record more than there are");
  const reference::FastaRecord& twin = expected.records[index];
  const std::string_view bases(record.sequence.data(), record.sequence.size());
  if (record.name != twin.name || bases != twin.bases) {
    reading.fail("record " + std::to_string(index + 1) + " is another one");
  }
}

/// Reads all records and holds each against the expected one.
void read_all(const Reading& reading, const FastaText& expected) {
  static CSequence_Mol record;
  static CFile input;
  input.open(
      std::make_unique<testing::CPieceSource>(reading.text, reading.piece_length, reading.last));
  std::size_t count = 0;
  while (!input.has_ended_cleanly()) {
    record.readFastaSequence(input);
    if (input.has_format_error()) {
      const auto line = static_cast<std::int64_t>(input.line_number());
      if (line != expected.error_line) {
        reading.fail("an error at line " + std::to_string(line) + ", not " +
                     std::to_string(expected.error_line));
      }
      break;
    }
    expect_record(reading, expected, count, record);
    ++count;
  }
  if (count != expected.records.size()) reading.fail("too few records");
  if (expected.error_line != 0 && !input.has_format_error()) reading.fail("no error");
}

/// What is expected if the device fails where the good text of `expected` ends: its last record is
/// not complete, and the error is on its last line.
FastaText cut_off_by_error(FastaText expected, const std::string& text) {
  if (expected.error_line != 0) return expected;
  expected.records.pop_back();
  expected.error_line = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_line_end = text[i] == '\n' ? i == 0 || text[i - 1] != '\r' : text[i] == '\r';
    if (is_line_end) ++expected.error_line;
  }
  return expected;
}

}  // namespace
}  // namespace quorix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix::fuzz;
  const std::string text(data, data + size);
  const FastaText expected = quorix::reference::read_fasta(text);
  for (const std::size_t piece_length : kPieceLengths) {
    read_all({text, piece_length, Outcome::kEnd}, expected);
  }
  const FastaText cut_off = cut_off_by_error(expected, text);
  for (const std::size_t piece_length : {kPieceLengths.front(), kPieceLengths.back()}) {
    read_all({text, piece_length, Outcome::kError}, cut_off);
  }
  return 0;
}
