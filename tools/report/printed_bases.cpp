#include "tools/report/printed_bases.h"

#include <algorithm>

#include "tools/report/dna_letters.h"
#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

constexpr char kGap = '-';
constexpr char kUnknown = 'N';
/// How many lines follow the list of edits up to the end of an alignment.
constexpr std::uint64_t kLinesAfterEdits = 3;

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

/// A column of an alignment.
struct Column {
  char base;
  char mark;
  char unit_base;
};

bool is_base_or_gap(char character) {
  return character == kGap || is_base_letter(character);
}

/// Returns the kind of edit that a column shows, or 0 if it is none.
char edit_of_column(const Column& column) {
  if (column.mark != ' ') return 0;
  if (column.base == kGap) return is_base_letter(column.unit_base) ? 'D' : '\0';
  if (!is_base_letter(column.base)) return 0;
  if (column.unit_base == kGap) return 'I';
  const bool is_match = column.base == column.unit_base && column.base != kUnknown;
  return is_base_letter(column.unit_base) && !is_match ? 'M' : '\0';
}

/// What the list of edits says of a column.
enum class ListedEdit { kNoList, kNone, kOne };

/// Throws: LineFault for the line that makes a column contradict itself. If the list agrees with
/// the mark, that is the line of bases or of the unit; otherwise it is taken to be that of the
/// marks.
[[noreturn]] void refuse_column(const Column& column, std::size_t number, ListedEdit listed) {
  if (!is_base_or_gap(column.base)) {
    throw LineFault("the bases have another character than ACGTN-", kLinesAfterBases);
  }
  if (!is_base_or_gap(column.unit_base)) {
    throw LineFault("the line of the unit has another character than ACGTN-");
  }
  const bool is_mark_right = (column.mark == '|' && listed == ListedEdit::kNone) ||
                             (column.mark == ' ' && listed == ListedEdit::kOne);
  const std::uint64_t lines_after = !is_mark_right             ? kLinesAfterMarks
                                    : column.unit_base == kGap ? 0
                                                               : kLinesAfterBases;
  throw LineFault("column " + std::to_string(number) +
                      " of the alignment is wrong: the mark does not fit base and unit",
                  lines_after);
}

void check_counts(const Repeat& repeat, const ColumnCounts& counts) {
  if (counts.bases != repeat.length()) {
    throw LineFault("the alignment has " + std::to_string(counts.bases) +
                        " bases, the repeat has " + std::to_string(repeat.length()),
                    kLinesAfterBases);
  }
  if (repeat.ns != kNotTold && counts.unknown_bases != repeat.ns) {
    throw LineFault("the marks do not agree with the number of N's", kLinesAfterMarks);
  }
  const bool is_told = repeat.mismatches != kNotTold;
  if (counts.bases - counts.insertions + counts.deletions != repeat.normalized_length ||
      (is_told &&
       (counts.mismatches != repeat.mismatches || counts.insertions != repeat.insertions))) {
    throw LineFault("the alignment does not agree with the counts of edits");
  }
}

void count_edit(char kind, ColumnCounts& counts) {
  counts.bases += kind == 'D' ? 0 : 1;
  counts.deletions += kind == 'D' ? 1 : 0;
  counts.insertions += kind == 'I' ? 1 : 0;
  counts.mismatches += kind == 'M' ? 1 : 0;
}

/// Goes through the columns beside the list of edits, if there is one. Throws: LineFault.
void check_columns(const Repeat& repeat, const std::vector<ReportedEdit>& edits) {
  ColumnCounts counts;
  auto edit = edits.begin();
  for (std::size_t i = 0; i < repeat.bases.size(); ++i) {
    const Column column{repeat.bases[i], repeat.marks[i], repeat.aligned_unit[i]};
    if (column.mark == '|' && column.base == column.unit_base && is_base_letter(column.base) &&
        column.base != kUnknown) {
      ++counts.bases;
      continue;
    }
    if (column.mark == '*' && column.base == kUnknown && is_base_letter(column.unit_base)) {
      ++counts.bases;
      ++counts.unknown_bases;
      continue;
    }
    const bool is_listed = edit != edits.end() && edit->position == counts.bases + 1;
    const char kind = edit_of_column(column);
    if (kind == 0) {
      const ListedEdit listed = is_listed ? ListedEdit::kOne : ListedEdit::kNone;
      refuse_column(column, i + 1, repeat.tells_edits ? listed : ListedEdit::kNoList);
    }
    count_edit(kind, counts);
    if (!repeat.tells_edits) continue;
    if (!is_listed || edit->kind != kind) {
      throw LineFault("the list of edits does not agree with the alignment", kLinesAfterEdits);
    }
    ++edit;
  }
  if (edit != edits.end()) {
    throw LineFault("the list of edits has one that the alignment lacks", kLinesAfterEdits);
  }
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

void check_line_lengths(std::string_view bases, std::string_view marks, std::string_view unit) {
  if (bases.size() == marks.size() && marks.size() == unit.size()) return;
  const std::uint64_t lines_after = bases.size() == marks.size()  ? 0
                                    : bases.size() == unit.size() ? kLinesAfterMarks
                                                                  : kLinesAfterBases;
  throw LineFault("the lines of the alignment differ in length", lines_after);
}

std::string_view part_below(std::string_view line, const ReportSettings& settings,
                            const Repeat& repeat) {
  const std::size_t left = settings.flank_length > 0 ? repeat.left_flank.size() + 1 : 0;
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
  set_motif(repeat);
  check_columns(repeat, edits);
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
