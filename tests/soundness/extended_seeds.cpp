#include "soundness/extended_seeds.h"

#include "report/csat.h"
#include "search/search_controller.h"
#include "support/test_record.h"

namespace quorix::testing {

namespace {

/// Removes the N's at the ends, as a search does before it tests a repeat.
Reach reach_of(Csat& repeat, const char* text) {
  repeat.remove_Ns_at_ends();
  return {repeat.score, repeat.normalized_length(), static_cast<std::uint64_t>(repeat.start - text),
          static_cast<std::uint64_t>(repeat.end - text)};
}

}  // namespace

std::vector<ExtendedSeed> extend_all_seeds(const AttackCase& attack, std::uint64_t unit_length) {
  // Caches serve the controller's own record alone, so seeds of another text meet none.
  CSequence_Mol other_record;
  set_record(other_record, "other", "A");
  CSearchController search(1, other_record);

  const char* const text = attack.text.data();
  const char* const end = text + attack.text.size();
  std::vector<ExtendedSeed> extended;
  Csat seed;
  for (std::uint64_t p = attack.first_seed;
       p < attack.seed_end && p + unit_length < attack.text.size(); ++p) {
    seed.init_from_unit(text + p, text + p + unit_length);
    if (!CSearchController::valid_starting_pattern(seed)) continue;
    ExtendedSeed& one = extended.emplace_back();
    one.start = p;
    search.extend_imperfect_forward(seed, end);
    search.extend_imperfect_backward(seed, text - 1);
    one.edited = reach_of(seed, text);

    seed.init_from_unit(text + p, text + p + unit_length);
    CSearchController::extend_exact_forward(seed, end);
    CSearchController::extend_exact_backward(seed, text - 1);
    one.exact = reach_of(seed, text);
    search.extend_imperfect_forward(seed, end);
    search.extend_imperfect_backward(seed, text - 1);
    one.edited_from_run = reach_of(seed, text);
  }
  return extended;
}

}  // namespace quorix::testing
