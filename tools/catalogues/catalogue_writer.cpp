#include "tools/catalogues/catalogue_writer.h"

#include <stdexcept>

#include "tools/formats/columns.h"
#include "tools/formats/json_text.h"

namespace quorix::tools {

void CCatalogueWriter::begin() {
  if (catalogue_.is_json) output().add('[');
}

void CCatalogueWriter::end() {
  if (catalogue_.is_json) output().add("\n]\n");
}

void CCatalogueWriter::begin_sequence(const OutputSequence& sequence) {
  check_identifier(sequence.identifier);
  set_identifier(sequence.identifier);
}

void CCatalogueWriter::check_identifier(std::string_view identifier) const {
  if (identifier.find_first_of(" \t\v\f") != std::string_view::npos) {
    refuse_identifier(identifier, catalogue_.name,
                      "it holds white space, which no genotyper has in the name of a sequence");
  }
  const std::size_t separator = identifier.find_first_of(catalogue_.separators);
  if (separator != std::string_view::npos) {
    refuse_identifier(
        identifier, catalogue_.name,
        std::string("it holds \"") + identifier[separator] + "\", which ends a field");
  }
  if (catalogue_.is_json) return;
  if (catalogue_.is_bed) return check_bed_identifier(identifier, catalogue_.name);
  if (identifier.starts_with('#')) {
    refuse_identifier(identifier, catalogue_.name,
                      "a line that begins with \"#\" is no locus there");
  }
}

void CCatalogueWriter::set_identifier(std::string_view identifier) {
  identifier_ = identifier;
  shown_identifier_ =
      catalogue_.is_json ? json_text(identifier, catalogue_.name) : std::string(identifier);
}

void CCatalogueWriter::add(const OutputSequence& sequence, const Repeat& locus) {
  if (sequence.identifier.data() != identifier_.data()) set_identifier(sequence.identifier);
  if (catalogue_.is_json) output().add(has_rows_ ? ",\n" : "\n");
  has_rows_ = true;
  std::string_view rest = catalogue_.row;
  for (std::size_t mark = 0; (mark = rest.find('%')) != std::string_view::npos;) {
    output().add(rest.substr(0, mark));
    add_field(rest[mark + 1], locus);
    rest.remove_prefix(mark + 2);
  }
  output().add(rest);
}

void CCatalogueWriter::add_field(char mark, const Repeat& locus) {
  switch (mark) {
    case 'c':
      return output().add(shown_identifier_);
    case 'b':
      return output().add_number(locus.start - 1);
    case 's':
      return output().add_number(locus.start);
    case 'e':
      return output().add_number(locus.end);
    case 'l':
      return output().add_number(locus.unit_length);
    case 'n':
      return add_quotient(output(), locus.length(), locus.unit_length);
    case 'm':
      return output().add(locus.motif);
    case 'i':
      return add_locus_id(locus);
    default:
      throw std::logic_error("a row of " + std::string(catalogue_.name) + " has an unknown mark");
  }
}

/// Place and motif, with the start as BED has it: a locus has one ID in all catalogues, so that
/// what several genotypers say of it can be joined.
void CCatalogueWriter::add_locus_id(const Repeat& locus) {
  output().add(shown_identifier_);
  output().add('-');
  output().add_number(locus.start - 1);
  output().add('-');
  output().add_number(locus.end);
  output().add('-');
  output().add(locus.motif);
}

}  // namespace quorix::tools
