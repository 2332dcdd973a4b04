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

/// Two searches side by side, of the same bases in two places.
class CTwoSearches {
 public:
  explicit CTwoSearches(const AttackCase& attack)
      : attack_(attack),
        own_(record_of("own", attack.text)),
        other_(record_of("other", "A")),
        caching_(1, own_),
        fresh_(1, other_) {}

  /// Extends the seed of `unit_length` at base p, 0-based, by both. Returns nothing, or how they
  /// differ.
  std::string compare(std::uint64_t p, std::uint64_t unit_length, CachedExtensionWork& work) {
    const char* const own = own_.sequence.data();
    const char* const text = attack_.text.data();
    cached_.init_from_unit(own + p, own + p + unit_length);
    if (!CSearchController::valid_starting_pattern(cached_)) return "";
    plain_.init_from_unit(text + p, text + p + unit_length);
    extend(caching_, cached_, own, attack_.text.size());
    extend(fresh_, plain_, text, attack_.text.size());
    ++work.extensions;
    const std::string with_cache = in_words(cached_, own);
    const std::string without = in_words(plain_, text);
    if (with_cache == without) return "";
    return "unit length " + std::to_string(unit_length) + " with the cache " + with_cache +
           "\nwithout " + without + "\nOptions of the case: " + attack_.option_text() +
           "\n>case\n" + attack_.text;
  }

  [[nodiscard]] std::uint64_t edits_found() const {
    return caching_.extender().extension_cache().edits().work().hits;
  }

 private:
  static CSequence_Mol record_of(const char* name, const std::string& bases) {
    CSequence_Mol record;
    set_record(record, name, bases);
    return record;
  }

  const AttackCase& attack_;
  CSequence_Mol own_;
  CSequence_Mol other_;
  CSearchController caching_;
  CSearchController fresh_;
  Csat cached_;
  Csat plain_;
};

}  // namespace

std::string compare_cached_extensions(const AttackCase& attack,
                                      const std::vector<std::uint64_t>& unit_lengths,
                                      CachedExtensionWork& work) {
  CTwoSearches searches(attack);
  for (const std::uint64_t unit_length : unit_lengths) {
    if (unit_length == 0) continue;
    for (std::uint64_t p = attack.first_seed;
         p < attack.seed_end && p + unit_length < attack.text.size(); ++p) {
      std::string fault = searches.compare(p, unit_length, work);
      if (!fault.empty()) return fault;
    }
  }
  work.edits_found += searches.edits_found();
  return "";
}

}  // namespace quorix::testing
