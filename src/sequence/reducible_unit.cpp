// A unit of n letters that repeats a block repeats a block of n / p letters for some prime p: if
// the block fits m times and p divides m, then m / p blocks in a row are a block too. So only the
// prime factors of n are tried. The table of these factors is filled by a sieve when the program is
// loaded.

#include "sequence/reducible_unit.h"

#include <cstddef>
#include <cstring>

namespace quorix {

namespace {

/// Appends each prime to the rows of its multiples, so that every row is in ascending order.
std::array<PrimeFactorRow, kMaxTabledLength + 1> make_prime_factors() {
  std::array<PrimeFactorRow, kMaxTabledLength + 1> rows{};
  std::array<std::size_t, kMaxTabledLength + 1> factor_counts{};
  for (std::size_t prime = 2; prime <= kMaxTabledLength; ++prime) {
    if (factor_counts[prime] != 0) continue;  // a smaller prime divides it
    for (std::size_t multiple = 2 * prime; multiple <= kMaxTabledLength; multiple += prime) {
      rows[multiple][factor_counts[multiple]++] = static_cast<std::int32_t>(prime);
    }
  }
  return rows;
}

/// Returns true if the `length` characters at `begin` are equal blocks of `block_length`. All
/// blocks are equal exactly if the text equals itself shifted by one block.
bool has_period(const char* begin, std::size_t length, std::size_t block_length) {
  return std::memcmp(begin, begin + block_length, length - block_length) == 0;
}

/// Applies the rule of the table to lengths beyond it.
bool is_reducible_by_division(const char* begin, std::size_t length) {
  std::size_t rest = length;
  for (std::size_t factor = 2; factor <= rest / factor; ++factor) {
    if (rest % factor != 0) continue;
    if (has_period(begin, length, length / factor)) return true;
    while (rest % factor == 0) rest /= factor;
  }
  return rest > 1 && rest < length && has_period(begin, length, length / rest);
}

}  // namespace

const std::array<PrimeFactorRow, kMaxTabledLength + 1> primeFactors = make_prime_factors();

bool isReducibleUnit_global(const char* begin, const char* end) {
  const auto length = static_cast<std::size_t>(end - begin);
  if (length > kMaxTabledLength) return is_reducible_by_division(begin, length);
  for (const std::int32_t prime : primeFactors[length]) {
    if (prime == 0) break;
    if (has_period(begin, length, length / static_cast<std::size_t>(prime))) return true;
  }
  return false;
}

}  // namespace quorix
