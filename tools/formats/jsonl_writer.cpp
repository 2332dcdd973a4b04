// Numbers of the report are numbers of JSON as they stand, so nothing is parsed or rounded.

#include "tools/formats/jsonl_writer.h"

#include "tools/formats/columns.h"
#include "tools/formats/json_text.h"

namespace quorix::tools {

namespace {

void add_number(COutput& line, std::string_view key, std::int64_t number) {
  line.add(key);
  line.add_number(number);
}

/// For texts of letters, which need no escapes.
void add_text_if_told(COutput& line, std::string_view key, std::string_view text) {
  if (text.empty()) return;
  line.add(key);
  line.add('"');
  line.add(text);
  line.add('"');
}

/// "(13,I),(20,M)," as [[13,"I"],[20,"M"]].
void add_edits(COutput& line, std::string_view edits) {
  line.add(R"(,"edits":[)");
  while (!edits.empty()) {
    const std::size_t comma = edits.find(',');
    line.add('[');
    line.add(edits.substr(1, comma - 1));
    line.add(",\"");
    line.add(edits[comma + 1]);
    line.add("\"]");
    edits.remove_prefix(comma + 4);
    if (!edits.empty()) line.add(',');
  }
  line.add(']');
}

}  // namespace

void CJsonlWriter::begin_sequence(const OutputSequence& sequence) {
  set_identifier(sequence.identifier);
}

void CJsonlWriter::set_identifier(std::string_view identifier) {
  identifier_ = identifier;
  quoted_identifier_ = json_quoted(identifier, "jsonl");
}

void CJsonlWriter::add(const OutputSequence& sequence, const Repeat& repeat) {
  if (sequence.identifier.data() != identifier_.data()) set_identifier(sequence.identifier);
  COutput& line = output();
  line.add(R"({"sequence":)");
  line.add(quoted_identifier_);
  add_number(line, R"(,"start":)", repeat.start);
  add_number(line, R"(,"end":)", repeat.end);
  add_number(line, R"(,"unit_length":)", repeat.unit_length);
  add_text_if_told(line, R"(,"unit":)", repeat.unit);
  add_text_if_told(line, R"(,"motif":)", repeat.motif);
  line.add(R"(,"copies":)");
  add_copies(line, repeat);
  add_number(line, R"(,"length":)", repeat.length());
  add_number(line, R"(,"normalized_length":)", repeat.normalized_length);
  add_number(line, R"(,"score":)", repeat.score);
  if (has_perfection(repeat)) {
    line.add(R"(,"perfection":)");
    line.add(repeat.perfection);
  }
  add_count_if_told(line, R"(,"mismatches":)", repeat.mismatches);
  add_count_if_told(line, R"(,"insertions":)", repeat.insertions);
  add_count_if_told(line, R"(,"deletions":)", repeat.deletions);
  add_count_if_told(line, R"(,"ns":)", repeat.ns);
  if (repeat.tells_edits) add_edits(line, repeat.edits);
  add_text_if_told(line, R"(,"aligned_sequence":)", repeat.bases);
  add_text_if_told(line, R"(,"aligned_unit":)", repeat.aligned_unit);
  line.add("}\n");
}

}  // namespace quorix::tools
