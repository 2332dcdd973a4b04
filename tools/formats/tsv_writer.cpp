#include "tools/formats/tsv_writer.h"

#include "tools/formats/columns.h"

namespace quorix::tools {

void CTsvWriter::begin() {
  output().add(
      "sequence\tstart\tend\tunit_length\tunit\tmotif\tcopies\tlength\tnormalized_length\tscore\t"
      "perfection\tmismatches\tinsertions\tdeletions\tns\tedits\taligned_sequence\taligned_unit\n");
}

void CTsvWriter::begin_sequence(const OutputSequence& sequence) {
  check_column_text(sequence.identifier, "tsv");
}

void CTsvWriter::add(const OutputSequence& sequence, const Repeat& repeat) {
  COutput& line = output();
  line.add(sequence.identifier);
  for (const std::int64_t number : {repeat.start, repeat.end, repeat.unit_length}) {
    line.add('\t');
    line.add_number(number);
  }
  line.add('\t');
  line.add(repeat.unit);
  line.add('\t');
  add_text(line, repeat.motif);
  line.add('\t');
  add_copies(line, repeat);
  for (const std::int64_t number : {repeat.length(), repeat.normalized_length, repeat.score}) {
    line.add('\t');
    line.add_number(number);
  }
  line.add('\t');
  add_perfection(line, repeat);
  for (const std::int64_t count :
       {repeat.mismatches, repeat.insertions, repeat.deletions, repeat.ns}) {
    line.add('\t');
    add_count(line, count);
  }
  for (const std::string_view text : {repeat.edits, repeat.bases, repeat.aligned_unit}) {
    line.add('\t');
    add_text(line, text);
  }
  line.add('\n');
}

}  // namespace quorix::tools
