// Numbers of the report are numbers of JSON as they stand, so nothing is parsed or rounded.

#include "tools/formats/jsonl_writer.h"

#include "tools/formats/columns.h"
#include "tools/io/errors.h"
#include "tools/report/edit_list.h"

namespace quorix::tools {

namespace {

/// Returns the bytes of the UTF-8 character that `text` begins with, 0 if it is none. Surrogates,
/// overlong forms and what lies beyond U+10FFFF are none.
std::size_t utf8_length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80U) return 1;
  const std::size_t length = byte(0) >= 0xF0U ? 4 : byte(0) >= 0xE0U ? 3 : 2;
  if (byte(0) < 0xC2U || byte(0) > 0xF4U || text.size() < length) return 0;
  unsigned first = 0x80U;  // range of the second byte
  unsigned last = 0xBFU;
  if (byte(0) == 0xE0U) first = 0xA0U;
  if (byte(0) == 0xEDU) last = 0x9FU;
  if (byte(0) == 0xF0U) first = 0x90U;
  if (byte(0) == 0xF4U) last = 0x8FU;
  if (byte(1) < first || byte(1) > last) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return 0;
  }
  return length;
}

/// Appends an ASCII character as it stands in a JSON string.
void append_escaped(std::string& quoted, char character) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  const auto code = static_cast<unsigned char>(character);
  if (character == '"' || character == '\\') {
    quoted += '\\';
    quoted += character;
  } else if (code < 0x20U) {
    quoted += "\\u00";
    quoted += kHexDigits[code >> 4U];
    quoted += kHexDigits[code & 0xFU];
  } else {
    quoted += character;
  }
}

/// Returns `text` as a JSON string. Throws: InputError if it is not UTF-8.
std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t length = utf8_length(rest);
    if (length == 0) {
      throw InputError("the identifier \"" + std::string(text) +
                       "\" cannot stand in jsonl: it is not UTF-8");
    }
    if (length == 1) {
      append_escaped(result, rest.front());
    } else {
      result += rest.substr(0, length);
    }
    rest.remove_prefix(length);
  }
  return result + '"';
}

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
  quoted_identifier_ = quoted(identifier);
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
