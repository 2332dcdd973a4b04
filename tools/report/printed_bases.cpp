#include "tools/report/printed_bases.h"

#include <algorithm>

#include "tools/report/dna_letters.h"
#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

constexpr char kGap = '-';
constexpr char kUnknown = 'N';

/// Lengths of the flanks with their colons.
struct FlankWidths {
  std::size_t left = 0;
  std::size_t right = 0;
};

FlankWidths flank_widths(const ReportSettings& settings, std::int64_t sequence_length,
                         const Repeat& repeat) {
  if (settings.flank_length <= 0) return {};
  const std::int64_t longest = settings.flank_length;
  return {static_cast<std::size_t>(std::min(longest, repeat.start - 1)) + 1,
          static_cast<std::size_t>(std::min(longest, sequence_length - repeat.end)) + 1};
}

/// What the columns of an alignment add up to.
struct ColumnCounts {
  std::int64_t bases = 0;
  std::int64_t insertions = 0;
  std::int64_t deletions = 0;
  std::int64_t mismatches = 0;
  std::int64_t unknown_bases = 0;  ///< without an edit
};

/// Returns the edit that a column with a blank mark shows, and counts it. Throws: LineFault.
char edit_of_column(char base, char unit_base, ColumnCounts& counts) {
  if (base == kGap && is_base_letter(unit_base)) {
    ++counts.deletions;
    return 'D';
  }
  if (!is_base_letter(base)) throw LineFault("the bases have another character than ACGTN-");
  ++counts.bases;
  if (unit_base == kGap) {
    ++counts.insertions;
    return 'I';
  }
  if (!is_base_letter(unit_base) || (base == unit_base && base != kUnknown)) {
    throw LineFault("a column of the alignment is no mismatch, although it has no mark");
  }
  ++counts.mismatches;
  return 'M';
}

void check_counts(const Repeat& repeat, const ColumnCounts& counts) {
  if (counts.bases != repeat.length()) {
    throw LineFault("the alignment has " + std::to_string(counts.bases) +
                    " bases, the repeat has " + std::to_string(repeat.length()));
  }
  const bool is_told = repeat.mismatches != kNotTold;
  if (counts.bases - counts.insertions + counts.deletions != repeat.normalized_length ||
      (is_told &&
       (counts.mismatches != repeat.mismatches || counts.insertions != repeat.insertions)) ||
      (repeat.ns != kNotTold && counts.unknown_bases != repeat.ns)) {
    throw LineFault("the alignment does not agree with the counts of edits");
  }
}

/// Goes through the columns beside the list of edits, if there is one. Throws: LineFault.
void check_columns(const Repeat& repeat, const std::vector<ReportedEdit>& edits) {
  ColumnCounts counts;
  auto edit = edits.begin();
  for (std::size_t i = 0; i < repeat.bases.size(); ++i) {
    const char base = repeat.bases[i];
    const char unit_base = repeat.aligned_unit[i];
    if (repeat.marks[i] == '|' && base == unit_base && is_base_letter(base) && base != kUnknown) {
      ++counts.bases;
    } else if (repeat.marks[i] == '*' && base == kUnknown && is_base_letter(unit_base)) {
      ++counts.bases;
      ++counts.unknown_bases;
    } else if (repeat.marks[i] == ' ') {
      const char kind = edit_of_column(base, unit_base, counts);
      if (!repeat.tells_edits) continue;
      const ReportedEdit expected{counts.bases + (kind == 'D' ? 1 : 0), kind};
      if (edit == edits.end() || *edit != expected) {
        throw LineFault("the alignment does not agree with the list of edits");
      }
      ++edit;
    } else {
      throw LineFault("column " + std::to_string(i + 1) + " of the alignment is wrong");
    }
  }
  if (edit != edits.end()) throw LineFault("the alignment lacks an edit of the list");
  check_counts(repeat, counts);
}

}  // namespace

void split_flanks(std::string_view line, const ReportSettings& settings,
                  std::int64_t sequence_length, Repeat& repeat) {
  const FlankWidths widths = flank_widths(settings, sequence_length, repeat);
  if (line.size() <= widths.left + widths.right) throw LineFault("the line of bases is too short");
  const std::size_t right = line.size() - widths.right;
  repeat.bases = line.substr(widths.left, right - widths.left);
  if (widths.left == 0) return;
  repeat.left_flank = line.substr(0, widths.left - 1);
  repeat.right_flank = line.substr(right + 1);
  if (line[widths.left - 1] != ':' || line[right] != ':' || !are_base_letters(repeat.left_flank) ||
      !are_base_letters(repeat.right_flank)) {
    throw LineFault("the flanks are not as long as they should be");
  }
}

std::string_view part_below(std::string_view line, const ReportSettings& settings,
                            const Repeat& repeat) {
  const bool has_flanks = settings.flank_length > 0;
  const std::size_t left = has_flanks ? repeat.left_flank.size() + 1 : 0;
  const std::size_t right = has_flanks ? repeat.right_flank.size() + 1 : 0;
  if (line.size() != left + repeat.bases.size() + right) {
    throw LineFault("the lines of the alignment differ in length");
  }
  const std::string_view part = line.substr(left, repeat.bases.size());
  if (line.substr(0, left).find_first_not_of(' ') != std::string_view::npos ||
      line.substr(left + part.size()).find_first_not_of(' ') != std::string_view::npos) {
    throw LineFault("below the flanks there is something");
  }
  return part;
}

void CPrintedBases::check_bases(Repeat& repeat, bool are_edits_known,
                                const std::vector<ReportedEdit>& edits) {
  if (static_cast<std::int64_t>(repeat.bases.size()) != repeat.length() ||
      !are_base_letters(repeat.bases)) {
    throw LineFault("the bases are not those of " + std::to_string(repeat.length()) + " positions");
  }
  if (!are_edits_known) return;
  const auto unit_length = static_cast<std::size_t>(repeat.unit_length);
  motif_.assign(unit_length, kUnknown);
  std::size_t offset = 0;  // of the unit's base that comes next
  auto edit = edits.begin();
  for (std::size_t i = 0; i < repeat.bases.size(); ++i) {
    const auto position = static_cast<std::int64_t>(i) + 1;
    char kind = ' ';
    for (; edit != edits.end() && edit->position == position; ++edit) {
      kind = edit->kind;
      if (kind == 'D' && ++offset == unit_length) offset = 0;
    }
    if (kind == 'I') continue;
    char& expected = motif_[offset];
    if (++offset == unit_length) offset = 0;
    if (kind == 'M' || repeat.bases[i] == kUnknown) continue;
    if (expected == kUnknown) expected = repeat.bases[i];
    if (expected != repeat.bases[i]) throw LineFault("the bases do not repeat as the edits say");
  }
  if (motif_.find(kUnknown) == std::string::npos) repeat.motif = motif_;
}

void CPrintedBases::check_alignment(Repeat& repeat, const std::vector<ReportedEdit>& edits) {
  check_columns(repeat, edits);
  set_motif(repeat);
}

/// Throws: LineFault unless the line of the unit repeats it.
void CPrintedBases::set_motif(Repeat& repeat) {
  std::string_view copies = repeat.aligned_unit;
  if (copies.find(kGap) != std::string_view::npos) {
    motif_.clear();
    std::remove_copy(copies.begin(), copies.end(), std::back_inserter(motif_), kGap);
    copies = motif_;
  }
  const auto unit_length = static_cast<std::size_t>(repeat.unit_length);
  if (copies.size() < unit_length) return;
  if (copies.substr(unit_length) != copies.substr(0, copies.size() - unit_length)) {
    throw LineFault("the unit does not repeat with its length in the alignment");
  }
  repeat.motif = copies.substr(0, unit_length);
}

}  // namespace quorix::tools
