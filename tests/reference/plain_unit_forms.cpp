#include "reference/plain_unit_forms.h"

#include <cstring>

namespace quorix::reference {
namespace {

bool is_prime(std::size_t number) {
  if (number < 2) {
    return false;
  }
  for (std::size_t divisor = 2; divisor < number; ++divisor) {
    if (number % divisor == 0) {
      return false;
    }
  }
  return true;
}

/// True if the text is `block_count` blocks that are all equal.
bool is_made_of_equal_blocks(const std::string& text, std::size_t block_count) {
  const std::size_t block_length = text.size() / block_count;
  for (std::size_t block = 0; block + 1 < block_count; ++block) {
    const char* here = text.c_str() + block * block_length;
    if (std::strncmp(here, here + block_length, block_length) != 0) {
      return false;
    }
  }
  return true;
}

char complement_of(char letter) {
  switch (letter) {
    case 'A':
      return 'T';
    case 'T':
      return 'A';
    case 'C':
      return 'G';
    case 'G':
      return 'C';
    case 'N':
      return 'N';
    case 'R':
      return 'Y';
    case 'Y':
      return 'R';
    case 'K':
      return 'M';
    case 'M':
      return 'K';
    case 'B':
      return 'V';
    case 'V':
      return 'B';
    case 'D':
      return 'H';
    case 'H':
      return 'D';
    default:
      return '?';
  }
}

}  // namespace

LeastRotation least_rotation(const std::string& unit) {
  const std::size_t length = unit.size();
  const std::string twice = unit + unit;
  const char* best = twice.c_str();
  bool is_reducible = false;
  for (std::size_t shift = 1; shift < length; ++shift) {
    const char* rotation = twice.c_str() + shift;
    const int comparison = std::strncmp(rotation, best, length);
    if (comparison < 0) {
      best = rotation;
    } else if (comparison == 0) {
      is_reducible = true;
    }
  }
  return {std::string(best, length), is_reducible};
}

ReverseComplement reverse_complement(const std::string& text) {
  ReverseComplement result{"", 0};
  for (std::size_t after = text.size(); after > 0; --after) {
    const char complement = complement_of(text[after - 1]);
    result.text += complement;
    if (complement == '?') {
      result.unknown_count += 1;
    }
  }
  return result;
}

bool is_reducible_unit(const std::string& unit) {
  for (std::size_t factor = 2; factor < unit.size(); ++factor) {
    if (unit.size() % factor == 0 && is_prime(factor) && is_made_of_equal_blocks(unit, factor)) {
      return true;
    }
  }
  return false;
}

}  // namespace quorix::reference
