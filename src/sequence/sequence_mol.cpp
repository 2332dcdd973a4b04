#include "sequence/sequence_mol.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <string_view>

namespace quorix {

namespace {

constexpr std::size_t kReservedBases = 10'000'000;
constexpr int kDna = 0;

/// What a byte of a sequence line means, besides the base that it stands for.
constexpr char kDropped = '-';
constexpr char kNotAllowed = '\0';

/// The base for every byte value, or `kDropped` or `kNotAllowed`. A table and not the C library's
/// classification, which would follow the locale.
constexpr std::array<char, 256> make_base_table() {
  std::array<char, 256> bases{};
  const auto set = [&bases](std::string_view letters, char base) {
    for (const char letter : letters) bases[static_cast<unsigned char>(letter)] = base;
  };
  set("Aa", 'A');
  set("Cc", 'C');
  set("Gg", 'G');
  set("TtUu", 'T');
  set("NnXxRrYyKkMmSsWwBbDdHhVv", 'N');
  set(" \t\n\v\f\r-*", kDropped);
  return bases;
}

constexpr std::array<char, 256> kBaseOf = make_base_table();

bool is_white_space(int character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

/// The first character that is neither white space nor part of a '#' line.
int skip_to_header(CFile& file) {
  const auto skip_white_space = [&file] {
    int character = file.getchar();
    while (!file.is_at_end() && is_white_space(character)) character = file.getchar();
    return character;
  };
  int character = skip_white_space();
  while (!file.is_at_end() && character == '#') {
    while (file.state() == CFile::kGood && file.getchar() != '\n') {
    }
    character = skip_white_space();
  }
  return character;
}

/// True if the record has one more line. The character that tells stays unread.
bool has_another_line(CFile& file) {
  const int character = file.getchar();
  file.ungetchar();
  return !file.is_at_end() && character != '>';
}

void skip_line(CFile& file) {
  while (!file.is_at_end() && file.getchar() != '\n') {
  }
}

}  // namespace

CSequence_Mol::CSequence_Mol() {
  sequence.reserve(kReservedBases);
}

void CSequence_Mol::readFastaSequence(CFile& file) {
  name.clear();
  sequence.clear();
  if (skip_to_header(file) != '>') {
    file.set_state(CFile::kEnd);
    return;
  }
  read_name(file);
  if (!file.is_at_end()) read_body(file);
}

void CSequence_Mol::read_name(CFile& file) {
  for (int character = file.getchar(); !file.is_at_end() && character != '\n';
       character = file.getchar()) {
    name += static_cast<char>(character);
  }
  // A header that the end of the file cuts off still is a record.
  if (file.is_at_end() && !name.empty()) {
    file.set_state(static_cast<std::uint8_t>(file.state() & ~CFile::kEnd));
  }
}

void CSequence_Mol::read_body(CFile& file) {
  while (has_another_line(file)) {
    if (seq_type == kDna) {
      getLineOfDNA(file);
    } else {
      std::fputs("Not implemented.\n", stdout);
      skip_line(file);
    }
    // Looking on would turn a bad last byte into a clean end of the file.
    if (file.has_format_error()) return;
  }
}

void CSequence_Mol::getLineOfDNA(CFile& file) {
  for (int character = file.getchar(); !file.is_at_end() && character != '\n';
       character = file.getchar()) {
    const char base = kBaseOf[static_cast<std::size_t>(character)];
    if (base == kNotAllowed) {
      file.set_state(CFile::kEnd);
      return;
    }
    if (base != kDropped) sequence.push_back(base);
  }
}

void CSequence_Mol::writeSequence(std::FILE* stream, int width) const {
  assert(width >= 1);
  std::fprintf(stream, ">%s\n", name.c_str());
  const auto line_length = static_cast<std::size_t>(width);
  for (std::size_t start = 0; start < sequence.size(); start += line_length) {
    std::fwrite(sequence.data() + start, 1, std::min(line_length, sequence.size() - start), stream);
    std::fputc('\n', stream);
  }
}

}  // namespace quorix
