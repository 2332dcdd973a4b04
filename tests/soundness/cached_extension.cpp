#include "soundness/cached_extension.h"

#include <algorithm>
#include <cstddef>

#include "report/csat.h"
#include "search/search_controller.h"
#include "support/test_record.h"
#include "unit/search/searched_sequence.h"

namespace quorix::testing {

namespace {

void extend(CSearchController& search, Csat& seed, const char* text, std::size_t length) {
  search.extend_imperfect_forward(seed, text + length);
  search.extend_imperfect_backward(seed, text - 1);
}

}  // namespace

std::string compare_cached_extensions(const AttackCase& attack, std::uint64_t unit_length,
                                      std::uint64_t& compared) {
  if (unit_length == 0) return "";
  CSequence_Mol record;
  set_record(record, "own", attack.text);
  CSearchController caching(1, record);
  CSequence_Mol other_record;
  set_record(other_record, "other", "A");
  CSearchController fresh(1, other_record);

  const std::size_t length = attack.text.size();
  const char* const own = record.sequence.data();
  const char* const text = attack.text.data();
  Csat cached;
  Csat plain;
  for (std::uint64_t p = attack.first_seed; p < attack.seed_end && p + unit_length < length; ++p) {
    cached.init_from_unit(own + p, own + p + unit_length);
    if (!CSearchController::valid_starting_pattern(cached)) continue;
    plain.init_from_unit(text + p, text + p + unit_length);
    extend(caching, cached, own, length);
    extend(fresh, plain, text, length);
    ++compared;
    const std::string with_cache = in_words(cached, own);
    const std::string without = in_words(plain, text);
    if (with_cache != without) {
      return "with the cache " + with_cache + "\nwithout " + without +
             "\nOptions of the case: " + attack.option_text() + "\n>case\n" + attack.text;
    }
  }
  return "";
}

}  // namespace quorix::testing
