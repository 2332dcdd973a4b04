// Of a million short records most print nothing else, so their heads and feet are not left to
// printf.

#include "report/sequence_block.h"

#include <cstddef>

#include "report/report_text.h"
#include "sequence/stream_text.h"

namespace quorix {

namespace {

/// Room for a name of usual length; a longer one is written in pieces.
constexpr std::size_t kBlockSize = 512;

}  // namespace

void report_sequence_head(std::FILE* stream, const CSequence_Mol& record) {
  char block[kBlockSize];
  CStreamText text(stream, block);
  text.add('>');
  text.add(record.name.c_str());
  text.add("\nsequence length: ");
  add_number(text, static_cast<long long>(record.sequence.size()));
  text.add('\n');
}

void report_sequence_foot(std::FILE* stream, const CSequence_Mol& record) {
  char block[kBlockSize];
  CStreamText text(stream, block);
  text.add("# Analysis of sequence \"");
  text.add(record.name.c_str());
  text.add("\" completed.\n");
  text.hand_over();
  std::fflush(stream);
}

}  // namespace quorix
