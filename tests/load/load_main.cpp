// quorix_load: inputs that are too large for a disk, and a check of what became of them.
//
//   quorix_load write RECORDS NAME_LENGTH BASES LINE_LENGTH SEED
//   quorix_load check exact|imperfect RECORDS NAME_LENGTH BASES LINE_LENGTH SEED REPORT MASKED
//
// The first writes FASTA to standard output, LINE_LENGTH 0 being one line for all bases. The second
// reads report and masked copy of a run on it, pipes as well as files, and prints "bases planted
// repeats most-repeats-of-a-record masked-bases", or what is wrong, with status 1.

#include <cstdint>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "load/input_plan.h"
#include "load/output_check.h"

namespace {

using Words = std::vector<std::string>;

constexpr int kUsage = 2;
constexpr std::size_t kPlanWords = 5;

std::uint64_t number(const std::string& word) {
  std::size_t read = 0;
  const unsigned long long value = std::stoull(word, &read);
  if (read != word.size()) throw std::invalid_argument(word);
  return value;
}

/// The plan in the words from `first` on.
quorix::load::InputPlan plan_of(const Words& words, std::size_t first) {
  return {number(words.at(first)), number(words.at(first + 1)), number(words.at(first + 2)),
          number(words.at(first + 3)), number(words.at(first + 4))};
}

int check(const Words& words) {
  const quorix::load::CheckedOutput checked =
      quorix::load::check_output(plan_of(words, 2), words.at(1) == "exact",
                                 words.at(kPlanWords + 2), words.at(kPlanWords + 3));
  for (const std::uint64_t figure : {checked.bases, checked.planted, checked.repeats,
                                     checked.most_repeats, checked.masked_bases}) {
    std::printf("%llu ", static_cast<unsigned long long>(figure));
  }
  std::printf("\n");
  return 0;
}

int run(const Words& words) {
  if (words.size() == kPlanWords + 1 && words.front() == "write") {
    return quorix::load::write_input(plan_of(words, 1)) ? 0 : 1;
  }
  if (words.size() == kPlanWords + 4 && words.front() == "check") return check(words);
  std::fputs(
      "usage: quorix_load write RECORDS NAME_LENGTH BASES LINE_LENGTH SEED |\n"
      "         check exact|imperfect RECORDS NAME_LENGTH BASES LINE_LENGTH SEED REPORT MASKED\n",
      stderr);
  return kUsage;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(Words(argv + 1, argv + argc));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quorix_load: %s\n", error.what());
    return 1;
  }
}
