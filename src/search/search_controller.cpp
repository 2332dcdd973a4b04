// Nearly every member forwards to the part that does the work. Two things are decided here: which
// text is searched, and which thresholds are active.
//
// The threshold tables depend on the settings alone, so they are computed once and outlive the
// controllers. A search for exact repeats that are to be extended has tables of its own, with
// thresholds so low that edits can still make up for what a repeat lacks.

#include "search/search_controller.h"

#include "report/sequence_block.h"
#include "search/extension/direction.h"
#include "search/extension/exact_extension.h"
#include "search/modes/exact_search.h"
#include "search/modes/extend_exact_search.h"
#include "search/modes/imperfect_search.h"
#include "search/modes/library_members.h"
#include "search/modes/minimum_perfection.h"
#include "search/modes/overlap_removal.h"
#include "search/rules/score.h"
#include "settings/settings.h"

namespace quorix {

namespace {

/// An exact repeat waits to be extended if it scores this much, and its own unit length.
constexpr std::int32_t kMinSeedScore = 4;

/// Computes `table` if no earlier controller has.
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
      imperfect_sat_list(&sat_alloc),
      text_(text_of(record)),
      extender_(text_),
      scan_(text_, {number, record.name}) {
  prepare_thresholds();
}

void CSearchController::prepare_thresholds() {
  make_table_unless_there(minScores_user,
                          {global_min_score, global_min_score_a, global_min_score_bx});
  make_table_unless_there(minLengths_user,
                          {global_min_length, global_min_length_a, global_min_length_bx});
  make_table_unless_there(minScores_intern, {kMinSeedScore, 0, 1.0F});
  make_table_unless_there(minLengths_intern, {0, 0, 0.0F});
  use_user_thresholds();
}

SearchedText CSearchController::text_of(CSequence_Mol& record) {
  record.sequence.c_str();  // before a pointer is taken: it may move the text
  const char* const begin = record.sequence.data();
  return {begin, begin + record.sequence.size()};
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

SearchContext CSearchController::search_context() {
  return {text_,
          unit_range_of(text_.length()),
          active_thresholds(),
          {minScores_user.get(), minLengths_user.get()},
          extender_,
          scan_};
}

void CSearchController::exact_search_2() {
  search_exact_repeats(search_context(), SeedUse::kExtendExactly, exact_sat_list.sat_list);
}

void CSearchController::exact_search() {
  search_exact_repeats_in_one_pass(search_context(), exact_sat_list.sat_list);
}

void CSearchController::search_exact_and_extend_to_imperfect_repeats() {
  use_user_thresholds();
  extend_exact_repeats(search_context(), {minScores_intern.get(), minLengths_intern.get()},
                       exact_sat_list.sat_list, imperfect_sat_list.sat_list);
}

void CSearchController::complete_imperfect_search(std::FILE* /*stream*/) {
  search_imperfect_repeats(search_context(), imperfect_sat_list.sat_list);
}

CsatContainer& CSearchController::search_in_mode_of_settings(std::FILE* stream) {
  switch (global_search_mode) {
    case kSearchExact:
      exact_search_2();
      return exact_sat_list;
    case kSearchExtendExact:
      search_exact_and_extend_to_imperfect_repeats();
      return imperfect_sat_list;
    default:
      complete_imperfect_search(stream);
      return imperfect_sat_list;
  }
}

void CSearchController::unit_len_1_complete_imperfect_search(CAnchorSeq& anchors,
                                                             std::list<Csat*>& accepted) {
  const SearchContext context = search_context();
  scan_for_imperfect_mononucleotides(context, context.filter_for(SeedUse::kExtendOverEdits),
                                     anchors, accepted);
}

void CSearchController::one_unit_len_complete_imperfect_search(std::uint64_t unit_length,
                                                               CAnchorSeq& anchors,
                                                               std::list<Csat*>& accepted) {
  const SearchContext context = search_context();
  scan_for_imperfect_repeats(context, context.filter_for(SeedUse::kExtendOverEdits), unit_length,
                             anchors, accepted);
}

void CSearchController::simple_imperfect_search(std::FILE* stream) {
  report_first_hits(search_context(), sequence_record, stream, imperfect_sat_list.sat_list);
}

void CSearchController::imperfect_search() {}

bool CSearchController::valid_starting_pattern(const Csat& sat) {
  return quorix::valid_starting_pattern(sat);
}

bool CSearchController::valid_starting_pattern(const char* pattern_begin, const char* pattern_end,
                                               const char* next_N) {
  return quorix::valid_starting_pattern(pattern_begin, pattern_end, next_N);
}

bool CSearchController::extend_exact_forward(Csat& sat, const char* limit) {
  return quorix::extend_exact_forward(sat, limit);
}

bool CSearchController::extend_exact_backward(Csat& sat, const char* limit) {
  return quorix::extend_exact_backward(sat, limit);
}

void CSearchController::extend_imperfect_forward(Csat& sat, const char* limit) {
  extender_.extend_imperfect_forward(sat, limit);
}

void CSearchController::extend_imperfect_backward(Csat& sat, const char* limit) {
  extender_.extend_imperfect_backward(sat, limit);
}

int CSearchController::extend_imperfect_forward_leap_ahead(
    const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end, int score,
    std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score) {
  return saturated_score(extender_.look_ahead().highest_score<Rightward>(
      {pos, unit_pos, score, best_score, level}, {unit_begin, unit_end, unit_length, limit}));
}

int CSearchController::extend_imperfect_backward_leap_ahead(
    const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end, int score,
    std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score) {
  return saturated_score(extender_.look_ahead().highest_score<Leftward>(
      {pos, unit_pos, score, best_score, level}, {unit_begin, unit_end, unit_length, limit}));
}

void CSearchController::remove_hidden(CsatContainer& container) {
  quorix::remove_hidden(container);
}

void CSearchController::report_SATList(std::FILE* stream, std::list<Csat*> repeats) {
  report_sequence_head(stream, sequence_record);
  for (const Csat* const repeat : repeats) repeat->report_sat(stream, sequence_record);
  report_sequence_foot(stream, sequence_record);
}

void CSearchController::report_exact_sat_with_minimum_perfection(std::FILE* stream) {
  report_exact_repeats_by_perfection(stream, exact_sat_list.sat_list, active_thresholds(),
                                     sequence_record);
}

void CSearchController::
    find_and_report_all_sat_with_minimum_perfection_in_previously_determined_exact_sat(
        std::FILE* stream, const Csat& sat) {
  report_parts_of_minimum_perfection(stream, sat, active_thresholds(), sequence_record);
}

void CSearchController::
    find_one_exact_sat_with_minimum_perfection_in_previously_determined_exact_repeat(
        const Csat& sat, const char* from, Csat& best) {
  find_part_of_minimum_perfection(sat, from, best);
}

}  // namespace quorix
