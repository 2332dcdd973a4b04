#include "reference/plain_fasta.h"

namespace quorix::reference {
namespace {

constexpr char kSkipped = ' ';
constexpr char kNotAllowed = '!';

std::string with_line_feeds(const std::string& text) {
  std::string result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] != '\r') {
      result += text[index];
      continue;
    }
    result += '\n';
    if (index + 1 < text.size() && text[index + 1] == '\n') {
      index += 1;
    }
  }
  return result;
}

bool is_white_space(char letter) {
  return std::string(" \t\n\v\f\r").find(letter) != std::string::npos;
}

/// The base that a letter stands for, `kSkipped` or `kNotAllowed`.
char base_of(char letter) {
  if (letter >= 'a' && letter <= 'z') {
    letter = static_cast<char>(letter - 'a' + 'A');
  }
  if (std::string("ACGTN").find(letter) != std::string::npos) {
    return letter;
  }
  if (letter == 'U') {
    return 'T';
  }
  if (std::string("XRYKMSWBDHV").find(letter) != std::string::npos) {
    return 'N';
  }
  if (is_white_space(letter) || letter == '-' || letter == '*') {
    return kSkipped;
  }
  return kNotAllowed;
}

/// The start of the first line that is neither blank nor a comment, less its white space.
std::size_t skip_to_first_header(const std::string& text) {
  std::size_t index = 0;
  while (true) {
    while (index < text.size() && is_white_space(text[index])) {
      index += 1;
    }
    if (index == text.size() || text[index] != '#') {
      return index;
    }
    while (index < text.size() && text[index] != '\n') {
      index += 1;
    }
  }
}

std::int64_t line_of(const std::string& text, std::size_t position) {
  std::int64_t line = 1;
  for (std::size_t index = 0; index < position; ++index) {
    if (text[index] == '\n') {
      line += 1;
    }
  }
  return line;
}

}  // namespace

FastaText read_fasta(const std::string& raw_text) {
  const std::string text = with_line_feeds(raw_text);
  FastaText result{{}, 0};
  std::size_t index = skip_to_first_header(text);
  if (index == text.size() || text[index] != '>') {
    result.error_line = line_of(text, index);
    return result;
  }
  while (index < text.size()) {
    FastaRecord record;
    for (index += 1; index < text.size() && text[index] != '\n'; ++index) {
      record.name += text[index];
    }
    index += 1;
    bool is_line_start = true;
    while (index < text.size() && !(is_line_start && text[index] == '>')) {
      const char base = base_of(text[index]);
      if (base == kNotAllowed) {
        result.error_line = line_of(text, index);
        return result;
      }
      if (base != kSkipped) {
        record.bases += base;
      }
      is_line_start = text[index] == '\n';
      index += 1;
    }
    result.records.push_back(record);
  }
  return result;
}

std::string write_fasta(const FastaRecord& record, std::int64_t width) {
  std::string text = std::string(">") + record.name.c_str() + "\n";
  const auto step = static_cast<std::size_t>(width);
  for (std::size_t begin = 0; begin < record.bases.size(); begin += step) {
    text += record.bases.substr(begin, step) + "\n";
  }
  return text;
}

}  // namespace quorix::reference
