#pragma once

/// @file
/// What every search mode works with.

#include "search/extension/extender.h"
#include "search/extension/searched_text.h"
#include "search/rules/thresholds.h"
#include "search/rules/unit_range.h"
#include "search/scan/seed_scan.h"

namespace quorix {

/// One search: the text, the rules, and the parts that do the work. Owns nothing.
struct SearchContext {
  SearchedText text;
  UnitRange units;
  Thresholds thresholds;       ///< of repeats that the search finds
  Thresholds user_thresholds;  ///< of repeats that are reported
  CExtender& extender;
  CSeedScan& scan;

  /// Seeds for `use` under these thresholds.
  [[nodiscard]] SeedDemand demand_for(SeedUse use) const {
    return {use, {*thresholds.min_scores, *thresholds.min_lengths, *user_thresholds.min_scores}};
  }
};

}  // namespace quorix
