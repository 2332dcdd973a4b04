#include "search/search_controller.h"

#include <algorithm>

#include "search/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// A seed is kept while it is being grown if it scores this much, and its own unit length.
constexpr std::int32_t kLeastSeedScore = 4;

void make_table_unless_there(std::unique_ptr<const CThresholdTable>& table,
                             const ThresholdRule& rule) {
  if (table == nullptr) {
    table = std::make_unique<const CThresholdTable>(rule, global_max_unit_length);
  }
}

}  // namespace

std::unique_ptr<const CThresholdTable> CSearchController::minScores_user;
std::unique_ptr<const CThresholdTable> CSearchController::minLengths_user;
std::unique_ptr<const CThresholdTable> CSearchController::minScores_intern;
std::unique_ptr<const CThresholdTable> CSearchController::minLengths_intern;
const CThresholdTable* CSearchController::minScores = nullptr;
const CThresholdTable* CSearchController::minLengths = nullptr;

CSearchController::CSearchController(std::uint64_t number, CSequence_Mol& record)
    : sequence_number(number),
      sequence_record(record),
      exact_sat_list(&sat_alloc),
      imperfect_sat_list(&sat_alloc) {
  sequence_record.sequence.c_str();  // before a pointer is taken: it may move the text

  make_table_unless_there(minScores_user,
                          {global_min_score, global_min_score_a, global_min_score_bx});
  make_table_unless_there(minLengths_user,
                          {global_min_length, global_min_length_a, global_min_length_bx});
  make_table_unless_there(minScores_intern, {kLeastSeedScore, 0, 1.0F});
  make_table_unless_there(minLengths_intern, {0, 0, 0.0F});
  use_user_thresholds();
}

int CSearchController::reset_minimum_arrays() {
  minScores_user.reset();
  minLengths_user.reset();
  minScores_intern.reset();
  minLengths_intern.reset();
  minScores = nullptr;
  minLengths = nullptr;
  return 0;
}

void CSearchController::use_user_thresholds() {
  minScores = minScores_user.get();
  minLengths = minLengths_user.get();
}

void CSearchController::use_intern_thresholds() {
  minScores = minScores_intern.get();
  minLengths = minLengths_intern.get();
}

std::uint64_t CSearchController::first_unit_length() {
  return std::max<std::uint64_t>(global_min_unit_length, 1);
}

std::uint64_t CSearchController::last_unit_length() const {
  if (text_length() == 0) return 0;
  return std::min<std::uint64_t>(global_max_unit_length, text_length() - 1);
}

CSeedFilter& CSearchController::seed_filter(SeedUse use) {
  const CFilterPlan plan(use, scoring_rules_of_settings(),
                         {*minScores, *minLengths, *minScores_user},
                         static_cast<std::int64_t>(last_unit_length()));
  if (seed_filter_ == nullptr || !(seed_filter_->plan() == plan)) {
    seed_filter_.reset();
    seed_filter_ = std::make_unique<CSeedFilter>(text_begin(), text_length(), plan);
  }
  return *seed_filter_;
}

}  // namespace quorix
