// quorix_generate: FASTA for the benchmarks, from a seed or from a file, on standard output.
//
//   quorix_generate random BASES RECORDS SEED           records of random bases
//   quorix_generate gap FLANK GAP SEED                  a run of N's between random flanks
//   quorix_generate array UNIT COPIES PERCENT SEED      copies of a random unit, diverged
//   quorix_generate microsatellites BASES SEED          arrays of short units in random DNA
//   quorix_generate pure UNIT BASES                     perfect copies of the unit in letters
//   quorix_generate slice FILE BASES                    the first BASES bases in a row without an N
//
// The same arguments give the same bytes everywhere.

#include <cstddef>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "macro/generated_fasta.h"

namespace {

using quorix::bench::CRandomBases;
using quorix::bench::write_record;

using Words = std::vector<std::string>;

std::size_t number(const std::string& word) {
  std::size_t read = 0;
  const unsigned long long value = std::stoull(word, &read);
  if (read != word.size()) throw std::invalid_argument(word);
  return value;
}

void write_random(const Words& words) {
  CRandomBases random(number(words.at(2)));
  const std::size_t length = number(words.at(0));
  const std::size_t records = number(words.at(1));
  for (std::size_t i = 1; i <= records; ++i) {
    write_record("random " + std::to_string(i), random.bases(length));
  }
}

void write_gap(const Words& words) {
  CRandomBases random(number(words.at(2)));
  const std::size_t flank = number(words.at(0));
  const std::string left = random.bases(flank);
  write_record("gap", left + std::string(number(words.at(1)), 'N') + random.bases(flank));
}

void write_array(const Words& words) {
  CRandomBases random(number(words.at(3)));
  const std::string unit = random.bases(number(words.at(0)));
  write_record("array", random.array(unit, unit.size() * number(words.at(1)), number(words.at(2))));
}

/// Writes arrays of 20 to 2000 bases, of units of 1 to 6 bases, up to 10 % diverged. They alternate
/// with as much random DNA.
void write_microsatellites(const Words& words) {
  CRandomBases random(number(words.at(1)));
  const std::size_t length = number(words.at(0));
  std::string bases;
  while (bases.size() < length) {
    bases += random.bases(random.between(20, 2000));
    const std::string unit = random.bases(random.between(1, 6));
    const std::size_t array_length = random.between(20, 2000);
    bases += random.array(unit, array_length, random.between(0, 10));
  }
  bases.resize(length);
  write_record("microsatellites", bases);
}

void write_pure(const Words& words) {
  const std::string& unit = words.at(0);
  if (unit.empty()) throw std::invalid_argument("UNIT");
  std::string bases(number(words.at(1)), ' ');
  for (std::size_t i = 0; i < bases.size(); ++i) bases[i] = unit[i % unit.size()];
  write_record("pure " + unit, bases);
}

/// Writes the first stretch of so many bases in the file. Soft-masked letters stay as they are. A
/// stretch ends with its record, and at any letter that is no base.
void write_slice(const Words& words) {
  const std::size_t length = number(words.at(1));
  std::ifstream file(words.at(0), std::ios::binary);
  if (!file) throw std::runtime_error("cannot open " + words.at(0));
  std::string stretch;
  for (std::string line; stretch.size() < length && std::getline(file, line);) {
    if (!line.empty() && line.front() == '>') {
      stretch.clear();
      continue;
    }
    for (const char letter : line) {
      if (stretch.size() == length) break;
      if (std::string_view("ACGTacgt").find(letter) == std::string_view::npos) {
        stretch.clear();
      } else {
        stretch += letter;
      }
    }
  }
  if (stretch.size() < length) throw std::runtime_error("no such stretch in " + words.at(0));
  write_record("slice", stretch);
}

struct Kind {
  std::string_view name;
  std::size_t word_count;
  void (*write)(const Words& words);
};

constexpr Kind kKinds[] = {
    {"random", 3, write_random}, {"gap", 3, write_gap},
    {"array", 4, write_array},   {"microsatellites", 2, write_microsatellites},
    {"pure", 2, write_pure},     {"slice", 2, write_slice},
};

int generate(const Words& words) {
  for (const Kind& kind : kKinds) {
    if (words.empty() || words.front() != kind.name) continue;
    if (words.size() != kind.word_count + 1) break;
    kind.write(Words(words.begin() + 1, words.end()));
    return std::cout.flush() ? 0 : 1;
  }
  std::cerr << "usage: quorix_generate random BASES RECORDS SEED | gap FLANK GAP SEED |\n"
               "         array UNIT COPIES PERCENT SEED | microsatellites BASES SEED |\n"
               "         pure UNIT BASES | slice FILE BASES\n";
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return generate(Words(argv + 1, argv + argc));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quorix_generate: %s\n", error.what());
    return 1;
  }
}
