#pragma once

/// @file
/// What the tests of the plain engine share: settings at their defaults, repeats in words.

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "reference/plain_engine.h"
#include "settings/settings.h"

namespace quorix::reference {

/// Every test starts from the defaults and leaves them behind.
class CWithDefaultSettings : public testing::Test {
 protected:
  void SetUp() override { init_param(); }
  void TearDown() override { init_param(); }

  /// One unit length alone.
  static void search_units_of(std::uint32_t length) {
    global_min_unit_length = length;
    global_max_unit_length = length;
  }

  /// A minimum score that does not grow with the unit length.
  static void require_score(int score) {
    global_min_score = score;
    global_min_score_bx = 0.0F;
  }

  /// The smallest penalties that are allowed, under which short texts take edits.
  static void set_small_penalties() {
    global_mismatch_score = -2;
    global_indel_score = -2;
  }
};

/// "[start,end) unit [begin,end) score s", then what is not zero of "mis", "ins", "del" and "N",
/// then the edits, such as "8M".
inline std::string describe(const Repeat& repeat) {
  std::ostringstream text;
  text << "[" << repeat.start << "," << repeat.end << ") unit [" << repeat.unit_begin << ","
       << repeat.unit_end << ") score " << repeat.score;
  const std::vector<std::pair<const char*, std::int64_t>> counts = {{" mis ", repeat.mismatches},
                                                                    {" ins ", repeat.insertions},
                                                                    {" del ", repeat.deletions},
                                                                    {" N ", repeat.n_count}};
  for (const auto& [name, count] : counts) {
    if (count != 0) {
      text << name << count;
    }
  }
  for (const Edit& edit : repeat.edits) {
    text << " " << edit.position << edit.kind;
  }
  return text.str();
}

inline std::vector<std::string> describe(const std::vector<Repeat>& repeats) {
  std::vector<std::string> texts;
  for (const Repeat& repeat : repeats) {
    texts.push_back(describe(repeat));
  }
  return texts;
}

using Texts = std::vector<std::string>;

}  // namespace quorix::reference
