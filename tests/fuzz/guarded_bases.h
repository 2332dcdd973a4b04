#pragma once

/// @file
/// Bases for kernels, beside pages that may not be touched.

#include <hwy/targets.h>

#include <string>

#include "support/filter/vector_targets.h"
#include "support/guarded_text.h"

namespace quorix::fuzz {

inline constexpr std::size_t kLargestText = 8192;

/// Calls `check` with the first base of a copy of `text` that ends where such a page begins, and of
/// one that begins where one ends.
template <class Check>
void at_both_guards(const std::string& text, const Check& check) {
  static testing::CGuardedText guarded(kLargestText);
  check(guarded.before_guard(text));
  check(guarded.after_guard(text));
}

/// The same with the instructions of every kind of processor, each at one of the two places; the
/// next longer text meets each at the other one. `check` is given the name of the kind as well.
template <class Check>
void on_every_processor(const std::string& text, const Check& check) {
  static testing::CGuardedText guarded(kLargestText);
  std::size_t turn = text.size();
  for (const std::int64_t target : testing::vector_targets()) {
    testing::use_vector_targets(target);
    const bool is_before = ++turn % 2 == 0;
    check(is_before ? guarded.before_guard(text) : guarded.after_guard(text),
          hwy::TargetName(target));
  }
}

}  // namespace quorix::fuzz
