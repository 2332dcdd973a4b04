// Many threads search at once with settings of their own.

#include <gtest/gtest.h>
#include <quorix/quorix.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kRounds = 25;

/// Returns arrays of units of 1 to 6 bases, each after five bases of no repeat.
std::string text_of_arrays() {
  std::string text;
  for (const char* const unit : {"A", "AC", "ACG", "AACT", "ACGAT", "AACGTC"}) {
    text += "GTCAG";
    for (int i = 0; i < 9; ++i) text += unit;
  }
  return text;
}

TEST(LibraryThreads, searches_do_not_see_the_settings_of_each_other) {
  const std::string text = text_of_arrays();
  std::atomic<int> wrong_units = 0;
  std::array<std::atomic<int>, 7> found{};
  std::vector<std::thread> threads;
  for (std::uint32_t unit_length = 1; unit_length <= 6; ++unit_length) {
    threads.emplace_back([&, unit_length] {
      quorix::SearchSettings settings;
      settings.min_unit_length = settings.max_unit_length = unit_length;
      settings.mode = static_cast<quorix::SearchMode>(unit_length % 3);
      for (int round = 0; round < kRounds; ++round) {
        quorix::find_repeats(text, settings, [&](const quorix::Repeat& repeat) {
          ++found[unit_length];
          if (repeat.unit_length != unit_length) ++wrong_units;
        });
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong_units, 0);
  EXPECT_TRUE(std::all_of(found.begin() + 1, found.end(),
                          [](const auto& count) { return count >= kRounds; }));
}

}  // namespace
