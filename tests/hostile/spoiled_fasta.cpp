#include "hostile/spoiled_fasta.h"

#include <algorithm>
#include <cctype>

#include "hostile/input_rows.h"
#include "support/gzip_text.h"

namespace quorix::testing {

namespace {

using std::string_literals::operator""s;

constexpr std::size_t kReadBufferSize = 1'000'000;

template <class Choices>
const auto& draw_one(RandomEngine& engine, const Choices& choices) {
  return choices[draw_between(engine, 0, std::size(choices) - 1)];
}

/// A place in the text, its end included.
std::size_t draw_place(RandomEngine& engine, const std::string& text) {
  return draw_between(engine, 0, text.size());
}

/// Puts other letters for some of the bases: small ones, U, ambiguous ones, gaps.
void vary_letters(RandomEngine& engine, std::string& bases) {
  const bool is_lower = draw_chance(engine, 20);
  const bool is_rna = draw_chance(engine, 10);
  const bool is_gapped = draw_chance(engine, 20);
  std::string varied;
  for (const char base : bases) {
    char letter = is_rna && base == 'T' ? 'U' : base;
    if (base == 'N') letter = draw_one(engine, "NRYKMSWBDHVX"s);
    varied += is_lower ? static_cast<char>(std::tolower(letter)) : letter;
    if (is_gapped && draw_chance(engine, 5)) varied += draw_one(engine, "-* \t"s);
  }
  bases = varied;
}

std::string draw_record_text(RandomEngine& engine, const std::string& line_end) {
  static const std::vector<std::string> kNames = {
      "", "a", "chr1 a description", "100%s", "\"quoted\"", "\303\251", "a\tb", ">>", "n\0m"s};
  std::string bases = draw_record(engine, draw_chance(engine, 90) ? 200 : 900, 6);
  vary_letters(engine, bases);
  std::string text = ">" + draw_one(engine, kNames) + line_end;
  const std::size_t line_length = draw_one(engine, std::vector<std::size_t>{1, 7, 60, 80, 5000});
  for (std::size_t start = 0; start < bases.size(); start += line_length) {
    text += bases.substr(start, line_length) + line_end;
  }
  return text;
}

void flip_bits(RandomEngine& engine, std::string& text) {
  for (std::size_t i = draw_between(engine, 1, 4); i > 0 && !text.empty(); --i) {
    char& byte = text[draw_between(engine, 0, text.size() - 1)];
    byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << draw_between(engine, 0, 7)));
  }
}

/// A byte that some rule of the format is about, or any.
char draw_byte(RandomEngine& engine) {
  static const std::string kTelling = "\n\n\r\r>>##\0\t \v\f-*NnAaUuEz019;@+\"%\177\200\377"s;
  if (draw_chance(engine, 70)) return draw_one(engine, kTelling);
  return static_cast<char>(draw_between(engine, 0, 255));
}

void replace_bytes(RandomEngine& engine, std::string& text) {
  for (std::size_t i = draw_between(engine, 1, 3); i > 0 && !text.empty(); --i) {
    text[draw_between(engine, 0, text.size() - 1)] = draw_byte(engine);
  }
}

void put_in_bytes(RandomEngine& engine, std::string& text) {
  std::string bytes;
  for (std::size_t i = draw_between(engine, 1, 4); i > 0; --i) bytes += draw_byte(engine);
  text.insert(draw_place(engine, text), bytes);
}

void cut_out(RandomEngine& engine, std::string& text) {
  text.erase(draw_place(engine, text), draw_between(engine, 1, 100));
}

void cut_off(RandomEngine& engine, std::string& text) {
  const std::size_t place = draw_place(engine, text);
  text = draw_chance(engine, 70) ? text.substr(0, place) : text.substr(place);
}

void double_piece(RandomEngine& engine, std::string& text) {
  const std::string piece = text.substr(draw_place(engine, text), draw_between(engine, 1, 300));
  text.insert(draw_place(engine, text), piece);
}

void swap_halves(RandomEngine& engine, std::string& text) {
  const auto place = static_cast<std::ptrdiff_t>(draw_place(engine, text));
  std::rotate(text.begin(), text.begin() + place, text.end());
}

void splice(RandomEngine& engine, std::string& text) {
  static const InputRows kForeign = foreign_file_rows();
  const std::string other =
      draw_chance(engine, 60) ? draw_fasta(engine) : draw_one(engine, kForeign).bytes;
  text = text.substr(0, draw_place(engine, text)) + other.substr(draw_place(engine, other));
}

/// Fills up so that some byte of the text is the first of a second buffer.
void move_to_buffer_end(RandomEngine& engine, std::string& text) {
  const std::size_t place = draw_place(engine, text);
  const char filling = draw_one(engine, "-n\n "s);
  text.insert(draw_between(engine, 0, place), kReadBufferSize - place, filling);
}

}  // namespace

std::string draw_fasta(RandomEngine& engine) {
  static const std::vector<std::string> kLineEnds = {"\n", "\n", "\r\n", "\r"};
  const std::string& line_end = draw_one(engine, kLineEnds);
  std::string text;
  if (draw_chance(engine, 15)) text += "# a comment" + line_end;
  if (draw_chance(engine, 15)) text += line_end;
  for (std::size_t i = draw_between(engine, 1, 4); i > 0; --i) {
    text += draw_record_text(engine, line_end);
    if (draw_chance(engine, 10)) text += line_end;
  }
  if (draw_chance(engine, 20)) text.resize(text.size() - line_end.size());
  return text;
}

std::string spoil(RandomEngine& engine, std::string text) {
  using Accident = void (*)(RandomEngine&, std::string&);
  static constexpr Accident kAccidents[] = {flip_bits, replace_bytes, put_in_bytes, cut_out,
                                            cut_off,   double_piece,  swap_halves,  splice};
  std::size_t count = draw_chance(engine, 60) ? 1 : draw_between(engine, 2, 6);
  for (; count > 0; --count) draw_one(engine, kAccidents)(engine, text);
  if (draw_chance(engine, 1)) move_to_buffer_end(engine, text);
  // What begins as gzip is not read as it stands.
  if (text.starts_with("\037\213")) text.insert(0, "\n");
  return text;
}

std::string compress(RandomEngine& engine, std::string_view text) {
  if (draw_chance(engine, 30)) return bgzf(text, draw_between(engine, 50, 500));
  const std::size_t first_length = draw_between(engine, 0, text.size());
  return gzip_member(text.substr(0, first_length)) + stored_member(text.substr(first_length));
}

}  // namespace quorix::testing
