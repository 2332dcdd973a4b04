#pragma once

/// @file
/// The search of one sequence: what is searched, the thresholds that a repeat must reach, and the
/// repeats found.
///
/// The driver builds one controller for a record, runs one search on it, has overlapping repeats
/// removed and the rest reported, and destroys it before the next record is read. The stories of
/// the searches stand one a file beside this one:
///
/// - exact_extension.cpp, exact_search.cpp: runs of perfect copies
/// - imperfect_extension.cpp, extension_cache.h, look_ahead.cpp: extending a repeat over edits
/// - growth.cpp: what is accepted
/// - seed_filter.h and kernel/: which seeds are worth growing
/// - extend_exact_search.cpp, imperfect_search.cpp, simple_search.cpp: what is grown, and from
/// where
/// - overlap_removal.cpp, sat_list_report.cpp: what is told of it
/// - minimum_perfection.cpp: another way to tell it, which no option selects
///
/// Positions are pointers into the record's text. A `limit` bounds what may be read: to the right
/// it is one past the last base, to the left it is the position before the first one. Nothing here
/// is safe for more than one thread: thresholds and the pool of records are process-wide.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <list>
#include <memory>

#include "report/csat.h"
#include "report/packed_edits.h"
#include "search/extension/extension_cache.h"
#include "search/extension/look_ahead.h"
#include "search/filter/seed_filter.h"
#include "search/filter/single_bound.h"
#include "search/sat_container.h"
#include "search/thresholds.h"
#include "sequence/sequence_mol.h"

namespace quorix {

class CAnchorSeq;

/// What the searches of one sequence have done.
struct SearchWork {
  std::uint64_t seeds = 0;          ///< seeds left by the sieves, and not next to an N
  std::uint64_t grown_exactly = 0;  ///< candidates that were grown over perfect copies
  std::uint64_t grown = 0;          ///< candidates that were grown over edits
  std::uint64_t bounded = 0;        ///< exact repeats that were held against the score bound
};

class CSearchController {
 public:
  /// Prepares the search of `record`, number `number` of its file (from 1, for progress lines).
  /// The first controller of the process computes the threshold tables from the settings; every
  /// one makes the user's tables the active ones. The record's text becomes NUL-terminated and must
  /// not move while the controller lives. Throws: std::bad_alloc.
  CSearchController(std::uint64_t number, CSequence_Mol& record);

  /// Returns the repeats of both lists to the pool, the imperfect ones first.
  ~CSearchController() = default;
  CSearchController(const CSearchController&) = delete;
  CSearchController& operator=(const CSearchController&) = delete;

  /// Forgets the threshold tables, so that the next controller computes them from the settings of
  /// then. Gives 0. No controller may be in use.
  static int reset_minimum_arrays();

  /// Finds exact repeats: all unit lengths in ascending order, each region told once. Appends to
  /// `exact_sat_list` those that pass the active thresholds, and sorts it. Throws: std::bad_alloc.
  void exact_search_2();

  /// An older single pass over the sequence, which nothing in the program calls: at each base all
  /// unit lengths, skipping those whose region has been told. Appends to `exact_sat_list`,
  /// unsorted. Throws: std::bad_alloc.
  void exact_search();

  /// Finds exact repeats with lax thresholds, grows each over edits and keeps in
  /// `imperfect_sat_list`, sorted, those that pass the user's. Throws: std::bad_alloc.
  void search_exact_and_extend_to_imperfect_repeats();

  /// Grows a candidate from every admissible base for every unit length and keeps in
  /// `imperfect_sat_list`, sorted, those that pass. The stream is not used. Throws: std::bad_alloc.
  void complete_imperfect_search(std::FILE* stream);

  /// The scan of `complete_imperfect_search` for unit length 1. Appends to `accepted`.
  void unit_len_1_complete_imperfect_search(CAnchorSeq& anchors, std::list<Csat*>& accepted);

  /// The scan of `complete_imperfect_search` for one unit length. Appends to `accepted`.
  void one_unit_len_complete_imperfect_search(std::uint64_t unit_length, CAnchorSeq& anchors,
                                              std::list<Csat*>& accepted);

  /// A first-hit scan, which the driver does not call: the first accepted repeat at a base is
  /// reported at once and the scan goes on behind it, so that its repeats never overlap.
  void simple_imperfect_search(std::FILE* stream);

  /// Does nothing; the name is kept for callers of old.
  void imperfect_search();

  /// True if the record's unit may start a repeat: it has a base, no N, and, from two bases on, two
  /// neighbours that differ. Runs of one base are repeats of unit length 1.
  [[nodiscard]] static bool valid_starting_pattern(const Csat& sat);

  /// The same for the unit [pattern_begin, pattern_end); `next_N` is the first N at or after a
  /// position not behind `pattern_begin`, or the sequence's end.
  [[nodiscard]] static bool valid_starting_pattern(const char* pattern_begin,
                                                   const char* pattern_end, const char* next_N);

  /// Extends a repeat over matching bases, and over N's where they are neutral, +1 a match. True
  /// if it stopped at a base that does not match; false at `limit` or at a run of more N's than
  /// allowed, of which it takes none.
  static bool extend_exact_forward(Csat& sat, const char* limit);
  static bool extend_exact_backward(Csat& sat, const char* limit);

  /// Extends a repeat over matches and edits and leaves it at the best-scoring extent met.
  /// Throws: std::bad_alloc.
  void extend_imperfect_forward(Csat& sat, const char* limit);
  void extend_imperfect_backward(Csat& sat, const char* limit);

  /// The highest score that can be reached from a state within the recursion depth and the score
  /// reduction limit; changes nothing. `pos` is the next base to read (backward: one past it),
  /// `unit_pos` the unit character that it has to match, `best_score` the best score so far.
  /// Throws: std::bad_alloc.
  [[nodiscard]] int extend_imperfect_forward_leap_ahead(
      const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end,
      int score, std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score);
  [[nodiscard]] int extend_imperfect_backward_leap_ahead(
      const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end,
      int score, std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score);

  /// Drops, of two repeats of which one has no whole unit outside their overlap, the one with the
  /// lower score, the later one on a tie. REQUIRES: the list is sorted by `lessThan_sat`. Does
  /// nothing when `global_remove_mostly_hidden` is false.
  static void remove_hidden(CsatContainer& container);

  /// Writes the sequence's head, each repeat of the list and the closing line, and flushes.
  void report_SATList(std::FILE* stream, std::list<Csat*> repeats);

  /// Writes the exact repeats, each whole or broken up into parts of at least
  /// `global_perfection_minimum`. No option leads here.
  void report_exact_sat_with_minimum_perfection(std::FILE* stream);

  /// Writes every acceptable part of one exact repeat.
  void find_and_report_all_sat_with_minimum_perfection_in_previously_determined_exact_sat(
      std::FILE* stream, const Csat& sat);

  /// Finds the best part of `sat` that begins at `from`: `best` becomes the longest of those with
  /// the highest score; its `start` is null when there is none.
  static void find_one_exact_sat_with_minimum_perfection_in_previously_determined_exact_repeat(
      const Csat& sat, const char* from, Csat& best);

  /// Bytes that the edits of the repeats found take.
  [[nodiscard]] std::size_t edit_bytes() const { return edit_store_.byte_count(); }
  /// The work done since it was made, and by whom.
  [[nodiscard]] const SearchWork& work() const { return work_; }
  [[nodiscard]] const CLookAhead& look_ahead() const { return look_ahead_; }
  [[nodiscard]] const CExtensionCache& extension_cache() const { return extension_cache_; }
  [[nodiscard]] const CScoreBound& score_bound() const { return score_bound_; }
  /// The filter of the last scan. Null before the first one.
  [[nodiscard]] const CSeedFilter* last_seed_filter() const { return seed_filter_.get(); }

  /// The user's thresholds, and the lax ones for seeds that are still to be grown. Null until the
  /// first controller is built.
  static std::unique_ptr<const CThresholdTable> minScores_user;
  static std::unique_ptr<const CThresholdTable> minLengths_user;
  static std::unique_ptr<const CThresholdTable> minScores_intern;
  static std::unique_ptr<const CThresholdTable> minLengths_intern;
  /// The active thresholds: one pair of the tables above.
  static const CThresholdTable* minScores;
  static const CThresholdTable* minLengths;

  std::uint64_t sequence_number;
  CSequence_Mol& sequence_record;
  CsatContainer exact_sat_list;
  CsatContainer imperfect_sat_list;

 private:
  /// First base and one past the last.
  [[nodiscard]] const char* text_begin() const { return sequence_record.sequence.data(); }
  [[nodiscard]] const char* text_end() const { return text_begin() + text_length(); }
  [[nodiscard]] std::uint64_t text_length() const { return sequence_record.sequence.size(); }
  /// The limit of an extension to the left that may take every base.
  [[nodiscard]] const char* before_text() const { return text_begin() - 1; }

  /// The unit lengths that can find anything: a unit has a base, and a base behind it.
  [[nodiscard]] static std::uint64_t first_unit_length();
  [[nodiscard]] std::uint64_t last_unit_length() const;

  static void use_user_thresholds();
  static void use_intern_thresholds();
  [[nodiscard]] static bool passes_active_thresholds(const Csat& sat);
  [[nodiscard]] static bool passes_user_thresholds(const Csat& sat);

  /// Grows an exact candidate to both sides and tests it.
  [[nodiscard]] bool grow_exact_and_test(Csat& sat);
  /// False only if the repeat cannot grow over edits into one of the minimum score.
  [[nodiscard]] bool may_grow(const Csat& sat);
  /// Grows a candidate over edits, to the left up to `left_limit`, and tests it. The edits of an
  /// accepted one are sorted, and stand in the one block in which all edits are gathered.
  [[nodiscard]] bool grow_and_test(Csat& sat, const char* left_limit);
  /// Packs the edits of a candidate that was just accepted. The next one gathers its edits in the
  /// same block, so that no record keeps one that is as large as its edits once were.
  void pack_edits(Csat& sat);

  /// See search/scan/seed_scan.h.
  template <class Visit>
  void for_each_seed(std::uint64_t unit_length, const CAnchorSeq& anchors, SeedUse use,
                     const Visit& visit);
  template <class Visit>
  void for_each_base(SeedUse use, const Visit& visit);

  /// The filter of seeds for `use` under the active thresholds. Throws: std::bad_alloc.
  CSeedFilter& seed_filter(SeedUse use);

  /// `exact_search_2`, with seeds for `use`.
  void search_exact(SeedUse use);
  void search_exact_mononucleotides(SeedUse use);
  void search_exact_unit_length(std::uint64_t unit_length, CAnchorSeq& coverage, SeedUse use);

  /// The shortest unit of a first-hit scan that is accepted at `position`. True if there is one.
  [[nodiscard]] bool find_first_hit(const char* position, const char* left_limit,
                                    CSpareRecord& spare);

  void report_head(std::FILE* stream) const;

  /// True if `sat` is a repeat of this text.
  [[nodiscard]] bool is_of_own_text(const Csat& sat) const;
  /// Forgets the edits and ways of growth under other settings.
  void forget_growth();

  CScoreBound score_bound_;
  CLookAhead look_ahead_;
  CEditStore edit_store_;        ///< of the repeats in the lists
  fastvector<Edit> edit_block_;  ///< lent to the candidate that is being grown
  CExtensionCache extension_cache_;
  std::unique_ptr<CSeedFilter> seed_filter_;  ///< null until the first scan
  SearchWork work_;
};

}  // namespace quorix
