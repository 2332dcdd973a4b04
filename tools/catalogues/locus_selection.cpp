// One place is one start and one end. Repeats come by their starts, and a cut moves no start, so it
// is enough to hold the loci with one start until the next one.

#include "tools/catalogues/locus_selection.h"

#include <algorithm>

#include "tools/io/errors.h"

namespace quorix::tools {

void check_motifs_are_told(const ReportSettings& settings, const std::string& report_name) {
  if (settings.tells_motifs()) return;
  throw InputError(report_name +
                   ": a catalogue needs motifs, and the head shows that this report has none; "
                   "quorix prints them with --printRepeatSeqMode 2, or with --printRepeatSeqMode 1 "
                   "and --outputFormat 1");
}

void CLocusSelection::begin_sequence(const OutputSequence& sequence) {
  sequence_ = sequence;
  is_unread_ =
      sequence.identifier.find_first_of(catalogue_.unread_characters) != std::string_view::npos;
}

void CLocusSelection::end_sequence() {
  hand_on();
}

void CLocusSelection::add(const Repeat& repeat) {
  ++repeat_count_;
  if (const std::optional<LeftOutReason> reason = reason_against(repeat)) {
    left_out_.note(*reason);
    if (is_unread_ && unread_identifier_.empty()) unread_identifier_ = sequence_.identifier;
    return;
  }
  if (!held_.empty() && held_.front().figures.start != repeat.start) hand_on();
  hold({repeat, std::string(repeat.motif), std::string(repeat.perfection)});
}

/// Of two repeats that are one locus the one with the higher score stays, and the first of equals.
void CLocusSelection::hold(Locus locus) {
  for (const auto text : kRepeatTexts) locus.figures.*text = {};
  locus.figures.end = locus_end(locus.figures);
  const auto same = std::find_if(held_.begin(), held_.end(),
                                 [&](const Locus& held) { return is_same(held, locus); });
  if (same == held_.end()) {
    held_.push_back(std::move(locus));
    return;
  }
  left_out_.note(LeftOutReason::kSameLocus);
  if (locus.figures.score > same->figures.score) *same = std::move(locus);
}

std::optional<LeftOutReason> CLocusSelection::reason_against(const Repeat& repeat) const {
  if (is_unread_) return LeftOutReason::kUnreadIdentifier;
  if (repeat.motif.empty()) return LeftOutReason::kNoMotif;
  if (repeat.motif.find('N') != std::string_view::npos) return LeftOutReason::kUnknownBases;
  if (repeat.unit_length > catalogue_.max_motif_length) return LeftOutReason::kLongMotif;
  if (repeat.length() < catalogue_.min_length) return LeftOutReason::kShortLength;
  if (repeat.length() / repeat.unit_length < catalogue_.min_whole_copies) {
    return LeftOutReason::kFewCopies;
  }
  if (repeat.start - 1 < catalogue_.flank_length ||
      sequence_.length - repeat.end < catalogue_.flank_length) {
    return LeftOutReason::kShortFlank;
  }
  return std::nullopt;
}

/// Returns the last base of the locus that a repeat becomes.
std::int64_t CLocusSelection::locus_end(const Repeat& repeat) const {
  const bool is_cut = catalogue_.min_whole_copies > 0;
  return is_cut ? repeat.end - repeat.length() % repeat.unit_length : repeat.end;
}

/// True if two loci with one start have one end and one motif, in any rotation, on either strand.
bool CLocusSelection::is_same(const Locus& left, const Locus& right) {
  if (left.figures.end != right.figures.end || left.motif.size() != right.motif.size()) {
    return false;
  }
  const std::string form(forms_.normal_form(left.motif, UnitForm::kAlphabeticalBothStrands));
  return forms_.normal_form(right.motif, UnitForm::kAlphabeticalBothStrands) == form;
}

void CLocusSelection::hand_on() {
  // Cuts of different lengths may have changed the order of the ends.
  if (held_.size() > 1) {
    std::stable_sort(held_.begin(), held_.end(), [](const Locus& left, const Locus& right) {
      return left.figures.end < right.figures.end;
    });
  }
  for (auto first = held_.begin(); first != held_.end();) {
    Locus& locus = *first++;
    for (;
         catalogue_.joins_motifs && first != held_.end() && first->figures.end == locus.figures.end;
         ++first) {
      locus.motif += ',';
      locus.motif += first->motif;
    }
    locus.figures.motif = locus.motif;
    locus.figures.perfection = locus.perfection;
    take_(sequence_, locus.figures);
  }
  held_.clear();
}

std::string CLocusSelection::summary() const {
  return left_out_.summary(catalogue_, repeat_count_, unread_identifier_);
}

}  // namespace quorix::tools
