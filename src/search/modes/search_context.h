#pragma once

/// @file
/// What every search mode works with.

#include <cstdint>

#include "search/extension/extender.h"
#include "search/extension/searched_text.h"
#include "search/filter/filter_plan.h"
#include "search/rules/score.h"
#include "search/rules/thresholds.h"
#include "search/rules/unit_range.h"
#include "search/scan/seed_scan.h"

namespace quorix {

/// One search: the text, the rules, and the parts that do the work. Owns nothing.
struct SearchContext {
  SearchedText text;           ///< what is searched
  UnitRange units;             ///< the unit lengths that are tried
  Thresholds thresholds;       ///< of repeats that the search finds
  Thresholds user_thresholds;  ///< of repeats that are reported
  CExtender& extender;         ///< extends seeds and tests the result
  CSeedScan& scan;             ///< iterates over seeds

  /// The filter of seeds for `use`, under these thresholds and the rules of the settings. Valid
  /// until a filter for another use is asked for. Throws: std::bad_alloc.
  [[nodiscard]] CSeedFilter& filter_for(SeedUse use) const {
    return scan.filter_by(
        {use,
         scoring_rules_of_settings(),
         {*thresholds.min_scores, *thresholds.min_lengths, *user_thresholds.min_scores},
         static_cast<std::int64_t>(units.last),
         std::int64_t{global_Ns_allowed_in_a_row}});
  }
};

}  // namespace quorix
