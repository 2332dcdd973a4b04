#include "search/filter/walled_text.h"

#include <algorithm>

namespace quorix {

CWalledText::CWalledText(const char* text, const CBitSet& bits_of_Ns,
                         std::optional<std::int64_t> max_Ns_in_a_row)
    : begin_(text) {
  const std::uint64_t length = bits_of_Ns.size();
  std::uint64_t run_end = 0;
  for (std::uint64_t run = bits_of_Ns.find_set(0); run < length;
       run = bits_of_Ns.find_set(run_end)) {
    run_end = std::min(bits_of_Ns.find_clear(run), length);
    if (!max_Ns_in_a_row || run_end - run <= static_cast<std::uint64_t>(*max_Ns_in_a_row)) {
      has_Ns_ = true;
      continue;
    }
    if (copy_.empty()) copy_.assign(text, length);
    std::fill(copy_.begin() + static_cast<std::ptrdiff_t>(run),
              copy_.begin() + static_cast<std::ptrdiff_t>(run_end), kWallLetter);
  }
  if (!copy_.empty()) begin_ = copy_.data();
}

}  // namespace quorix
