// What a line is follows from its place alone: a record's name may look like any other line, and is
// still the line after a record's end. The texts of a repeat lie on several lines, so their places
// are kept until all are in the buffer.

#include "tools/report/report_reader.h"

#include "tools/io/errors.h"
#include "tools/report/head_reader.h"
#include "tools/report/information_line.h"
#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

constexpr std::string_view kFootBegin = "# Analysis of sequence \"";
constexpr std::string_view kFootEnd = "\" completed.";

}  // namespace

CReportReader::CReportReader(std::unique_ptr<CByteInput> input, const std::string& name,
                             bool allow_incomplete, std::size_t block_size)
    : lines_(std::move(input), name, block_size), allows_incomplete_(allow_incomplete) {
  try {
    settings_ = read_head(lines_);
  } catch (const LineFault& fault) {
    lines_.fail("not the head of a report: " + std::string(fault.what()));
  } catch (const InputCutShort&) {
    throw InputError(name + ":" + std::to_string(lines_.reader().line_number() + 1) +
                     ": the input ends within the head of a report");
  }
}

template <class Step>
bool CReportReader::guarded(const Step& step) {
  try {
    return step();
  } catch (const LineFault& fault) {
    lines_.fail(fault.what(), fault.lines_after);
  } catch (const InputCutShort& cut) {
    if (!allows_incomplete_) throw;
    cut_message_ = cut.what();
    has_ended_ = true;
    is_in_sequence_ = false;
    return false;
  }
}

bool CReportReader::next_sequence() {
  while (next_repeat()) {
  }
  return !has_ended_ && guarded([this] { return read_sequence_head(); });
}

bool CReportReader::next_repeat() {
  return is_in_sequence_ && guarded([this] { return read_repeat(); });
}

bool CReportReader::read_sequence_head() {
  lines_.reader().set_mark();
  const std::string_view line = lines_.next();
  if (line == kClosingLine) {
    has_ended_ = true;
    lines_.expect_end();
    return false;
  }
  CTextCursor name(line);
  if (!name.take(">")) {
    throw LineFault("expected '>' and a name, or the closing line of the report");
  }
  sequence_name_ = name.rest();
  sequence_line_ = lines_.reader().line_number();
  CTextCursor length(lines_.next());
  length.expect("sequence length: ");
  sequence_length_ = length.number(0, "");
  length.expect_end();
  if (sequence_length_ < 0) throw LineFault("the length is negative");
  is_in_sequence_ = true;
  repeat_.ordinal = 0;
  previous_start_ = previous_end_ = 0;
  return true;
}

bool CReportReader::read_repeat() {
  CLineReader& reader = lines_.reader();
  reader.set_mark();
  const std::string_view line = lines_.next();
  if (line.starts_with('#')) {
    CTextCursor foot(line);
    foot.expect(kFootBegin);
    foot.expect(sequence_name_);
    foot.expect(kFootEnd);
    foot.expect_end();
    is_in_sequence_ = false;
    return false;
  }

  const std::uint64_t line_number = reader.line_number();
  const std::int64_t ordinal = repeat_.ordinal + 1;
  repeat_ = Repeat();
  repeat_.ordinal = ordinal;
  read_information(line, settings_, sequence_length_, repeat_);
  check_order();
  const TextSpan unit = reader.span_of(repeat_.unit);
  const TextSpan perfection = reader.span_of(repeat_.perfection);
  TextSpan edits;
  edits_.clear();
  if (settings_.format == ReportFormat::kExtendedQuorix) {
    read_edit_line();
    edits = reader.span_of(repeat_.edits);
  }
  if (settings_.sequence_mode == SequenceMode::kBases) read_bases(lines_.next());
  if (settings_.sequence_mode == SequenceMode::kAlignment) read_alignment(lines_.next());
  repeat_.unit = reader.text_at(unit);
  repeat_.perfection = reader.text_at(perfection);
  repeat_.edits = reader.text_at(edits);
  on_earlier_line(lines_after(line_number), [this] {
    unit_forms_.check_printed_unit(repeat_.unit, repeat_.motif, settings_.unit_form);
  });
  return true;
}

void CReportReader::check_order() {
  const bool is_after = repeat_.start != previous_start_ ? repeat_.start > previous_start_
                                                         : repeat_.end >= previous_end_;
  if (!is_after) throw LineFault("the repeats are not in the order of their positions");
  previous_start_ = repeat_.start;
  previous_end_ = repeat_.end;
}

void CReportReader::read_edit_line() {
  CTextCursor cursor(lines_.next());
  cursor.expect("Missense: ");
  repeat_.edits = cursor.rest();
  repeat_.tells_edits = true;
  read_edits(repeat_.edits, edits_);
  std::int64_t mismatches = 0;
  std::int64_t insertions = 0;
  for (const ReportedEdit& edit : edits_) {
    mismatches += edit.kind == 'M' ? 1 : 0;
    insertions += edit.kind == 'I' ? 1 : 0;
    if (edit.position < 1 || edit.position > repeat_.length()) {
      throw LineFault("an edit at " + std::to_string(edit.position) +
                      " does not lie in the repeat");
    }
  }
  const auto deletions = static_cast<std::int64_t>(edits_.size()) - mismatches - insertions;
  if (mismatches != repeat_.mismatches || insertions != repeat_.insertions ||
      deletions != repeat_.deletions) {
    throw LineFault("the edits are not as many as the counts before them");
  }
}

void CReportReader::read_bases(std::string_view line) {
  split_flanks(line, settings_, sequence_length_, repeat_);
  printed_bases_.check_bases(repeat_, settings_.tells_edits(), edits_);
}

void CReportReader::read_alignment(std::string_view line) {
  const CLineReader& reader = lines_.reader();
  const TextSpan bases = reader.span_of(line);
  const TextSpan marks = reader.span_of(lines_.next());
  const std::string_view unit_line = lines_.next();
  const std::string_view bases_line = reader.text_at(bases);
  const std::string_view marks_line = reader.text_at(marks);
  check_line_lengths(bases_line, marks_line, unit_line);
  on_earlier_line(kLinesAfterBases,
                  [&] { split_flanks(bases_line, settings_, sequence_length_, repeat_); });
  repeat_.marks =
      on_earlier_line(kLinesAfterMarks, [&] { return part_below(marks_line, settings_, repeat_); });
  repeat_.aligned_unit = part_below(unit_line, settings_, repeat_);
  printed_bases_.check_alignment(repeat_, edits_);
}

}  // namespace quorix::tools
