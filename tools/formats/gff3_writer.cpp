// The first column and the attributes have alphabets of their own; what is outside is written as %
// and two hexadecimal digits.

#include "tools/formats/gff3_writer.h"

#include "tools/formats/columns.h"

namespace quorix::tools {

namespace {

/// What the first column may hold besides letters and digits.
constexpr std::string_view kColumnMarks = ".:^*$@!+_?-|";
/// What ends a value of an attribute or begins an escape.
constexpr std::string_view kAttributeMarks = ";=&,%";

bool is_letter_or_digit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

bool stands_in_column(char character) {
  return is_letter_or_digit(character) || kColumnMarks.find(character) != std::string_view::npos;
}

/// Bytes of 128 and above belong to UTF-8 characters and stay.
bool stands_in_attribute(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code >= 0x20U && code != 0x7FU &&
         kAttributeMarks.find(character) == std::string_view::npos;
}

template <class Stands>
std::string escaped(std::string_view text, const Stands& stands) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string result;
  for (const char character : text) {
    if (stands(character)) {
      result += character;
      continue;
    }
    const auto code = static_cast<unsigned char>(character);
    result += '%';
    result += kHexDigits[code >> 4U];
    result += kHexDigits[code & 0xFU];
  }
  return result;
}

std::string_view type_of(std::int64_t unit_length) {
  if (unit_length < kMinMinisatelliteUnit) return "microsatellite";
  return unit_length < kMinSatelliteUnit ? "minisatellite" : "satellite_DNA";
}

void add_attributes(COutput& line, const Repeat& repeat) {
  line.add(";Name=");
  line.add(repeat.unit);
  line.add(";unit_length=");
  line.add_number(repeat.unit_length);
  if (!repeat.motif.empty()) {
    line.add(";motif=");
    line.add(repeat.motif);
  }
  line.add(";copies=");
  add_copies(line, repeat);
  line.add(";normalized_length=");
  line.add_number(repeat.normalized_length);
  if (has_perfection(repeat)) {
    line.add(";perfection=");
    line.add(repeat.perfection);
  }
  add_count_if_told(line, ";mismatches=", repeat.mismatches);
  add_count_if_told(line, ";insertions=", repeat.insertions);
  add_count_if_told(line, ";deletions=", repeat.deletions);
  add_count_if_told(line, ";ns=", repeat.ns);
}

}  // namespace

void CGff3Writer::begin() {
  output().add("##gff-version 3\n");
}

void CGff3Writer::begin_sequence(const OutputSequence& sequence) {
  set_identifier(sequence.identifier);
  if (sequence.length == 0) return;  // a region has a base at least
  output().add("##sequence-region ");
  output().add(column_);
  output().add(" 1 ");
  output().add_number(sequence.length);
  output().add('\n');
}

void CGff3Writer::set_identifier(std::string_view identifier) {
  identifier_ = identifier;
  column_ = escaped(identifier, stands_in_column);
  attribute_ = escaped(identifier, stands_in_attribute);
}

void CGff3Writer::add(const OutputSequence& sequence, const Repeat& repeat) {
  if (sequence.identifier.data() != identifier_.data()) set_identifier(sequence.identifier);
  COutput& line = output();
  line.add(column_);
  line.add("\tquorix\t");
  line.add(type_of(repeat.unit_length));
  for (const std::int64_t number : {repeat.start, repeat.end, repeat.score}) {
    line.add('\t');
    line.add_number(number);
  }
  line.add("\t.\t.\tID=");
  line.add(attribute_);
  line.add(".repeat");
  line.add_number(repeat.ordinal);
  add_attributes(line, repeat);
  line.add('\n');
}

}  // namespace quorix::tools
