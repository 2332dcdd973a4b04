#include "load/expected_repeats.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace quorix::load {

namespace {

constexpr long kEditScore = -6;

constexpr std::array<const char*, 7> kClasses = {"",
                                                 "mononucleotide",
                                                 "dinucleotide",
                                                 "trinucleotide",
                                                 "tetranucleotide",
                                                 "pentanucleotide",
                                                 "hexanucleotide"};

long count_of(const PlantedRepeat& repeat, char kind) {
  return std::count_if(repeat.edits.begin(), repeat.edits.end(),
                       [kind](const PlantedEdit& edit) { return edit.kind == kind; });
}

ExpectedRepeat expectation(const PlantedRepeat& repeat) {
  const long mismatches = count_of(repeat, 'M');
  const long insertions = count_of(repeat, 'I');
  const long deletions = count_of(repeat, 'D');
  const auto edits = static_cast<long>(repeat.edits.size());
  const auto length = static_cast<long>(repeat.bases.size());
  const auto unit_length = static_cast<long>(repeat.unit.size());
  const long normalized = length - insertions + deletions;
  const long score = length - mismatches - insertions - unit_length + kEditScore * edits;
  const double perfection =
      100.0 * static_cast<double>(normalized - edits) / static_cast<double>(normalized);

  const unsigned long long first_position = repeat.start + 1;
  const unsigned long long last_position = repeat.end();

  std::array<char, 256> line{};
  std::snprintf(line.data(), line.size(),
                "%16s %9llu : %9llu | %6ld bp | %6ld BP | %6ld pt | %7.3f %% | %3ld mis | %3ld ins "
                "| %3ld del |   0 N |  unit %s",
                kClasses.at(repeat.unit.size()), first_position, last_position, length, normalized,
                score, perfection, mismatches, insertions, deletions, repeat.unit.c_str());
  ExpectedRepeat expected{repeat.start, line.data(), "Missense: ", repeat.bases};
  for (const PlantedEdit& edit : repeat.edits) {
    expected.missense += '(';
    expected.missense += std::to_string(edit.position);
    expected.missense += {',', edit.kind, ')', ','};
  }
  return expected;
}

/// What lies between the edits of a repeat.
std::vector<PlantedRepeat> exact_parts(const PlantedRepeat& repeat) {
  std::vector<PlantedRepeat> parts;
  std::size_t begin = 0;
  const auto add_part = [&](std::size_t end) {
    parts.push_back(
        {repeat.start + begin, repeat.unit, repeat.bases.substr(begin, end - begin), {}});
  };
  for (const PlantedEdit& edit : repeat.edits) {
    add_part(edit.position - 1);
    // Where a base is missing no base stands for the edit.
    begin = edit.kind == 'D' ? edit.position - 1 : edit.position;
  }
  add_part(repeat.bases.size());
  return parts;
}

}  // namespace

std::vector<ExpectedRepeat> expected_repeats(const std::vector<PlantedRepeat>& planted,
                                             bool is_exact_search) {
  std::vector<ExpectedRepeat> expected;
  for (const PlantedRepeat& repeat : planted) {
    if (!is_exact_search) {
      expected.push_back(expectation(repeat));
      continue;
    }
    for (const PlantedRepeat& part : exact_parts(repeat)) expected.push_back(expectation(part));
  }
  return expected;
}

}  // namespace quorix::load
