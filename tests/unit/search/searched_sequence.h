#pragma once

/// @file
/// Sequences to search, and repeats in words.
///
/// Blocks of bases are exactly as large as they must be, so that the address sanitizer sees a read
/// beyond either end. Positions in words are 0-based offsets into the sequence, half-open.

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "report/csat.h"
#include "search/search_controller.h"
#include "sequence/sequence_mol.h"
#include "settings/settings.h"
#include "support/default_settings.h"

namespace quorix::testing {

using Words = std::vector<std::string>;

/// Bases in a block of exactly their size: no terminator follows.
class CBases {
 public:
  explicit CBases(std::string_view bases) : bases_(bases.begin(), bases.end()) {}

  [[nodiscard]] const char* at(std::size_t offset) const { return bases_.data() + offset; }
  [[nodiscard]] const char* begin() const { return bases_.data(); }
  [[nodiscard]] const char* end() const { return bases_.data() + bases_.size(); }
  /// The limit of an extension to the left that may take every base.
  [[nodiscard]] const char* before() const { return bases_.data() - 1; }

  /// One unit copy at `offset`.
  [[nodiscard]] Csat unit_copy(std::size_t offset, std::size_t unit_length) const {
    Csat sat;
    sat.init_from_unit(at(offset), at(offset + unit_length));
    return sat;
  }

 private:
  std::vector<char> bases_;
};

/// "[start,end) UNIT@its offset score s", then what is not zero of "mis", "ins", "del" and "N",
/// then the edits in the order of their list, such as "8M".
inline std::string in_words(const Csat& sat, const char* origin) {
  const auto offset = [&](const char* position) { return std::to_string(position - origin); };
  std::string words = "[" + offset(sat.start) + "," + offset(sat.end) + ") " +
                      std::string(sat.unit_begin, sat.unit_end) + "@" + offset(sat.unit_begin) +
                      " score " + std::to_string(sat.score);
  for (const auto& [name, count] : {std::pair<const char*, std::int64_t>("mis", sat.mismatches),
                                    {"ins", sat.insertions},
                                    {"del", sat.deletions},
                                    {"N", sat.n_count}}) {
    if (count != 0) words += std::string(" ") + name + " " + std::to_string(count);
  }
  for (const Edit& edit : sat.edits()) words += " " + offset(edit.position) + edit.kind;
  return words;
}

/// A record and the controller that searches it. The settings are to be made before.
class CSearchedSequence {
 public:
  explicit CSearchedSequence(std::string_view bases, std::string_view name = "seq",
                             std::uint64_t number = 1)
      : search(number, filled(record, name, bases)) {}

  [[nodiscard]] const char* at(std::size_t offset) const { return record.sequence.data() + offset; }
  [[nodiscard]] const char* end() const { return at(record.sequence.size()); }

  [[nodiscard]] Words in_words(const std::list<Csat*>& repeats) const {
    Words words;
    for (const Csat* const repeat : repeats) words.push_back(testing::in_words(*repeat, at(0)));
    return words;
  }
  [[nodiscard]] Words exact() const { return in_words(search.exact_sat_list.sat_list); }
  [[nodiscard]] Words imperfect() const { return in_words(search.imperfect_sat_list.sat_list); }

  CSequence_Mol record;
  CSearchController search;

 private:
  /// The bases with room for a terminator and for nothing else.
  static CSequence_Mol& filled(CSequence_Mol& record, std::string_view name,
                               std::string_view bases) {
    faststring block;
    block.reserve(bases.size());
    for (const char base : bases) block.push_back(base);
    record.sequence = std::move(block);
    record.name = name;
    return record;
  }
};

/// What exact_search_2 finds.
inline Words exact_repeats_of(std::string_view bases) {
  CSearchedSequence sequence(bases);
  sequence.search.exact_search_2();
  return sequence.exact();
}

/// What complete_imperfect_search finds.
inline Words imperfect_repeats_of(std::string_view bases) {
  CSearchedSequence sequence(bases);
  sequence.search.complete_imperfect_search(nullptr);
  return sequence.imperfect();
}

/// A repeat of the first `unit_length` bases, extended to the right over the whole text.
inline std::string extended_right(std::string_view text, std::size_t unit_length) {
  const CBases bases(text);
  CSearchedSequence any("A");
  Csat sat = bases.unit_copy(0, unit_length);
  any.search.extend_imperfect_forward(sat, bases.end());
  return in_words(sat, bases.begin());
}

/// A repeat of the last `unit_length` bases, extended to the left over the whole text.
inline std::string extended_left(std::string_view text, std::size_t unit_length) {
  const CBases bases(text);
  CSearchedSequence any("A");
  Csat sat = bases.unit_copy(text.size() - unit_length, unit_length);
  any.search.extend_imperfect_backward(sat, bases.before());
  return in_words(sat, bases.begin());
}

inline std::string repeated(std::string_view part, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += part;
  return text;
}

/// Default settings, and short ways to the ones that the tests vary most.
class CSearchSettings : public CDefaultSettings {
 protected:
  static void search_units_from_to(std::uint32_t shortest, std::uint32_t longest) {
    global_min_unit_length = shortest;
    global_max_unit_length = longest;
  }

  static void search_units_of(std::uint32_t unit_length) {
    search_units_from_to(unit_length, unit_length);
  }

  /// A minimum score that does not depend on the unit length.
  static void require_score(int score) {
    global_min_score = score;
    global_min_score_bx = 0.0F;
  }

  /// A minimum length that does not depend on the unit length.
  static void require_length(int length) { global_min_length = length; }

  static void set_penalties(int mismatch, int indel) {
    global_mismatch_score = mismatch;
    global_indel_score = indel;
  }

  /// No edit keeps the score above the best one, so extensions are exact.
  static void allow_no_edits() { global_maximum_scorereduction = 0; }
};

}  // namespace quorix::testing
