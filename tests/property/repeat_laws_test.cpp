// Laws of the repeats that a search finds.

#include <algorithm>

#include "property/generators.h"
#include "search/search_controller.h"
#include "support/engine_comparison.h"
#include "support/test_record.h"

namespace quorix::testing {
namespace {

/// Counts of one kind in an edit list.
std::int64_t count_kind(const Csat& repeat, char kind) {
  const fastvector<Edit> edits = repeat.edits();
  return std::count_if(edits.begin(), edits.end(),
                       [kind](const Edit& edit) { return edit.kind == kind; });
}

/// Runs the search of the settings over `bases` and calls `check` with each repeat that is left
/// after the overlap removal.
template <class Check>
void for_each_repeat(const std::string& bases, const Check& check) {
  static CSequence_Mol record;
  set_record(record, "laws", bases);
  CSearchController controller(1, record);
  CsatContainer* found = &controller.imperfect_sat_list;
  if (global_search_mode == kSearchExact) {
    controller.exact_search_2();
    found = &controller.exact_sat_list;
  } else if (global_search_mode == kSearchExtendExact) {
    controller.search_exact_and_extend_to_imperfect_repeats();
  } else {
    controller.complete_imperfect_search(nullptr);
  }
  CSearchController::remove_hidden(*found);
  RC_ASSERT(std::is_sorted(found->sat_list.begin(), found->sat_list.end(), lessThan_sat));
  const char* const text = record.sequence.data();
  for (const Csat* const repeat : found->sat_list) check(*repeat, text, text + bases.size());
}

RC_GTEST_PROP(RepeatLaws, a_repeat_lies_in_its_record_and_reaches_the_thresholds, ()) {
  silence_standard_error();
  apply_any_options();
  for_each_repeat(*bases_generator(), [](const Csat& repeat, const char* begin, const char* end) {
    RC_ASSERT(begin <= repeat.start && repeat.start < repeat.end && repeat.end <= end);
    RC_ASSERT(begin <= repeat.unit_begin && repeat.unit_end <= end);
    const std::int64_t unit_length = repeat.unit_length();
    RC_ASSERT(repeat.score >= (*CSearchController::minScores_user)[unit_length]);
    RC_ASSERT(repeat.normalized_length() >= (*CSearchController::minLengths_user)[unit_length]);
  });
}

RC_GTEST_PROP(RepeatLaws, a_repeat_neither_begins_nor_ends_with_an_n, ()) {
  silence_standard_error();
  apply_any_options();
  for_each_repeat(*bases_generator(), [](const Csat& repeat, const char*, const char*) {
    RC_ASSERT(*repeat.start != 'N');
    RC_ASSERT(repeat.end[-1] != 'N');
  });
}

RC_GTEST_PROP(RepeatLaws, score_and_counts_follow_from_the_edits, ()) {
  silence_standard_error();
  apply_any_options();
  for_each_repeat(*bases_generator(), [](const Csat& repeat, const char*, const char*) {
    RC_ASSERT(repeat.mismatches == count_kind(repeat, 'M'));
    RC_ASSERT(repeat.insertions == count_kind(repeat, 'I'));
    RC_ASSERT(repeat.deletions == count_kind(repeat, 'D'));
    const std::int64_t matches =
        (repeat.end - repeat.start) - repeat.mismatches - repeat.insertions - repeat.n_count;
    RC_ASSERT(repeat.score == matches - repeat.unit_length() +
                                  repeat.mismatches * global_mismatch_score +
                                  (repeat.insertions + repeat.deletions) * global_indel_score);
  });
}

RC_GTEST_PROP(RepeatLaws, edits_are_sorted_and_lie_inside_the_repeat, ()) {
  silence_standard_error();
  apply_any_options();
  for_each_repeat(*bases_generator(), [](const Csat& repeat, const char*, const char*) {
    const fastvector<Edit> edits = repeat.edits();
    RC_ASSERT(std::is_sorted(edits.begin(), edits.end(), Csat::lessThan_missense()));
    for (const Edit& edit : edits) {
      RC_ASSERT(repeat.start <= edit.position && edit.position < repeat.end);
    }
  });
}

RC_GTEST_PROP(RepeatLaws, bases_without_an_edit_match_the_unit_or_are_n, ()) {
  silence_standard_error();
  apply_any_options();
  for_each_repeat(*bases_generator(), [](const Csat& repeat, const char*, const char*) {
    const fastvector<Edit> edits = repeat.edits();
    const Edit* edit = edits.begin();
    std::int64_t phase = repeat.unit_pos_left - repeat.unit_begin;  // one before the first base
    for (const char* base = repeat.start; base != repeat.end;) {
      const char unit_character = repeat.unit_begin[(phase + 1) % repeat.unit_length()];
      if (edit != edits.end() && edit->position == base) {
        if (edit->kind == 'M') RC_ASSERT(*base != unit_character);
        if (edit->kind != 'D') ++base;
        if (edit->kind != 'I') ++phase;
        ++edit;
        continue;
      }
      RC_ASSERT(*base == unit_character || *base == 'N');
      ++base;
      ++phase;
    }
    RC_ASSERT(edit == edits.end());
  });
}

}  // namespace
}  // namespace quorix::testing
