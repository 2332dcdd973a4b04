#pragma once

/// @file
/// Finds tandem repeats in DNA from C++17 or later.
///
///     for (const quorix::Repeat& repeat : quorix::find_repeats("TTACACACACACGG")) {
///       std::cout << repeat.start << ' ' << repeat.end << ' ' << repeat.unit << '\n';
///     }
///
/// The repeats are those that the program `quorix` reports for a record with these bases under the
/// same settings, after its removal of overlapping repeats, in the order of its report. Nothing is
/// printed, no file is opened, and nothing ends the process.
///
/// Positions are offsets into the text, 0-based; a stretch is half-open, [start, end). Lengths are
/// in bp. A match scores +1.
///
/// Thread safety: every function may be called from any thread at any time. The engine has one set
/// of tables for the whole process, so **one search runs at a time**: a second one waits for the
/// first. To use several cores, search in several processes. After `fork` while another thread is
/// searching, the child must not search.
///
/// Memory: about three bytes for each base of the text while it is searched (four to five in mode
/// `kExtendExact`), and what the repeats take. Nothing is kept between two searches.

#include <cstdint>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#if defined(__GNUC__)
#define QUORIX_API __attribute__((visibility("default")))
#else
#define QUORIX_API
#endif

namespace quorix {

/// The namespace of the major version: objects compiled against another one do not link.
inline namespace v3 {

/// Version of this header. The first number changes if results, types or functions change, the
/// second if functions are added. `version()` is that of the library which is linked.
inline constexpr int kVersionMajor = 3;
inline constexpr int kVersionMinor = 3;
inline constexpr int kVersionPatch = 2;

/// What is searched for.
enum class SearchMode : int {
  kExact = 0,        ///< runs of perfect copies; `-M exact` of the program
  kExtendExact = 1,  ///< perfect runs, each extended over edits; `-M extendExact`
  kImperfect = 2,    ///< all that can be extended from one copy of a unit; `-M imperfect`
};

/// How a perfection counts an N inside a repeat.
enum class NInPerfection : int {
  kAsMismatch = 0,
  kAsNeutral = 1,  ///< left out
  kAsMatch = 2,
};

/// The form of `Repeat::unit`.
enum class UnitForm : int {
  kAsFound = 0,
  kLeastRotation = 1,               ///< the alphabetically first rotation
  kLeastRotationOfBothStrands = 2,  ///< the same, of the unit and its reverse complement
};

/// How much is made of each repeat. What is not asked for is empty.
enum class Detail : int {
  kFigures = 0,    ///< no edits and no alignment: the quickest, with the least memory
  kEdits = 1,      ///< the edits
  kAlignment = 2,  ///< edits and alignment
};

/// `SearchSettings::max_score_reduction` with this value means "no limit".
inline constexpr std::int32_t kUnlimitedScoreReduction = std::numeric_limits<std::int32_t>::max();

/// The settings of a search, with the defaults of the program. In brackets: its option.
///
/// A repeat is found if its score is at least max(min_score, min_score_offset + min_score_factor *
/// unit length) and its normalized length at least the same of the three lengths, each rounded up.
/// Factors are single-precision numbers: 0.1 is a little more than 0.1.
struct SearchSettings {
  SearchMode mode = SearchMode::kImperfect;  ///< [-M]
  std::uint32_t min_unit_length = 1;         ///< [-u]
  std::uint32_t max_unit_length = 6;         ///< inclusive, not below the minimum [-U]
  std::int32_t min_score = 6;                ///< [-s]
  std::int32_t min_score_offset = 0;         ///< [--minScore_a]
  float min_score_factor = 1.0F;             ///< finite [--minScore_b]
  std::int32_t min_length = 1;               ///< [-l]
  std::int32_t min_length_offset = 0;        ///< [--minLength_a]
  float min_length_factor = 0.0F;            ///< finite [--minLength_b]
  std::int32_t mismatch_score = -6;          ///< -2 or lower [-m]
  std::int32_t indel_score = -6;             ///< -2 or lower [-g]
  std::int32_t recursion_depth = 5;          ///< edits that are looked ahead, 1 or more [-r]
  /// How far the score may fall below the best score of the repeat so far [-R].
  std::int32_t max_score_reduction = kUnlimitedScoreReduction;
  std::int32_t max_successive_n = 4;  ///< N's in a row; negative counts as 0 [-N]
  bool n_is_mismatch = false;         ///< otherwise an N scores 0 [--NsAsMissense]
  bool removes_overlapping = true;    ///< false: all that are found [-D]
  NInPerfection n_in_perfection = NInPerfection::kAsMismatch;  ///< [--NPerfectionMode]
  UnitForm unit_form = UnitForm::kLeastRotationOfBothStrands;  ///< [--reportUnit]
  Detail detail = Detail::kEdits;                              ///< what is made of each repeat
};

/// A difference between a repeat and perfect copies of its unit.
struct RepeatEdit {
  /// The base concerned, as an offset into the text.
  std::uint64_t position = 0;
  /// 'M': the base differs from its unit character. 'I': the base has no unit character. 'D': a
  /// unit character is missing just before the base.
  char kind = '\0';
};

/// A repeat beside perfect copies of its unit as found, in three lines of equal length.
struct RepeatAlignment {
  std::string bases;  ///< '-' for a missing base
  std::string marks;  ///< '|' for a match, '*' for an N that counts as unknown, ' ' for an edit
  std::string unit;   ///< '-' for a missing unit character
};

/// One repeat.
struct Repeat {
  std::uint64_t start = 0;
  std::uint64_t end = 0;
  std::string unit;               ///< in the form of `SearchSettings::unit_form`
  std::uint64_t unit_length = 0;  ///< that of `unit`
  /// (end - start) - insertions + deletions: what is compared with the minimum length.
  std::uint64_t normalized_length = 0;
  std::int32_t score = 0;  ///< of all after the first copy; stops at the 32-bit limits
  /// Share of matches in percent, 0 to 100. NaN if nothing is left to count.
  double perfection = 0.0;
  std::uint64_t mismatches = 0;
  std::uint64_t insertions = 0;
  std::uint64_t deletions = 0;
  std::uint64_t n_count = 0;      ///< N's that count as unknown
  std::vector<RepeatEdit> edits;  ///< by position; from `Detail::kEdits` on
  RepeatAlignment alignment;      ///< with `Detail::kAlignment`
};

/// Thrown for settings that cannot be searched with. `what` is the reason in the words of the
/// program.
class QUORIX_API SettingsError : public std::invalid_argument {
 public:
  explicit SettingsError(const std::string& reason);
  ~SettingsError() override;
};

/// Thrown for a text with a byte that is no base.
class QUORIX_API TextError : public std::invalid_argument {
 public:
  TextError(const std::string& reason, std::uint64_t position);
  ~TextError() override;
  /// Returns the offset of the first such byte.
  [[nodiscard]] std::uint64_t position() const noexcept { return position_; }

 private:
  std::uint64_t position_;
};

/// Takes one repeat, which is valid during the call. It may throw: the search ends then, and the
/// exception reaches the caller of `find_repeats`. It must not search itself.
using RepeatCallback = std::function<void(const Repeat&)>;

/// Searches `text` and hands each repeat to `on_repeat`, ordered by start, then by end.
///
/// Letters count as in a FASTA file: in either case, U as T, the ambiguity codes RYKMSWBDHVX as N.
/// White space, '-' and '*', which a FASTA file may hold, are refused: the offsets would not be
/// those of the text. The text is copied before it is searched; an empty one has no repeats.
///
/// Throws: SettingsError; TextError; std::bad_alloc; std::logic_error if it is called from a
/// callback; what `on_repeat` throws. After any of them the next search runs as usual.
QUORIX_API void find_repeats(std::string_view text, const SearchSettings& settings,
                             const RepeatCallback& on_repeat);

/// Returns all repeats of `text` at once. Throws as the function above.
[[nodiscard]] QUORIX_API std::vector<Repeat> find_repeats(
    std::string_view text, const SearchSettings& settings = SearchSettings());

/// Throws SettingsError if `find_repeats` would refuse the settings. A wait for a search that runs
/// is possible. Throws: std::logic_error as `find_repeats`.
QUORIX_API void check_settings(const SearchSettings& settings);

/// Returns the version of the library: "3.3.2".
[[nodiscard]] QUORIX_API const char* version() noexcept;

}  // namespace v3
}  // namespace quorix
