#include "report/repeat_names.h"

#include <cstdio>

namespace quorix {

const char* get_repeat_name(std::int64_t unit_length) {
  constexpr int kNameSize = 40;  // any 64-bit number fits
  static char name[kNameSize];

  if (unit_length < static_cast<std::int64_t>(REPEAT_NAMES.size())) {
    return REPEAT_NAMES[static_cast<std::size_t>(unit_length)];
  }
  std::snprintf(name, sizeof name, "%lld-nucleotide", static_cast<long long>(unit_length));
  return name;
}

}  // namespace quorix
