#pragma once

/// @file
/// The search of one sequence: what is searched, the thresholds that a repeat must reach, and the
/// repeats found.
///
/// The driver builds one controller for a record, runs one search on it, has overlapping repeats
/// removed and the rest reported, and destroys it before the next record is read. The controller
/// only holds the parts together and forwards to them. Where to read on:
///
/// - modes/: exact_search.h, extend_exact_search.h and imperfect_search.h are the modes of the
///   program, overlap_removal.h drops what others overlap; library_members.h and
///   minimum_perfection.h are for callers of the library alone
/// - scan/: seed_scan.h iterates over the seeds of one unit length, anchor_seq.h holds the bases
///   that are still open
/// - extension/: extender.h extends a seed and tests it; exact_extension.h extends over perfect
///   copies, imperfect_extension.h over edits, which look_ahead.h chooses
/// - filter/: filter_plan.h says which sieve and bounds drop seeds that cannot become a repeat
/// - rules/: score.h, thresholds.h and unit_range.h
///
/// Members in another spelling than the rest keep the names by which callers know them.
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
#include "search/extension/extender.h"
#include "search/extension/searched_text.h"
#include "search/modes/sat_container.h"
#include "search/modes/search_context.h"
#include "search/rules/thresholds.h"
#include "search/scan/seed_scan.h"
#include "sequence/sequence_mol.h"

namespace quorix {

class CAnchorSeq;

/// What the searches of one sequence have done.
struct SearchWork {
  std::uint64_t seeds = 0;  ///< seeds that the sieves left and whose unit holds no N
  ExtenderWork extensions;
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

  /// Computes the threshold tables from the settings, unless they are there, and makes the user's
  /// the active ones, as every constructor does. Throws: std::bad_alloc.
  static void prepare_thresholds();

  /// Forgets the threshold tables, so that the next controller computes them from the settings at
  /// that time. Returns 0. No controller may be in use.
  static int reset_minimum_arrays();

  // The modes of the program.

  /// Finds exact repeats: all unit lengths in ascending order, each region once. Appends to
  /// `exact_sat_list` those that pass the active thresholds, and sorts it. Throws: std::bad_alloc.
  /// See modes/exact_search.h.
  void exact_search_2();

  /// Finds exact repeats with lax thresholds, extends each over edits and keeps in
  /// `imperfect_sat_list`, sorted, those that pass the user's, which are the active ones
  /// afterwards. Throws: std::bad_alloc. See modes/extend_exact_search.h.
  void search_exact_and_extend_to_imperfect_repeats();

  /// Extends a seed from every admissible base for every unit length and keeps in
  /// `imperfect_sat_list`, sorted, those that pass. The stream is not used. Throws: std::bad_alloc.
  /// See modes/imperfect_search.h, also for the two scans that follow.
  void complete_imperfect_search(std::FILE* stream);

  /// The scan of `complete_imperfect_search` for unit length 1. Appends to `accepted`.
  void unit_len_1_complete_imperfect_search(CAnchorSeq& anchors, std::list<Csat*>& accepted);

  /// The scan of `complete_imperfect_search` for one unit length. Appends to `accepted`.
  void one_unit_len_complete_imperfect_search(std::uint64_t unit_length, CAnchorSeq& anchors,
                                              std::list<Csat*>& accepted);

  /// Runs the one of them that the settings ask for. Returns the list that it fills; the stream is
  /// that of `complete_imperfect_search`. Throws: std::bad_alloc.
  CsatContainer& search_in_mode_of_settings(std::FILE* stream);

  // Searches for callers of the library: no option of the program leads here.

  /// An older single pass over the sequence: at each base all unit lengths, skipping those whose
  /// region has been found. Appends to `exact_sat_list`, unsorted. Throws: std::bad_alloc.
  /// See modes/library_members.h.
  void exact_search();

  /// A first-hit scan: the first accepted repeat at a base is written to `stream` at once and the
  /// scan goes on after it, so that its repeats never overlap. Throws: std::bad_alloc.
  /// See modes/library_members.h.
  void simple_imperfect_search(std::FILE* stream);

  /// Does nothing; the name is kept for existing callers.
  void imperfect_search();

  // Extension of one repeat.

  /// See extension/exact_extension.h.
  [[nodiscard]] static bool valid_starting_pattern(const Csat& sat);
  [[nodiscard]] static bool valid_starting_pattern(const char* pattern_begin,
                                                   const char* pattern_end, const char* next_N);
  static bool extend_exact_forward(Csat& sat, const char* limit);
  static bool extend_exact_backward(Csat& sat, const char* limit);

  /// Extends a repeat over matches and edits and leaves it at the best-scoring extent met.
  /// Throws: std::bad_alloc. See extension/extender.h and imperfect_extension.h.
  void extend_imperfect_forward(Csat& sat, const char* limit);
  void extend_imperfect_backward(Csat& sat, const char* limit);

  /// The highest score that can be reached from a state within the recursion depth and the score
  /// reduction limit; changes nothing. `pos` is the next base to read (backward: one past it),
  /// `unit_pos` the unit character that it has to match, `best_score` the best score so far,
  /// `level` the number of edits made so far. Throws: std::bad_alloc. See extension/look_ahead.h.
  [[nodiscard]] int extend_imperfect_forward_leap_ahead(
      const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end,
      int score, std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score);
  [[nodiscard]] int extend_imperfect_backward_leap_ahead(
      const char* pos, const char* unit_pos, const char* unit_begin, const char* unit_end,
      int score, std::int64_t unit_length, std::uint8_t level, const char* limit, int best_score);

  // What is done with the repeats found.

  /// Drops repeats that others mostly overlap. See modes/overlap_removal.h.
  static void remove_hidden(CsatContainer& container);

  /// Writes the sequence's head, each repeat of the list and the closing line, and flushes.
  /// See report/sequence_block.h and `Csat::report_sat`.
  void report_SATList(std::FILE* stream, std::list<Csat*> repeats);

  /// Writes the exact repeats, each whole or broken up into parts of at least
  /// `global_perfection_minimum`. No option leads here, nor to the two that follow; see
  /// modes/minimum_perfection.h.
  void report_exact_sat_with_minimum_perfection(std::FILE* stream);
  void find_and_report_all_sat_with_minimum_perfection_in_previously_determined_exact_sat(
      std::FILE* stream, const Csat& sat);
  static void find_one_exact_sat_with_minimum_perfection_in_previously_determined_exact_repeat(
      const Csat& sat, const char* from, Csat& best);

  // What the search has done so far, for tests and measurements.

  /// Bytes that the edits of the repeats found take.
  [[nodiscard]] std::size_t edit_bytes() const { return extender_.edit_bytes(); }
  /// The work done since construction.
  [[nodiscard]] SearchWork work() const { return {scan_.seed_count(), extender_.work()}; }
  [[nodiscard]] const CExtender& extender() const { return extender_; }
  /// The filter of the last search. Null before the first one.
  [[nodiscard]] const CSeedFilter* last_seed_filter() const { return scan_.last_filter(); }

  /// The user's thresholds, and the lax ones for exact repeats that are still to be extended. Null
  /// until the first controller is built.
  static std::unique_ptr<const CThresholdTable> minScores_user;
  static std::unique_ptr<const CThresholdTable> minLengths_user;
  static std::unique_ptr<const CThresholdTable> minScores_intern;
  static std::unique_ptr<const CThresholdTable> minLengths_intern;
  /// The active thresholds: one pair of the tables above.
  static const CThresholdTable* minScores;
  static const CThresholdTable* minLengths;

  std::uint64_t sequence_number;     ///< in its file, from 1
  CSequence_Mol& sequence_record;    ///< the record searched, which is not owned
  CsatContainer exact_sat_list;      ///< filled by the exact searches
  CsatContainer imperfect_sat_list;  ///< filled by the searches over edits

 private:
  /// The bases of `record`, which stay where they are from now on.
  [[nodiscard]] static SearchedText text_of(CSequence_Mol& record);

  static void use_user_thresholds();
  [[nodiscard]] static Thresholds active_thresholds() { return {minScores, minLengths}; }
  /// A search under the current settings and the active thresholds.
  [[nodiscard]] SearchContext search_context();

  SearchedText text_;   ///< the bases of `sequence_record`
  CExtender extender_;  ///< the caches and the edits of the repeats found
  CSeedScan scan_;      ///< iterates over the seeds; owns the filter
};

}  // namespace quorix
