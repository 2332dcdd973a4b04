#include "tools/formats/bed_writer.h"

#include <algorithm>

#include "tools/formats/columns.h"

namespace quorix::tools {

namespace {

constexpr std::int64_t kMaxBedScore = 1000;

}  // namespace

void CBedWriter::begin() {
  output().add(
      "#chrom\tstart\tend\tname\tscore\tstrand\tunit_length\tcopies\traw_score\tperfection\t"
      "mismatches\tinsertions\tdeletions\tns\n");
}

void CBedWriter::begin_sequence(const OutputSequence& sequence) {
  check_bed_identifier(sequence.identifier, "bed");
}

void CBedWriter::add(const OutputSequence& sequence, const Repeat& repeat) {
  COutput& line = output();
  line.add(sequence.identifier);
  line.add('\t');
  line.add_number(repeat.start - 1);
  line.add('\t');
  line.add_number(repeat.end);
  line.add('\t');
  line.add(repeat.unit);
  line.add('\t');
  line.add_number(std::clamp<std::int64_t>(repeat.score, 0, kMaxBedScore));
  line.add("\t.\t");
  line.add_number(repeat.unit_length);
  line.add('\t');
  add_copies(line, repeat);
  line.add('\t');
  line.add_number(repeat.score);
  line.add('\t');
  add_perfection(line, repeat);
  for (const std::int64_t count :
       {repeat.mismatches, repeat.insertions, repeat.deletions, repeat.ns}) {
    line.add('\t');
    add_count(line, count);
  }
  line.add('\n');
}

}  // namespace quorix::tools
