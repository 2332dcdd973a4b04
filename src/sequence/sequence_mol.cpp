// Almost every byte of a FASTA file is a plain letter of a name or a base. So both are taken in
// stretches of the buffer, and only the byte at which a stretch ends goes through `getchar`, which
// knows all kinds of line ends, refills the buffer and counts lines. The two steps alternate until
// the line ends.

#include "sequence/sequence_mol.h"

#include <algorithm>
#include <cassert>
#include <string_view>

#include "sequence/base_letters.h"
#include "sequence/stream_text.h"

namespace quorix {

namespace {

constexpr std::size_t kReservedBases = 10'000'000;
constexpr std::size_t kWrittenBlockSize = 65'536;
constexpr int kDna = 0;

/// Bytes that are searched for a line end at a time. After each unusual character the search starts
/// again, so it must not scan the whole buffer.
constexpr std::size_t kStretchLength = 512;

/// Returns the buffered bytes of the line up to its line feed or CR LF; nothing at the end of the
/// buffer or the file. A lone CR may be among them.
std::string_view stretch_of_line(const CFile& file) {
  const std::string_view buffered = file.unread().substr(0, kStretchLength);
  std::string_view stretch = buffered.substr(0, buffered.find('\n'));
  if (stretch.ends_with('\r')) stretch.remove_suffix(1);
  return stretch;
}

/// Independent of the locale, unlike the C library's test.
bool is_white_space(int character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Returns the first character that is neither white space nor part of a '#' line.
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

/// Returns true if the record has another line. The character that decides stays unread.
bool has_another_line(CFile& file) {
  const std::string_view buffered = file.unread();
  if (!buffered.empty() && buffered.front() != '\r') return buffered.front() != '>';
  const int character = file.getchar();
  file.ungetchar();
  return !file.is_at_end() && character != '>';
}

/// Takes all characters up to the line feed.
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
  while (true) {
    const std::string_view stretch = stretch_of_line(file);
    const std::string_view letters = stretch.substr(0, stretch.find('\r'));
    name += letters;
    file.skip(letters.size());
    const int character = file.getchar();
    if (file.is_at_end() || character == '\n') break;
    name += static_cast<char>(character);
  }
  // A header that the end of the file cuts off is still a record.
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
    // Looking for another line would turn a bad last byte into a clean end of the file.
    if (file.has_format_error()) return;
  }
}

void CSequence_Mol::getLineOfDNA(CFile& file) {
  while (true) {
    append_buffered_bases(file);
    const int character = file.getchar();
    if (file.is_at_end() || character == '\n') return;
    const char base = base_of(character);
    if (base == kNoLetter) {
      file.set_state(CFile::kEnd);
      return;
    }
    if (base != kDroppedLetter) sequence.push_back(base);
  }
}

void CSequence_Mol::append_buffered_bases(CFile& file) {
  const std::string_view stretch = stretch_of_line(file);
  // `push_back` handles a full block, so that it grows only for a base that needs the room.
  const std::size_t count = std::min(stretch.size(), sequence.spare_room());
  const std::size_t copied = copy_bases(stretch.data(), count, sequence.spare_begin());
  sequence.commit(copied);
  file.skip(copied);
}

void CSequence_Mol::writeSequence(std::FILE* stream, int width) const {
  assert(width >= 1);
  char block[kWrittenBlockSize];
  CStreamText text(stream, block);
  text.add('>');
  text.add(name.c_str());  // a NUL in the name ends it
  text.add('\n');
  const std::string_view bases(sequence.data(), sequence.size());
  const auto line_length = static_cast<std::size_t>(width);
  for (std::size_t start = 0; start < bases.size(); start += line_length) {
    text.add(bases.substr(start, line_length));
    text.add('\n');
  }
}

}  // namespace quorix
