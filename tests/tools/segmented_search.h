#pragma once

/// @file
/// Searches of one record in segments, beside the plain search.

#include <list>
#include <string>

#include "tools/search/record_search.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {

/// A watcher that writes nothing.
class CSilentWatcher : public tools::CSearchWatcher {
 public:
  void begin_part(const char* /*line*/) override {}
  void pass(std::uint64_t /*unit_length*/) override {}
};

/// The repeats in words that a search in segments finds under the settings, on a team of
/// `thread_count`. Adds to `work` what the commits have come across.
inline Words segmented_search(const std::string& bases, std::size_t thread_count,
                              const tools::SegmentLengths& lengths, tools::CommitWork& work) {
  CSearchController::prepare_thresholds();
  tools::CThreadTeam team(thread_count);
  CSilentWatcher watcher;
  const char* const text = bases.c_str();
  tools::CRecordSearch search({text, text + bases.size()}, team, watcher, lengths);
  team.lead([&] { search.run(0); });
  work.repeats += search.work().repeats;
  work.second_scans += search.work().second_scans;
  work.dropped += search.work().dropped;
  work.found_again += search.work().found_again;
  Words words;
  for (const Csat* const repeat : search.repeats()) words.push_back(in_words(*repeat, text));
  return words;
}

/// The same of the plain search.
inline Words plain_search(const std::string& bases) {
  CSearchedSequence sequence(bases);
  CsatContainer* found = &sequence.search.imperfect_sat_list;
  if (global_search_mode == kSearchExact) {
    sequence.search.exact_search_2();
    found = &sequence.search.exact_sat_list;
  } else if (global_search_mode == kSearchExtendExact) {
    sequence.search.search_exact_and_extend_to_imperfect_repeats();
  } else {
    sequence.search.complete_imperfect_search(nullptr);
  }
  CSearchController::remove_hidden(*found);
  return sequence.in_words(found->sat_list);
}

}  // namespace quorix::testing
