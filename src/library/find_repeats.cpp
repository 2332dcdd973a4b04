// The library beside the program: a text in, repeats out.
//
// The engine reads process-wide settings, and keeps its threshold tables and its spare records for
// the process. So a search takes a lock, sets all settings from the struct it was given, and leaves
// the engine without tables and records. What repeats point into lives until the last callback has
// returned, and so the lock is held until then.

#include <quorix/quorix.h>

#include <cmath>
#include <cstddef>
#include <mutex>
#include <string>
#include <utility>

#include "report/alignment.h"
#include "report/csat.h"
#include "report/sat_pool.h"
#include "report/unit_form.h"
#include "search/search_controller.h"
#include "sequence/base_letters.h"
#include "sequence/dna_string.h"
#include "sequence/sequence_mol.h"
#include "settings/settings.h"
#include "settings/settings_rules.h"

namespace quorix {

namespace {

constexpr int kMaxModeCode = 2;

std::mutex engine_mutex;
thread_local bool is_in_search = false;

/// The engine for one thread, without traces of the search before.
class CEngineUse {
 public:
  CEngineUse() : lock_(engine_mutex, std::defer_lock) {
    // The lock would never come: this thread has it.
    if (is_in_search) throw std::logic_error("A callback of a search must not search.");
    lock_.lock();
    is_in_search = true;
  }
  ~CEngineUse() {
    CSearchController::reset_minimum_arrays();
    free_spare_records();
    is_in_search = false;
  }
  CEngineUse(const CEngineUse&) = delete;
  CEngineUse& operator=(const CEngineUse&) = delete;

 private:
  /// A program of its own ends soon; one that uses the library may want its memory back.
  static void free_spare_records() {
    static constexpr char kAnyUnit = 'A';
    while (!sat_alloc.spare_records().empty()) {
      delete sat_alloc.acquire(&kAnyUnit, &kAnyUnit + 1);
    }
  }

  std::unique_lock<std::mutex> lock_;
};

/// Stores the code of a mode. Throws: SettingsError if no mode has it.
template <class Mode>
void store_mode(int& setting, Mode mode, const char* option) {
  const int code = static_cast<int>(mode);
  if (code < 0 || code > kMaxModeCode) {
    throw SettingsError("An option value of " + std::to_string(code) + " for the " + option +
                        " option is unknown.");
  }
  setting = code;
}

void store_settings(const SearchSettings& settings) {
  init_param();
  store_mode(global_search_mode, settings.mode, "searchMode");
  store_mode(global_N_and_perfection_mode, settings.n_in_perfection, "NPerfectionMode");
  store_mode(global_report_unit_mode, settings.unit_form, "reportUnit");
  global_min_unit_length = settings.min_unit_length;
  global_max_unit_length = settings.max_unit_length;
  global_min_score = settings.min_score;
  global_min_score_a = settings.min_score_offset;
  global_min_score_bx = settings.min_score_factor;
  global_min_length = settings.min_length;
  global_min_length_a = settings.min_length_offset;
  global_min_length_bx = settings.min_length_factor;
  global_mismatch_score = settings.mismatch_score;
  global_indel_score = settings.indel_score;
  global_maximum_recursion_depth = settings.recursion_depth;
  global_maximum_scorereduction = settings.max_score_reduction;
  global_Ns_allowed_in_a_row = settings.max_successive_n;
  global_treat_Ns_as_missense = settings.n_is_mismatch;
  global_remove_mostly_hidden = settings.removes_overlapping;
}

/// Makes `settings` those of the engine. Throws: SettingsError.
void use_settings(const SearchSettings& settings) {
  int detail = 0;
  store_mode(detail, settings.detail, "detail");
  // A command line has no way to write these.
  if (!std::isfinite(settings.min_score_factor) || !std::isfinite(settings.min_length_factor)) {
    throw SettingsError("Sorry, a factor of a minimum must be a finite number.");
  }
  store_settings(settings);
  std::string reason(correct_settings());
  if (reason.empty()) return;
  while (reason.back() == '\n') reason.pop_back();
  throw SettingsError(reason);
}

/// Returns a byte as a person can read it.
std::string shown_byte(char byte) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(byte);
  if (code > ' ' && code < 0x7F) return std::string("'") + byte + "'";
  return std::string("byte 0x") + kDigits[code / 16U] + kDigits[code % 16U];
}

/// Fills the record with the bases of `text`. Throws: TextError, std::bad_alloc.
void read_bases(std::string_view text, CSequence_Mol& record) {
  record.sequence.reserve(text.size());
  const std::size_t count = copy_bases(text.data(), text.size(), record.sequence.spare_begin());
  if (count < text.size()) {
    throw TextError("The text has no base at position " + std::to_string(count) + ", but " +
                        shown_byte(text[count]) + ".",
                    count);
  }
  record.sequence.commit(count);
}

/// Returns a difference or a count, which is never negative.
std::uint64_t count_of(std::int64_t number) {
  return static_cast<std::uint64_t>(number);
}

std::vector<RepeatEdit> edits_of(const Csat& sat, const char* text_begin) {
  const fastvector<Edit> found = sat.edits();
  std::vector<RepeatEdit> edits;
  edits.reserve(found.size());
  for (const Edit& edit : found) {
    edits.push_back({count_of(edit.position - text_begin), edit.kind});
  }
  return edits;
}

/// Fills `repeat` from `sat`, except its unit.
void describe(const Csat& sat, const SequenceText& text, Detail detail, Repeat& repeat) {
  repeat.start = count_of(sat.start - text.begin);
  repeat.end = count_of(sat.end - text.begin);
  repeat.unit_length = count_of(sat.unit_length());
  repeat.normalized_length = count_of(sat.normalized_length());
  repeat.score = sat.score;
  repeat.perfection = sat.percentagePerfection();
  repeat.mismatches = count_of(sat.mismatches);
  repeat.insertions = count_of(sat.insertions);
  repeat.deletions = count_of(sat.deletions);
  repeat.n_count = count_of(sat.n_count);
  if (detail >= Detail::kEdits) repeat.edits = edits_of(sat, text.begin);
  if (detail >= Detail::kAlignment) {
    Alignment alignment = align(sat, text, 0);
    repeat.alignment = {std::move(alignment.bases), std::move(alignment.marks),
                        std::move(alignment.unit)};
  }
}

}  // namespace

inline namespace v3 {

SettingsError::SettingsError(const std::string& reason) : std::invalid_argument(reason) {}
SettingsError::~SettingsError() = default;

TextError::TextError(const std::string& reason, std::uint64_t position)
    : std::invalid_argument(reason), position_(position) {}
TextError::~TextError() = default;

void find_repeats(std::string_view text, const SearchSettings& settings,
                  const RepeatCallback& on_repeat) {
  const CEngineUse engine;
  use_settings(settings);
  CSequence_Mol record;
  read_bases(text, record);
  CSearchController controller(1, record);
  CsatContainer& found = controller.search_in_mode_of_settings(nullptr);
  CSearchController::remove_hidden(found);

  const char* const begin = record.sequence.data();
  const SequenceText bases{begin, begin + record.sequence.size()};
  Repeat repeat;
  for (const Csat* const sat : found.sat_list) {
    CDnaString unit(
        std::string_view(sat->unit_begin, static_cast<std::size_t>(sat->unit_length())));
    // A repeat of ATAT is one of AT, so it is left to the search for AT.
    if (normalize_unit(unit)) continue;
    repeat.unit = unit.view();
    describe(*sat, bases, settings.detail, repeat);
    on_repeat(repeat);
  }
}

std::vector<Repeat> find_repeats(std::string_view text, const SearchSettings& settings) {
  std::vector<Repeat> repeats;
  find_repeats(text, settings, [&repeats](const Repeat& repeat) { repeats.push_back(repeat); });
  return repeats;
}

void check_settings(const SearchSettings& settings) {
  const CEngineUse engine;
  use_settings(settings);
}

const char* version() noexcept {
  return QUORIX_VERSION;
}

}  // namespace v3
}  // namespace quorix
