// One static buffer instead of strings: a number can be printed when memory has run out.

#include "console/number_text.h"

#include <cstdio>

namespace quorix {

namespace {

constexpr int kNumberSize = 50;
char number[kNumberSize];

}  // namespace

const char* number2str(int value) {
  std::snprintf(number, sizeof number, "%d", value);
  return number;
}

const char* number2str(unsigned int value) {
  std::snprintf(number, sizeof number, "%u", value);
  return number;
}

const char* number2str(double value) {
  std::snprintf(number, sizeof number, "%lg", value);
  return number;
}

const char* number2str(float value) {
  std::snprintf(number, sizeof number, "%g", static_cast<double>(value));
  return number;
}

}  // namespace quorix
