#include "report/sequence_block.h"

namespace quorix {

void report_sequence_head(std::FILE* stream, const CSequence_Mol& record) {
  std::fprintf(stream, ">%s\nsequence length: %llu\n", record.name.c_str(),
               static_cast<unsigned long long>(record.sequence.size()));
}

void report_sequence_foot(std::FILE* stream, const CSequence_Mol& record) {
  std::fprintf(stream, "# Analysis of sequence \"%s\" completed.\n", record.name.c_str());
  std::fflush(stream);
}

}  // namespace quorix
