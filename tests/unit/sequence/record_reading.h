#pragma once

/// @file
/// Reading scripted input as the program does: record by record, until there is no next one.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sequence/file.h"
#include "sequence/sequence_mol.h"
#include "support/scripted_source.h"

namespace quorix::testing {

/// The states in which a read of a record leaves its file.
inline constexpr int kMoreFollows = 2;
inline constexpr int kCleanEnd = 5;
inline constexpr int kFormatError = 4;

class CScriptedFile : public CFile {
 public:
  explicit CScriptedFile(ReadScript script) {
    open(std::make_unique<CScriptedSource>(std::move(script)));
  }
};

/// What is known after one read of a record.
struct ReadRecord {
  std::string name;
  std::string bases;
  int state;
  std::uint64_t line_number;
  bool operator==(const ReadRecord&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const ReadRecord& record) {
  return stream << "{\"" << record.name << "\", \"" << record.bases << "\", state " << record.state
                << ", line " << record.line_number << "}";
}

inline ReadRecord read_record(CSequence_Mol& record, CFile& file) {
  record.readFastaSequence(file);
  return {record.name,
          {record.sequence.data(), record.sequence.size()},
          int{file.state()},
          file.line_number()};
}

inline std::vector<ReadRecord> read_records(ReadScript script) {
  static CSequence_Mol record;  // one for all inputs, as the program has one for all records
  CScriptedFile file(std::move(script));
  std::vector<ReadRecord> records;
  do {
    records.push_back(read_record(record, file));
  } while (records.back().state == kMoreFollows);
  return records;
}

inline std::vector<ReadRecord> read_records(std::string_view text) {
  return read_records(in_pieces(text, 1'000'000));
}

/// Block lengths from the least to all that fits into one read.
inline constexpr std::array<std::size_t, 6> kPieceLengths = {1, 2, 7, 64, 4096, 1'000'000};

/// Expects that `text` reads as `expected`, in whatever pieces it comes; `last` comes after them.
inline void expect_records(std::string_view text, const std::vector<ReadRecord>& expected,
                           const ScriptedRead& last = end_of_input()) {
  for (const std::size_t piece_length : kPieceLengths) {
    EXPECT_EQ(read_records(in_pieces(text, piece_length, last)), expected)
        << "in pieces of " << piece_length << " bytes";
  }
}

}  // namespace quorix::testing
