#include "tools/merge/masked_copy.h"

#include <algorithm>
#include <utility>

#include "tools/io/errors.h"
#include "tools/report/dna_letters.h"
#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

constexpr std::size_t kFullLine = 80;
constexpr char kMasked = 'X';

bool is_letter(char character) {
  return character == kMasked || is_base_letter(character);
}

}  // namespace

bool CMaskedLines::is_header(std::string_view line) {
  if (line.starts_with('>')) {
    is_in_record_ = true;
    line_length_ = kFullLine;
    return true;
  }
  if (!is_in_record_) throw LineFault("a masked copy begins with '>' and a name");
  if (line.empty() || line.size() > kFullLine || line_length_ != kFullLine) {
    throw LineFault("the bases of a record are not in lines of " + std::to_string(kFullLine));
  }
  if (!std::all_of(line.begin(), line.end(), is_letter)) {
    throw LineFault("a masked copy has other bases than ACGTNX");
  }
  line_length_ = line.size();
  return false;
}

CMaskedCheck::CMaskedCheck(CReportReader& reader, std::string report_name)
    : reader_(reader), report_name_(std::move(report_name)) {
  if (!reader_.settings().masks) {
    throw InputError(report_name_ + ": this report is of a run that has written no masked copy");
  }
}

std::string CMaskedCheck::in_report() const {
  return "at " + report_name_ + ":" + std::to_string(reader_.sequence().line);
}

void CMaskedCheck::begin_record(std::string_view name) {
  end_record();
  if (!reader_.next_sequence()) {
    throw LineFault("the record \"" + std::string(name) + "\" is not in " + report_name_ +
                    ", which has no more of them");
  }
  name_ = name;
  if (reader_.sequence().name != name) {
    throw LineFault("the record \"" + name_ + "\" is not the one that comes next, \"" +
                    std::string(reader_.sequence().name) + "\" " + in_report());
  }
  is_in_record_ = true;
  position_ = covered_end_ = 0;
  has_repeat_ = reader_.next_repeat();
}

void CMaskedCheck::add_bases(std::string_view bases) {
  const std::int64_t end = position_ + std::ssize(bases);
  if (end > reader_.sequence().length) {
    throw LineFault("the record \"" + name_ + "\" has more bases than the " +
                    std::to_string(reader_.sequence().length) + " of the one " + in_report());
  }
  check_masked(bases, position_, covered_end_);
  while (has_repeat_ && reader_.repeat().start <= end) {
    check_masked(bases, reader_.repeat().start - 1, reader_.repeat().end);
    covered_end_ = std::max(covered_end_, reader_.repeat().end);
    has_repeat_ = reader_.next_repeat();
  }
  position_ = end;
}

/// `bases` begin at the position of the record; `begin` and `end` are positions there.
void CMaskedCheck::check_masked(std::string_view bases, std::int64_t begin,
                                std::int64_t end) const {
  const std::int64_t last = std::min(end, position_ + std::ssize(bases));
  for (std::int64_t i = std::max(begin, position_); i < last; ++i) {
    if (bases[static_cast<std::size_t>(i - position_)] != kMasked) {
      throw LineFault("base " + std::to_string(i + 1) + " of the record \"" + name_ +
                      "\" is not masked, although it lies in a repeat of " + report_name_);
    }
  }
}

void CMaskedCheck::end_record() const {
  if (is_in_record_ && position_ != reader_.sequence().length) {
    throw LineFault("the record \"" + name_ + "\" has " + std::to_string(position_) +
                    " bases, that " + in_report() + " has " +
                    std::to_string(reader_.sequence().length));
  }
}

void CMaskedCheck::finish() {
  end_record();
  if (reader_.next_sequence()) {
    throw InputError("no part has the record \"" + std::string(reader_.sequence().name) + "\" " +
                     in_report());
  }
}

}  // namespace quorix::tools
