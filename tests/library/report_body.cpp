// The report of the program, without its heads and the names of classes, made by the public header
// alone:
//
//   quorix_report_body MODE [NAME=VALUE]... < FASTA
//
// MODE is a code of quorix::SearchMode; NAME is the long name of an option without its hyphens.

#include <quorix/quorix.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <map>
#include <string>

namespace {

using quorix::Repeat;
using quorix::SearchSettings;

void print_repeat(const Repeat& repeat, bool is_n_mismatch) {
  const auto number = [](std::uint64_t value) { return static_cast<unsigned long long>(value); };
  std::printf("%9llu : %9llu | %6llu bp | %6llu BP | %6d pt | %7.3f %% |", number(repeat.start) + 1,
              number(repeat.end), number(repeat.end - repeat.start),
              number(repeat.normalized_length), static_cast<int>(repeat.score), repeat.perfection);
  std::printf(" %3llu mis | %3llu ins | %3llu del | ", number(repeat.mismatches),
              number(repeat.insertions), number(repeat.deletions));
  if (!is_n_mismatch) std::printf("%3llu N | ", number(repeat.n_count));
  std::printf(" unit %s\nMissense: ", repeat.unit.c_str());
  for (const quorix::RepeatEdit& edit : repeat.edits) {
    std::printf("(%llu,%c),", number(edit.position - repeat.start) + 1, edit.kind);
  }
  std::printf("\n%s\n%s\n%s\n", repeat.alignment.bases.c_str(), repeat.alignment.marks.c_str(),
              repeat.alignment.unit.c_str());
}

using Setter = void (*)(SearchSettings& settings, const std::string& value);

std::int32_t whole(const std::string& value) {
  return static_cast<std::int32_t>(std::stol(value));
}

std::uint32_t length(const std::string& value) {
  return static_cast<std::uint32_t>(std::stoul(value));
}

const std::map<std::string, Setter> kSetters{
    {"minUnitLen", [](auto& to, auto& value) { to.min_unit_length = length(value); }},
    {"maxUnitLen", [](auto& to, auto& value) { to.max_unit_length = length(value); }},
    {"minScore", [](auto& to, auto& value) { to.min_score = whole(value); }},
    {"minScore_a", [](auto& to, auto& value) { to.min_score_offset = whole(value); }},
    {"minScore_b", [](auto& to, auto& value) { to.min_score_factor = std::stof(value); }},
    {"minLength", [](auto& to, auto& value) { to.min_length = whole(value); }},
    {"minLength_a", [](auto& to, auto& value) { to.min_length_offset = whole(value); }},
    {"minLength_b", [](auto& to, auto& value) { to.min_length_factor = std::stof(value); }},
    {"mismatchScore", [](auto& to, auto& value) { to.mismatch_score = whole(value); }},
    {"indelScore", [](auto& to, auto& value) { to.indel_score = whole(value); }},
    {"recursion", [](auto& to, auto& value) { to.recursion_depth = whole(value); }},
    {"maximum_score_reduction",
     [](auto& to, auto& value) { to.max_score_reduction = whole(value); }},
    {"succN", [](auto& to, auto& value) { to.max_successive_n = whole(value); }},
    {"NsAsMissense", [](auto& to, auto&) { to.n_is_mismatch = true; }},
    {"dontRemoveMostlyOverlapping", [](auto& to, auto&) { to.removes_overlapping = false; }},
    {"NPerfectionMode",
     [](auto& to, auto& value) {
       to.n_in_perfection = static_cast<quorix::NInPerfection>(whole(value));
     }},
    {"reportUnit",
     [](auto& to, auto& value) { to.unit_form = static_cast<quorix::UnitForm>(whole(value)); }},
};

void report_record(const std::string& name, const std::string& bases,
                   const SearchSettings& settings) {
  std::printf(">%s\nsequence length: %zu\n", name.c_str(), bases.size());
  quorix::find_repeats(bases, settings, [&settings](const Repeat& repeat) {
    print_repeat(repeat, settings.n_is_mismatch);
  });
  std::printf("# Analysis of sequence \"%s\" completed.\n", name.c_str());
}

void report_input(const SearchSettings& settings) {
  std::string line;
  std::string name;
  std::string bases;
  bool has_record = false;
  while (std::getline(std::cin, line)) {
    if (line.rfind('>', 0) != 0) {
      bases += line;
      continue;
    }
    if (has_record) report_record(name, bases, settings);
    has_record = true;
    name = line.substr(1);
    bases.clear();
  }
  if (has_record) report_record(name, bases, settings);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    SearchSettings settings;
    settings.detail = quorix::Detail::kAlignment;
    settings.mode = static_cast<quorix::SearchMode>(std::stoi(argc > 1 ? argv[1] : ""));
    for (int i = 2; i < argc; ++i) {
      const std::string word = argv[i];
      kSetters.at(word.substr(0, word.find('=')))(settings, word.substr(word.find('=') + 1));
    }
    report_input(settings);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
