#include "tools/plain_summary.h"

#include <algorithm>
#include <cmath>

namespace quorix::testing {

namespace {

char complement_of(char base) {
  switch (base) {
    case 'A':
      return 'T';
    case 'C':
      return 'G';
    case 'G':
      return 'C';
    case 'T':
      return 'A';
    default:
      return base;
  }
}

}  // namespace

std::string least_form(const std::string& unit) {
  std::string complement;
  for (const char base : unit) complement.insert(complement.begin(), complement_of(base));
  std::string least = unit;
  for (const std::string& strand : {unit, complement}) {
    for (std::size_t i = 0; i < strand.size(); ++i) {
      least = std::min(least, strand.substr(i) + strand.substr(0, i));
    }
  }
  return least;
}

void CPlainSummary::add(const std::string& record, const OwnedRepeat& repeat) {
  const tools::Repeat& figures = repeat.figures;
  for (PlainGroup* const group : {&records[record], &unit_lengths[figures.unit_length],
                                  &units[least_form(repeat.unit)], &total}) {
    ++group->repeats;
    for (std::int64_t position = figures.start; position <= figures.end; ++position) {
      group->bases.emplace(record, position);
    }
    group->copies += static_cast<long double>(figures.normalized_length) /
                     static_cast<long double>(figures.unit_length);
    const long double perfection = std::stold(repeat.perfection);
    if (!std::isfinite(perfection)) continue;
    group->perfection += perfection;
    ++group->perfections;
  }
}

}  // namespace quorix::testing
