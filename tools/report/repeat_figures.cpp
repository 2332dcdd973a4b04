#include "tools/report/repeat_figures.h"

#include <charconv>

namespace quorix::tools {

double copies_of(const Repeat& repeat) {
  return static_cast<double>(repeat.normalized_length) / static_cast<double>(repeat.unit_length);
}

double perfection_of(const Repeat& repeat) {
  double value = 0;
  const char* const end = repeat.perfection.data() + repeat.perfection.size();
  std::from_chars(repeat.perfection.data(), end, value);
  return value;
}

}  // namespace quorix::tools
