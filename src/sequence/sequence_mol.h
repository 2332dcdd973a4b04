#pragma once

/// @file
/// One FASTA record: its name, its bases, and how it is read and written.
///
/// One object serves every record of a file, so that its block of bases is allocated once. Repeats
/// point into that block and are valid until the next record is read.

#include <cstdint>
#include <cstdio>
#include <string>

#include "sequence/faststring.h"
#include "sequence/file.h"

namespace quorix {

class CSequence_Mol {
 public:
  /// An empty DNA record with room for 10,000,000 bases. Throws: std::bad_alloc.
  CSequence_Mol();

  /// Replaces this record by the next one and leaves `file` in one of the states that `CFile::Flag`
  /// lists. On a format error its line number is that of the error.
  ///
  /// Blank lines, white space and '#' lines may precede the first header only. Letters are read in
  /// any case; U is read as T, the ambiguity codes RYKMSWBDHVX as N; white space, '-' and
  /// '*' are dropped. Anything else is a format error, and so is a file without a header.
  /// Throws: std::bad_alloc.
  void readFastaSequence(CFile& file);

  /// Appends the bases of one line and takes its line feed; see `readFastaSequence`.
  void getLineOfDNA(CFile& file);

  /// Writes the header line, then the bases in lines of `width`. A write error stays in the
  /// stream's error flag. REQUIRES: width >= 1.
  void writeSequence(std::FILE* stream, int width) const;

  /// The header line after '>', without its line end.
  std::string name;
  /// The bases: only A, C, G, T and N.
  faststring sequence;
  /// Kind of sequence; 0 is DNA, the only kind there is.
  std::int32_t seq_type = 0;

 private:
  void read_name(CFile& file);
  void read_body(CFile& file);
  /// Takes buffered bases up to the first character that is no base, the end of the line, the end
  /// of the buffer, or the end of the block of bases.
  void append_buffered_bases(CFile& file);
};

}  // namespace quorix
