#include "tools/page/folded_alignment.h"

#include <algorithm>
#include <iterator>

namespace quorix::tools {

namespace {

constexpr char kGap = '-';
constexpr char kMismatchedN = 'x';

}  // namespace

void fold_bases(const Repeat& repeat, std::string& bases) {
  bases = repeat.bases;
  for (std::size_t i = 0; i < repeat.aligned_unit.size(); ++i) {
    if (repeat.aligned_unit[i] == kGap) {
      bases[i] = static_cast<char>(bases[i] - 'A' + 'a');
    } else if (bases[i] == 'N' && repeat.marks[i] == ' ') {
      bases[i] = kMismatchedN;
    }
  }
}

void fold_unit(const Repeat& repeat, std::string& copies) {
  copies.clear();
  if (!repeat.motif.empty()) return;
  std::remove_copy(repeat.aligned_unit.begin(), repeat.aligned_unit.end(),
                   std::back_inserter(copies), kGap);
}

}  // namespace quorix::tools
