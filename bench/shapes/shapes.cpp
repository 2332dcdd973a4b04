// quorix_shapes: prints legal FASTA on which a finder of repeats may be slow.
//
//   quorix_shapes list               the names of the shapes, one a line
//   quorix_shapes make NAME BASES    one record of the shape
//
// The same arguments give the same bytes everywhere.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

#include "macro/generated_fasta.h"
#include "shapes/words.h"

namespace {

using quorix::bench::copies;
using quorix::bench::CRandomBases;
using quorix::bench::de_bruijn_word;
using quorix::bench::other_strand;
using quorix::bench::substitution_word;

constexpr std::uint64_t kSeed = 1;
constexpr std::string_view kHexamer = "AACAGT";

std::string random_unit(std::size_t length) {
  return CRandomBases(kSeed).bases(length);
}

std::string diverged(std::size_t length, std::string_view unit, std::size_t percent) {
  return CRandomBases(kSeed).array(std::string(unit), length, percent);
}

/// Returns copies of a unit with `inserted` after every `interval` bases.
std::string interrupted(std::size_t length, std::string_view unit, std::size_t interval,
                        std::string_view inserted) {
  const std::string array = copies(unit, length);
  std::string bases;
  for (std::size_t i = 0; bases.size() < length; i += interval) {
    bases += array.substr(i, interval);
    bases += inserted;
  }
  bases.resize(length);
  return bases;
}

/// Replaces the last of every `interval` bases by `base`.
std::string overwritten(std::string bases, std::size_t interval, char base) {
  for (std::size_t i = interval - 1; i < bases.size(); i += interval) bases[i] = base;
  return bases;
}

/// Does the same with a base drawn each time, never the one that is there.
std::string overwritten_at_random(std::string bases, std::size_t interval) {
  CRandomBases random(kSeed);
  for (std::size_t i = interval - 1; i < bases.size(); i += interval) {
    bases[i] = random.base_other_than(bases[i]);
  }
  return bases;
}

/// Returns adjacent arrays of `array_length` bases, each of a new random unit.
std::string array_after_array(std::size_t length, std::size_t unit_length,
                              std::size_t array_length) {
  CRandomBases random(kSeed);
  std::string bases;
  while (bases.size() < length) bases += copies(random.bases(unit_length), array_length);
  bases.resize(length);
  return bases;
}

/// Returns copies of which each differs from the one before it in one base.
std::string drifting(std::size_t length, std::size_t unit_length) {
  CRandomBases random(kSeed);
  std::string unit = random.bases(unit_length);
  std::string bases;
  while (bases.size() < length) {
    bases += unit;
    char& base = unit[random.between(0, unit_length - 1)];
    base = random.base_other_than(base);
  }
  bases.resize(length);
  return bases;
}

/// Returns arrays of `copy_count` copies whose unit is rotated by one base from array to array.
std::string creeping(std::size_t length, std::string_view unit, std::size_t copy_count) {
  std::string turned(unit);
  std::string bases;
  while (bases.size() < length) {
    bases += copies(turned, turned.size() * copy_count);
    std::rotate(turned.begin(), turned.begin() + 1, turned.end());
  }
  bases.resize(length);
  return bases;
}

/// Returns A C, AA CC, AAA CCC, ... with runs of up to `max_run` bases, over and over.
std::string growing_runs(std::size_t length, std::size_t max_run) {
  std::string bases;
  for (std::size_t run = 1; bases.size() < length; run = run % max_run + 1) {
    bases += std::string(run, 'A') + std::string(run, 'C');
  }
  bases.resize(length);
  return bases;
}

/// Returns AC AAC AAAC ...: each unit once, so that each is nearly a copy of the one before.
std::string growing_units(std::size_t length, std::size_t max_run) {
  std::string bases;
  for (std::size_t run = 1; bases.size() < length; run = run % max_run + 1) {
    bases += std::string(run, 'A') + 'C';
  }
  bases.resize(length);
  return bases;
}

/// Returns arrays of arrays: five AC's and a T are a unit, five of these and a G are a unit again,
/// and so on.
std::string nested(std::size_t length) {
  constexpr std::string_view kEnds = "TGCA";
  std::string unit = "AC";
  for (std::size_t level = 0; unit.size() < length; ++level) {
    unit = copies(unit, 5 * unit.size()) + kEnds[level % kEnds.size()];
  }
  return unit.substr(0, length);
}

/// Returns random bases, each `arm` of them followed by their other strand.
std::string hairpins(std::size_t length, std::size_t arm) {
  CRandomBases random(kSeed);
  std::string bases;
  while (bases.size() < length) {
    const std::string left = random.bases(arm);
    bases += left + other_strand(left);
  }
  bases.resize(length);
  return bases;
}

/// Returns random bases, each `arm` of them followed by the same bases backwards.
std::string mirrors(std::size_t length, std::size_t arm) {
  CRandomBases random(kSeed);
  std::string bases;
  while (bases.size() < length) {
    const std::string left = random.bases(arm);
    bases += left + std::string(left.rbegin(), left.rend());
  }
  bases.resize(length);
  return bases;
}

/// Returns random bases of `letters`; a letter that occurs twice there is twice as likely.
std::string random_of(std::size_t length, std::string_view letters) {
  CRandomBases random(kSeed);
  std::string bases(length, ' ');
  for (char& base : bases) base = letters[random.between(0, letters.size() - 1)];
  return bases;
}

constexpr std::string_view kFibonacci[4] = {"AC", "A"};
constexpr std::string_view kThueMorse[4] = {"AC", "CA"};
constexpr std::string_view kSquareFree[4] = {"ACG", "AG", "C"};
constexpr std::string_view kPeriodDoubling[4] = {"AC", "AA"};
constexpr std::string_view kTribonacci[4] = {"AC", "AG", "A"};
constexpr std::string_view kCantor[4] = {"ACA", "CCC"};

struct Shape {
  std::string_view name;
  std::string (*make)(std::size_t length);
};

constexpr Shape kShapes[] = {
    // Perfect copies.
    {"all A", [](std::size_t n) { return copies("A", n); }},
    {"AC", [](std::size_t n) { return copies("AC", n); }},
    {"AT, its own other strand", [](std::size_t n) { return copies("AT", n); }},
    {"ACG", [](std::size_t n) { return copies("ACG", n); }},
    {"AAC", [](std::size_t n) { return copies("AAC", n); }},
    {"unit of 6", [](std::size_t n) { return copies(kHexamer, n); }},
    {"unit of 7", [](std::size_t n) { return copies("AACAGTC", n); }},
    {"unit of 20", [](std::size_t n) { return copies(random_unit(20), n); }},
    {"unit of 51", [](std::size_t n) { return copies(random_unit(51), n); }},
    {"unit of 1000", [](std::size_t n) { return copies(random_unit(1000), n); }},
    {"unit a base shorter than the whole",
     [](std::size_t n) { return copies(random_unit(n - 1), n); }},
    {"unit half the whole", [](std::size_t n) { return copies(random_unit(n / 2), n); }},
    // Words.
    {"Fibonacci word", [](std::size_t n) { return substitution_word(n, "AC", kFibonacci, 'A'); }},
    {"tribonacci word",
     [](std::size_t n) { return substitution_word(n, "ACG", kTribonacci, 'A'); }},
    {"Thue-Morse word", [](std::size_t n) { return substitution_word(n, "AC", kThueMorse, 'A'); }},
    {"word without squares",
     [](std::size_t n) { return substitution_word(n, "ACG", kSquareFree, 'A'); }},
    {"period doubling word",
     [](std::size_t n) { return substitution_word(n, "AC", kPeriodDoubling, 'A'); }},
    {"Cantor word", [](std::size_t n) { return substitution_word(n, "AC", kCantor, 'A'); }},
    {"Rudin-Shapiro word", quorix::bench::rudin_shapiro_word},
    {"de Bruijn word of AC, order 8", [](std::size_t n) { return de_bruijn_word(n, "AC", 8); }},
    {"de Bruijn word of AC, order 20", [](std::size_t n) { return de_bruijn_word(n, "AC", 20); }},
    {"de Bruijn word of ACGT, order 4", [](std::size_t n) { return de_bruijn_word(n, "ACGT", 4); }},
    {"de Bruijn word of ACGT, order 10",
     [](std::size_t n) { return de_bruijn_word(n, "ACGT", 10); }},
    {"ruler word", quorix::bench::ruler_word},
    {"counting word", quorix::bench::counting_word},
    {"chirp", [](std::size_t n) { return quorix::bench::chirp_word(n, 1000); }},
    {"slow chirp", [](std::size_t n) { return quorix::bench::chirp_word(n, 100'000); }},
    // Copies with edits.
    {"all A, 2 % diverged", [](std::size_t n) { return diverged(n, "A", 2); }},
    {"all A, 10 % diverged", [](std::size_t n) { return diverged(n, "A", 10); }},
    {"all A, 30 % diverged", [](std::size_t n) { return diverged(n, "A", 30); }},
    {"AC, 2 % diverged", [](std::size_t n) { return diverged(n, "AC", 2); }},
    {"AC, 10 % diverged", [](std::size_t n) { return diverged(n, "AC", 10); }},
    {"AC, 20 % diverged", [](std::size_t n) { return diverged(n, "AC", 20); }},
    {"AC, 30 % diverged", [](std::size_t n) { return diverged(n, "AC", 30); }},
    {"unit of 6, 5 % diverged", [](std::size_t n) { return diverged(n, kHexamer, 5); }},
    {"unit of 6, 15 % diverged", [](std::size_t n) { return diverged(n, kHexamer, 15); }},
    {"unit of 6, 25 % diverged", [](std::size_t n) { return diverged(n, kHexamer, 25); }},
    {"unit of 20, 5 % diverged", [](std::size_t n) { return diverged(n, random_unit(20), 5); }},
    {"unit of 20, 15 % diverged", [](std::size_t n) { return diverged(n, random_unit(20), 15); }},
    {"unit of 50, 10 % diverged", [](std::size_t n) { return diverged(n, random_unit(50), 10); }},
    {"unit of 50, 20 % diverged", [](std::size_t n) { return diverged(n, random_unit(50), 20); }},
    {"drifting unit of 6", [](std::size_t n) { return drifting(n, 6); }},
    {"drifting unit of 20", [](std::size_t n) { return drifting(n, 20); }},
    {"all A, a C at every 7th", [](std::size_t n) { return overwritten(copies("A", n), 7, 'C'); }},
    {"all A, a C at every 8th", [](std::size_t n) { return overwritten(copies("A", n), 8, 'C'); }},
    {"all A, others at every 5th",
     [](std::size_t n) { return overwritten_at_random(copies("A", n), 5); }},
    {"all A, others at every 10th",
     [](std::size_t n) { return overwritten_at_random(copies("A", n), 10); }},
    {"all A, others at every 100th",
     [](std::size_t n) { return overwritten_at_random(copies("A", n), 100); }},
    {"AC, others at every 9th",
     [](std::size_t n) { return overwritten_at_random(copies("AC", n), 9); }},
    {"AC, an A more at every 20th", [](std::size_t n) { return interrupted(n, "AC", 20, "A"); }},
    {"AC, phase shifted at every 41st", [](std::size_t n) { return copies(copies("AC", 41), n); }},
    {"unit of 6, creeping", [](std::size_t n) { return creeping(n, kHexamer, 3); }},
    {"unit of 6, one base inserted at every 25th",
     [](std::size_t n) { return interrupted(n, kHexamer, 25, "T"); }},
    // Too few or too many copies.
    {"arrays a base too short", [](std::size_t n) { return array_after_array(n, 6, 11); }},
    {"arrays just long enough", [](std::size_t n) { return array_after_array(n, 6, 12); }},
    {"pairs of 20 bases", [](std::size_t n) { return array_after_array(n, 20, 39); }},
    {"runs of 6", [](std::size_t n) { return copies("AAAAAACCCCCCGGGGGG", n); }},
    {"runs of 7", [](std::size_t n) { return copies("AAAAAAACCCCCCCGGGGGGG", n); }},
    {"runs that grow to 50", [](std::size_t n) { return growing_runs(n, 50); }},
    {"units that grow to 50", [](std::size_t n) { return growing_units(n, 50); }},
    {"nested arrays", nested},
    {"AC and AG by turns of 20",
     [](std::size_t n) { return copies(copies("AC", 20) + copies("AG", 20), n); }},
    // N's.
    {"all N", [](std::size_t n) { return copies("N", n); }},
    {"all A, an N at every 2nd", [](std::size_t n) { return overwritten(copies("A", n), 2, 'N'); }},
    {"all A, an N at every 5th", [](std::size_t n) { return overwritten(copies("A", n), 5, 'N'); }},
    {"all A after runs of four N's", [](std::size_t n) { return copies("ANNNN", n); }},
    {"all A after runs of five N's", [](std::size_t n) { return copies("ANNNNN", n); }},
    {"AC, an N at every 3rd", [](std::size_t n) { return overwritten(copies("AC", n), 3, 'N'); }},
    {"AC, an N at every 50th", [](std::size_t n) { return overwritten(copies("AC", n), 50, 'N'); }},
    {"unit of 6, N at its border", [](std::size_t n) { return copies("AACAGN", n); }},
    {"unit of 6, N inserted at its border",
     [](std::size_t n) { return interrupted(n, kHexamer, 6, "N"); }},
    {"unit of 6, five N's inserted at 18 bases",
     [](std::size_t n) { return interrupted(n, kHexamer, 18, "NNNNN"); }},
    {"random, an N at every 2nd",
     [](std::size_t n) { return overwritten(random_of(n, "ACGT"), 2, 'N'); }},
    {"random, an N at every 7th",
     [](std::size_t n) { return overwritten(random_of(n, "ACGT"), 7, 'N'); }},
    {"random, an N at every 50th",
     [](std::size_t n) { return overwritten(random_of(n, "ACGT"), 50, 'N'); }},
    // Random bases of other kinds.
    {"random A and C", [](std::size_t n) { return random_of(n, "AC"); }},
    {"random, seven A's to a C", [](std::size_t n) { return random_of(n, "AAAAAAAC"); }},
    {"random, three A's to each other", [](std::size_t n) { return random_of(n, "AAACGT"); }},
    {"hairpins of 10", [](std::size_t n) { return hairpins(n, 10); }},
    {"one hairpin", [](std::size_t n) { return hairpins(n, n / 2); }},
    {"mirrors of 10", [](std::size_t n) { return mirrors(n, 10); }},
};

int list_shapes() {
  for (const Shape& shape : kShapes) std::cout << shape.name << '\n';
  return std::cout.flush() ? 0 : 1;
}

int make_shape(std::string_view name, const std::string& bases) {
  const auto* const shape = std::find_if(std::begin(kShapes), std::end(kShapes),
                                         [name](const Shape& one) { return one.name == name; });
  if (shape == std::end(kShapes)) throw std::invalid_argument("no such shape");
  const std::size_t length = std::stoull(bases);
  if (length < 2) throw std::invalid_argument("too few bases");
  quorix::bench::write_record(name, shape->make(length));
  return std::cout.flush() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 2 && std::string_view(argv[1]) == "list") return list_shapes();
    if (argc == 4 && std::string_view(argv[1]) == "make") return make_shape(argv[2], argv[3]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quorix_shapes: %s\n", error.what());
    return 1;
  }
  std::fputs("usage: quorix_shapes list | make NAME BASES\n", stderr);
  return 2;
}
