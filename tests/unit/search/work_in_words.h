#pragma once

/// @file
/// Counts of work as text, to be compared as a whole: a test that fails shows all of them.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "search/search_controller.h"

namespace quorix::testing {

using NamedCounts = std::initializer_list<std::pair<const char*, std::uint64_t>>;

/// "TITLE name count, name count", of what is not zero.
inline std::string in_words(const std::string& title, const NamedCounts& counts) {
  std::string words = title;
  char before = ' ';
  for (const auto& [name, count] : counts) {
    if (count == 0) continue;
    if (before == ',') words += ',';
    words += std::string(" ") + name + " " + std::to_string(count);
    before = ',';
  }
  return words + "\n";
}

inline std::string in_words(const std::string& title, const BoundWork& work) {
  return in_words(title, {{"tables", work.tables}, {"rows", work.rows}, {"cells", work.cells}});
}

inline std::string in_words(const CLookAhead& look_ahead) {
  const LookAheadWork& work = look_ahead.work();
  const EditChoiceWork& choices = look_ahead.choice_work();
  const RunFollowerWork& runs = look_ahead.run_work();
  return in_words("look-ahead:", {{"calls", work.calls},
                                  {"all paths", work.all_paths},
                                  {"choices", choices.choices},
                                  {"explored", choices.explored},
                                  {"undecided", choices.undecided},
                                  {"wavefronts", work.wavefronts},
                                  {"states", work.states},
                                  {"windows", runs.windows},
                                  {"unwindowed runs", runs.unwindowed_runs},
                                  {"runs of N's", runs.runs_of_Ns}});
}

inline std::string in_words(const EditCacheWork& work) {
  return in_words("memo:", {{"hits", work.hits},
                            {"misses", work.misses},
                            {"stored", work.stored},
                            {"moved", work.moved}});
}

inline std::string in_words(const PathCacheWork& work) {
  return in_words("paths:", {{"hits", work.hits},
                             {"misses", work.misses},
                             {"steps", work.steps},
                             {"stored", work.stored},
                             {"forgotten", work.forgotten},
                             {"placed", work.placed}});
}

/// What the sieves and bounds have done. Cells of the group bound are left out: a row of it is
/// whole vectors.
inline std::string in_words(const SeedFilterWork& work) {
  return in_words(
             "runs:",
             {{"lags", work.lags_made}, {"words", work.runs.words}, {"runs", work.runs.runs}}) +
         in_words("lag sieve:", work.lags) +
         in_words("block sieve:", {{"pieces", work.blocks.pieces}, {"sides", work.blocks.sides}}) +
         in_words("asked:",
                  {{"groups", work.groups}, {"batches", work.batches}, {"singles", work.singles}}) +
         in_words("group bound:",
                  {{"tables", work.group_bound.tables}, {"rows", work.group_bound.rows}}) +
         in_words("batch bound:", work.batch_bound) + in_words("single bound:", work.single_bound);
}

/// The work of extensions; it does not depend on the vectors of the processor as long as the seeds
/// that are extended do not.
inline std::string extension_in_words(const CSearchController& search) {
  const SearchWork work = search.work();
  const CExtender& extender = search.extender();
  return in_words("search:", {{"seeds", work.seeds},
                              {"extended exactly", work.extensions.extended_exactly},
                              {"bounded", work.extensions.bounded},
                              {"extended over edits", work.extensions.extended_over_edits}}) +
         in_words(extender.look_ahead()) + in_words(extender.extension_cache().edits().work()) +
         in_words(extender.extension_cache().paths().work());
}

}  // namespace quorix::testing
