// The marks that a scan of a segment sees are those of a scan of the whole text.

#include "tools/search/mark_window.h"

#include <gtest/gtest.h>

#include "support/random_dna.h"

namespace quorix::testing {
namespace {

/// A repeat of [start, end) with edits at a few of its bases.
Csat draw_repeat(RandomEngine& engine, const std::string& text, std::size_t start,
                 std::size_t end) {
  Csat repeat;
  repeat.init_from_unit(text.data() + start, text.data() + end);
  for (std::size_t i = start; i < end; ++i) {
    if (draw_chance(engine, 15)) repeat.missense.push_back({text.data() + i, 'M'});
  }
  return repeat;
}

void expect_same_seeds(const CAnchorSeq& plain, const tools::CMarkWindow& window, const char* base,
                       std::uint64_t unit_length) {
  ASSERT_EQ(window.may_seed(base, unit_length), plain.may_seed(base, unit_length));
  // The window may know of fewer neighbours, but of none that is closed.
  ASSERT_EQ(window.may_seed_from(base, unit_length) & ~plain.may_seed_from(base, unit_length), 0U);
}

/// Scans [first, end) with a window and, beside it, with marks that are closed at once.
void run_scan(RandomEngine& engine, const std::string& text, CAnchorSeq& all, std::size_t first,
              std::size_t end, std::uint64_t unit_length) {
  CAnchorSeq plain(text.data(), text.size());
  std::copy(all.mark_buffer.begin(), all.mark_buffer.end(), plain.mark_buffer.begin());
  static tools::CMarkWindow window;  // used again and again, as by a thread
  const std::size_t seed_end = std::min(end, text.size() - unit_length);
  window.begin(all, text.data() + seed_end, unit_length);
  for (std::size_t p = first; p < seed_end; ++p) {
    const char* const base = text.data() + p;
    ASSERT_NO_FATAL_FAILURE(expect_same_seeds(plain, window, base, unit_length)) << p;
    if (!draw_chance(engine, 10)) continue;
    const std::size_t reach = draw_chance(engine, 20) ? text.size() : unit_length + 12;
    const Csat repeat =
        draw_repeat(engine, text, p - draw_between(engine, 0, std::min<std::size_t>(p, reach)),
                    std::min(p + unit_length + draw_between(engine, 0, reach), text.size()));
    plain.close_repeat(repeat);
    window.close_repeat(repeat, base);
  }
}

TEST(MarkWindow, lets_the_seeds_be_tried_that_the_whole_text_lets) {
  RandomEngine engine(1);
  for (int round = 0; round < 3000; ++round) {
    const std::string text(draw_between(engine, 10, 200), 'A');
    CAnchorSeq all(text.data(), text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (draw_chance(engine, 30)) all.marks[i] = kClosedMark;
    }
    const std::size_t first = draw_between(engine, 0, text.size() - 1);
    const std::size_t end = draw_between(engine, first + 1, text.size());
    ASSERT_NO_FATAL_FAILURE(run_scan(engine, text, all, first, end, draw_between(engine, 1, 9)))
        << "round " << round;
  }
}

}  // namespace
}  // namespace quorix::testing
