// quorix_read_only: reads a FASTA file and does nothing else, to measure the cost of reading.
//
//   quorix_read_only FILE
//
// Reads all records as the program does and prints "records bases longest".

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "sequence/file.h"
#include "sequence/sequence_mol.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: quorix_read_only FILE\n", stderr);
    return 2;
  }
  quorix::CFile input;
  quorix::CSequence_Mol record;
  input.open(argv[1]);
  std::uint64_t records = 0;
  std::uint64_t bases = 0;
  std::uint64_t longest = 0;
  while (!input.has_ended_cleanly()) {
    record.readFastaSequence(input);
    if (input.has_format_error()) {
      std::fprintf(stderr, "quorix_read_only: cannot read %s\n", argv[1]);
      return 1;
    }
    ++records;
    bases += record.sequence.size();
    longest = std::max<std::uint64_t>(longest, record.sequence.size());
  }
  std::printf("%llu %llu %llu\n", static_cast<unsigned long long>(records),
              static_cast<unsigned long long>(bases), static_cast<unsigned long long>(longest));
  return 0;
}
