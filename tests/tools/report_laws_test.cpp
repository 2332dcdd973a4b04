// Random reports of every format, print mode and unit form, beside the reader that scripts have and
// the bases of the sequences themselves.

#include <gtest/gtest.h>

#include <string>

#include "sequence/dna_string.h"
#include "support/engine_comparison.h"
#include "support/random_options.h"
#include "support/report_reader.h"
#include "tools/random_reports.h"
#include "tools/report_text.h"

namespace quorix::testing {
namespace {

/// What the cases have shown, so that a generator that plants too little is noticed.
struct Tally {
  std::size_t repeats = 0;
  std::size_t edited = 0;
  std::size_t with_motif = 0;
};

std::string without_gaps(std::string text) {
  std::erase(text, '-');
  return text;
}

std::int64_t value_or_not_told(const std::optional<std::int64_t>& value) {
  return value.value_or(tools::kNotTold);
}

std::string edits_text(const std::optional<std::vector<ReadEdit>>& edits) {
  std::string text;
  if (!edits) return text;
  for (const ReadEdit& edit : *edits) {
    text += '(' + std::to_string(edit.position) + ',' + edit.kind + "),";
  }
  return text;
}

/// The lines below the figures, put together again.
std::vector<std::string> printed_lines(const OwnedRepeat& repeat,
                                       const tools::ReportSettings& settings) {
  if (settings.sequence_mode == tools::SequenceMode::kNone) return {};
  const bool has_flanks = settings.flank_length > 0;
  const std::string colon = has_flanks ? ":" : "";
  std::vector<std::string> lines{repeat.left_flank + colon + repeat.bases + colon +
                                 repeat.right_flank};
  if (settings.sequence_mode == tools::SequenceMode::kBases) return lines;
  const std::string left(repeat.left_flank.size() + colon.size(), ' ');
  const std::string right(repeat.right_flank.size() + colon.size(), ' ');
  lines.push_back(left + repeat.marks + right);
  lines.push_back(left + repeat.aligned_unit + right);
  return lines;
}

void expect_same(const OwnedRepeat& repeat, const ReadRepeat& twin,
                 const tools::ReportSettings& settings) {
  EXPECT_EQ(repeat.figures.unit_length, twin.unit_length);
  EXPECT_EQ(repeat.figures.start, twin.first_position);
  EXPECT_EQ(repeat.figures.end, twin.last_position);
  EXPECT_EQ(repeat.figures.length(), twin.length.value_or(repeat.figures.length()));
  EXPECT_EQ(repeat.figures.normalized_length, twin.normalized_length);
  EXPECT_EQ(repeat.figures.score, twin.score);
  EXPECT_EQ(repeat.perfection, twin.perfection);
  EXPECT_EQ(repeat.figures.mismatches, value_or_not_told(twin.mismatches));
  EXPECT_EQ(repeat.figures.insertions, value_or_not_told(twin.insertions));
  EXPECT_EQ(repeat.figures.deletions, value_or_not_told(twin.deletions));
  EXPECT_EQ(repeat.figures.ns, value_or_not_told(twin.n_count));
  EXPECT_EQ(repeat.unit, twin.unit);
  EXPECT_EQ(repeat.figures.tells_edits, twin.edits.has_value());
  EXPECT_EQ(repeat.edits, edits_text(twin.edits));
  EXPECT_EQ(printed_lines(repeat, settings), twin.lines);
}

/// Returns the least rotation of both strands.
std::string normal_form(const std::string& unit) {
  CDnaString form(unit);
  CDnaString complement;
  complement.setToReverseComplementOf(form);
  complement.setToMinAlphaRepModCyclicPermOf(complement);
  form.setToMinAlphaRepModCyclicPermOf(form);
  return std::string(std::min(form.view(), complement.view()));
}

/// Without edits, every base is that of the motif at its place, or unknown.
void expect_motif_along(const std::string& motif, const std::string& bases) {
  for (std::size_t i = 0; i < bases.size(); ++i) {
    if (bases[i] == 'N') continue;
    ASSERT_EQ(bases[i], motif[i % motif.size()]) << motif << ' ' << bases;
  }
}

void check_against_bases(const OwnedRepeat& repeat, const std::string& sequence, Tally& tally) {
  const std::string bases = sequence.substr(static_cast<std::size_t>(repeat.figures.start - 1),
                                            static_cast<std::size_t>(repeat.figures.length()));
  ++tally.repeats;
  if (!repeat.edits.empty()) ++tally.edited;
  if (!repeat.bases.empty()) {
    EXPECT_EQ(without_gaps(repeat.bases), bases);
  }
  if (repeat.motif.empty()) return;
  ++tally.with_motif;
  EXPECT_EQ(normal_form(repeat.motif), normal_form(repeat.unit));
  if (!repeat.aligned_unit.empty()) {
    expect_motif_along(repeat.motif, without_gaps(repeat.aligned_unit));
  }
  const bool has_edits = repeat.figures.tells_edits ? !repeat.edits.empty()
                                                    : repeat.marks.find(' ') != std::string::npos;
  if (!has_edits) expect_motif_along(repeat.motif, bases);
}

TEST(ReportLaws, the_reader_agrees_with_scripts_and_with_the_bases) {
  silence_standard_error();
  Tally tally;
  for (std::uint64_t seed = 1; seed <= 1500 && !HasFailure(); ++seed) {
    const RandomReport drawn = draw_report(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + joined(drawn.options));
    const std::string& text = drawn.text;
    const ReadReport twin = read_report(text);
    OwnedReport report;
    ASSERT_NO_THROW(report = read_whole(text, false, seed % 97 + 1, seed % 61 + 1))
        << refusal_of(text) << '\n'
        << text;

    ASSERT_EQ(report.sequences.size(), twin.blocks.size());
    for (std::size_t i = 0; i < twin.blocks.size(); ++i) {
      const OwnedSequence& sequence = report.sequences[i];
      EXPECT_EQ(sequence.name, twin.blocks[i].name);
      EXPECT_EQ(sequence.length, twin.blocks[i].sequence_length);
      ASSERT_EQ(sequence.repeats.size(), twin.blocks[i].repeats.size());
      for (std::size_t j = 0; j < sequence.repeats.size(); ++j) {
        expect_same(sequence.repeats[j], twin.blocks[i].repeats[j], report.settings);
        check_against_bases(sequence.repeats[j], drawn.records[i].bases, tally);
      }
    }
  }
  EXPECT_GT(tally.repeats, 5000U);
  EXPECT_GT(tally.edited, 500U);
  EXPECT_GT(tally.with_motif, tally.repeats / 2);
}

}  // namespace
}  // namespace quorix::testing
