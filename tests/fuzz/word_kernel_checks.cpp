// The kernels that work on words of 64 bits, with no vectors.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/guarded_bases.h"
#include "fuzz/harness.h"
#include "fuzz/kernel_checks.h"
#include "search/bits/base_planes.h"
#include "search/bits/bit_set.h"
#include "search/bits/match_run.h"
#include "search/bits/match_window.h"
#include "search/filter/run_sieve.h"
#include "sequence/base_letters.h"
#include "support/filter/plain_match_rows.h"
#include "support/filter/plain_matches.h"
#include "support/filter/plain_run_sieve.h"

namespace quorix::fuzz {

namespace {

constexpr std::size_t kMaxTextBases = 300;

std::size_t first_of(const std::vector<bool>& bits, std::size_t position, bool value) {
  while (position < bits.size() && bits[position] != value) ++position;
  return position;
}

void expect_equal_bits(const CBitSet& bits, const std::vector<bool>& twin, const char* what) {
  bool is_equal = bits.size() == twin.size();
  for (std::size_t i = 0; is_equal && i < twin.size(); ++i) is_equal = bits.test(i) == twin[i];
  for (std::size_t i = twin.size(); is_equal && i < bits.words().size() * 64; ++i) {
    is_equal = !bits.test(i);
  }
  expect(is_equal, [&] { return std::string("other bits than the twin's: ") + what; });
}

/// What can be asked at one position.
void expect_equal_answers(const CBitSet& bits, const std::vector<bool>& twin, std::size_t at) {
  const std::size_t clear = first_of(twin, at, false);
  std::uint64_t window = 0;
  for (std::size_t i = 0; i < 64 && at + i < twin.size(); ++i) {
    window |= std::uint64_t{twin[at + i]} << i;
  }
  int down = 0;
  for (std::size_t i = at + 1; at < twin.size() && i > 0 && twin[i - 1] && down < 64; --i) ++down;
  const bool is_equal =
      bits.find_set(at) == first_of(twin, at, true) && bits.find_clear(at) == clear &&
      bits.bits_from(at) == window &&
      bits.ones_from(at) == static_cast<int>(std::min<std::size_t>(clear - at, 64)) &&
      (at == twin.size() || bits.ones_down_from(at) == down);
  expect(is_equal, [&] { return "another answer than the twin's at bit " + std::to_string(at); });
}

/// The text with up to two letters that differ in one bit.
std::string changed_copy(CFuzzInput& input, std::string text) {
  for (int count = static_cast<int>(input.take_between(0, 2)); count > 0 && !text.empty();
       --count) {
    const std::size_t place = input.take_byte() % text.size();
    text[place] = static_cast<char>(text[place] ^ (1 << input.take_between(0, 6)));
  }
  return text;
}

}  // namespace

void check_match_runs(CFuzzInput& input) {
  CFuzzInput changes = input;  // the same bytes choose the changes, too
  const std::uint8_t less = input.take_byte();
  const std::string left = input.take_bases(kMaxTextBases);
  const std::size_t skipped = left.empty() ? 0 : less % left.size();
  const std::size_t count = left.size() - skipped;
  const auto max_count = static_cast<std::int64_t>(count);
  const std::string right = changed_copy(changes, left);
  const auto compare = [&](std::int64_t answer, std::int64_t expected, const char* kernel) {
    expect(answer == expected, [&] {
      return std::string(kernel) + " returns " + std::to_string(answer) + " of " + left + " and " +
             right + ", at most " + std::to_string(max_count);
    });
  };
  // Stretches of `max_count` bases that begin, and that end, where both texts do.
  const std::string left_begin = left.substr(0, count);
  const std::string left_end = left.substr(skipped);
  const std::string right_begin = right.substr(0, count);
  const std::string right_end = right.substr(skipped);

  static testing::CGuardedText other(kLargestText);
  for (const bool is_before : {true, false}) {
    const char* const there = is_before ? other.before_guard(right) : other.after_guard(right);
    at_both_guards(left, [&](const char* here) {
      compare(common_prefix(here, there, max_count),
              testing::plain_prefix(left_begin, right_begin, max_count), "common_prefix");
      compare(common_prefix(here + skipped, there + skipped, max_count),
              testing::plain_prefix(left_end, right_end, max_count), "common_prefix");
      compare(common_suffix(here + count, there + count, max_count),
              testing::plain_suffix(left_begin, right_begin, max_count), "common_suffix");
      compare(common_suffix(here + left.size(), there + right.size(), max_count),
              testing::plain_suffix(left_end, right_end, max_count), "common_suffix");
    });
  }
}

void check_copied_bases(CFuzzInput& input) {
  const std::string letters = input.take_text(kMaxTextBases);
  std::string expected;
  for (const char letter : letters) {
    const char base = base_of(static_cast<unsigned char>(letter));
    if (base == kDroppedLetter || base == kNoLetter) break;
    expected += base;
  }
  static testing::CGuardedText copies(kLargestText);
  at_both_guards(letters, [&](const char* source) {
    for (const bool is_before : {true, false}) {
      const std::string blank(letters.size(), ' ');
      char* const copy = is_before ? copies.before_guard(blank) : copies.after_guard(blank);
      const std::size_t count = copy_bases(source, letters.size(), copy);
      expect(std::string(copy, count) == expected, [&] {
        return "copy_bases returns " + std::string(copy, count) + " of " + quoted(letters);
      });
    }
  });
}

void check_bit_set(CFuzzInput& input) {
  CBitSet bits;
  std::vector<bool> twin;
  while (input.remaining() > 0) {
    const auto position = [&] { return twin.empty() ? 0 : input.take_word() % twin.size(); };
    switch (input.take_byte() % 4) {
      case 0: {
        const std::size_t size = input.take_word() % 300;
        bits.reset(size);
        twin.assign(size, false);
        break;
      }
      case 1:
        if (twin.empty()) break;
        {
          const std::size_t at = position();
          bits.set(at);
          twin[at] = true;
        }
        break;
      default: {
        std::size_t first = position();
        std::size_t last = position();
        if (first > last) std::swap(first, last);
        bits.set_range(first, last);
        std::fill(twin.begin() + static_cast<std::ptrdiff_t>(first),
                  twin.begin() + static_cast<std::ptrdiff_t>(last), true);
      }
    }
    expect_equal_bits(bits, twin, "bit set");
    const std::size_t step = 1 + twin.size() / 16;
    for (std::size_t at = input.remaining() % step; at <= twin.size(); at += step) {
      expect_equal_answers(bits, twin, at);
    }
  }
}

void check_base_planes(CFuzzInput& input) {
  const bool is_N_wild = input.take_flag();
  const std::size_t first_lag = 1 + input.take_word() % 400;
  const std::size_t near_first = input.take_word();
  const std::size_t near_length = input.take_byte();
  const std::string text = input.take_bases(kMaxTextBases);
  at_both_guards(text, [&](const char* bases) {
    const CBasePlanes planes(bases, text.size());
    CBitSet matches(777);
    matches.set_range(0, 777);  // what was there before does not matter
    for (std::size_t lag = first_lag; lag < first_lag + 3; ++lag) {
      planes.find_matches(lag, is_N_wild, matches);
      std::vector<bool> twin(text.size());
      for (std::size_t x = 0; x < text.size(); ++x) {
        twin[x] = testing::plain_match(text, x, lag, is_N_wild);
      }
      expect_equal_bits(matches, twin, "matches of a lag");
    }
    std::vector<bool> Ns(text.size());
    for (std::size_t x = 0; x < text.size(); ++x) Ns[x] = text[x] == 'N';
    expect_equal_bits(planes.bits_of_Ns(), Ns, "N's");

    const std::size_t first = near_first % (text.size() + 1);
    const std::size_t last = std::min(first + near_length, text.size());
    const std::size_t near_begin = first < 64 ? 0 : first - 64;
    const bool has_near = text.substr(near_begin, last + 64 - near_begin).find('N') < text.size();
    const bool has_any = text.find('N') != std::string::npos;
    const bool answer = planes.has_N_near(first, last);
    expect(answer || !has_near, [&] { return "an N is overlooked in " + text; });
    expect(has_any || !answer, [&] { return "an N is seen in " + text; });
  });
}

void check_match_window(CFuzzInput& input) {
  const std::int64_t wish = input.take_byte();
  const std::string unit = input.take_bases(1 + input.take_byte() % 70);
  const std::string text = input.take_bases(kMaxTextBases);
  if (unit.empty()) return;
  const std::int64_t phase = wish % static_cast<std::int64_t>(unit.size());
  static testing::CGuardedText units(kLargestText);
  for (const bool is_before : {true, false}) {
    const char* const characters = is_before ? units.before_guard(unit) : units.after_guard(unit);
    at_both_guards(text, [&](const char* bases) {
      const auto expect_none = [&](const std::string& fault, const char* direction) {
        expect(fault.empty(), [&] {
          return std::string(direction) + " of " + text + " against " + unit + " from " +
                 std::to_string(phase) + " on: " + fault;
        });
      };
      expect_none(testing::fault_of_match_window<Rightward>(bases, text, characters, unit, phase),
                  "right");
      expect_none(testing::fault_of_match_window<Leftward>(bases, text, characters, unit, phase),
                  "left");
    });
  }
}

void check_run_sieve(CFuzzInput& input) {
  const bool is_N_wild = input.take_flag();
  const std::int64_t unit_length = input.take_between(1, 70);
  RunRule rule{unit_length, input.take_between(1, 140), 0, 0};
  rule.sure_run = rule.min_run + input.take_byte();
  rule.min_two_runs = input.take_between(1, 200);
  const std::string text = input.take_bases(kMaxTextBases);
  const auto lag = static_cast<std::uint64_t>(unit_length);
  if (text.size() <= lag) return;
  const testing::CPlainText twin(text, is_N_wild);
  at_both_guards(text, [&](const char* bases) {
    const CBasePlanes planes(bases, text.size());
    CNeighbourLags lags(planes, is_N_wild);
    lags.move_to(lag, true);
    CBitSet seeds;
    seeds.reset_to_set(text.size() - lag);
    sift_by_runs(lags, rule, {0, text.size()}, seeds);
    std::vector<bool> expected(text.size() - lag);
    for (std::size_t p = 0; p < expected.size(); ++p) {
      expected[p] = testing::is_run_seed(twin, planes, rule, static_cast<std::int64_t>(p));
    }
    expect_equal_bits(seeds, expected, "seeds of runs");
  });
}

}  // namespace quorix::fuzz
