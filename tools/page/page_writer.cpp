// Layout of the data. "Number" and "numbers" are as CPackedText::add_number writes them.
//
// Table: length of the head (number), the head (JSON, see page_head.cpp); then columns, each
// complete before the next:
//   for each record: length of its identifier | the identifiers' bytes | length | number of repeats
//   |
//     bases in repeats | number of rows | 1 if it is complete, else 0
//   for each window of each record, in their order: bases in repeats
//   for each word (unit or motif): its length | the words' letters
//   for each row: start minus the start of the row before in its record | length |
//     normalized length minus length | score | mismatches | insertions | deletions | N's (-1 if not
//     told) | twice the perfection, without its point (1 if there is none) | word of the unit |
//     word of the motif plus 1, or 0 if that is not known
//
// Details, for each row: length of the bases, or -1 if the details are left out | length of the
// unit copies | lengths of edits, left flank and right flank; then the bases of all rows | the unit
// copies | the edits | the left flanks | the right flanks.
//   Bases and unit copies are as folded_alignment.h describes them. The line of the unit repeats
//   the motif, or begins with the unit copies where there are any, with '-' for insertions.

#include "tools/page/page_writer.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/page/packed_text.h"
#include "tools/page/page_head.h"
#include "tools/page/page_template.h"

namespace quorix::tools {

namespace {

/// The distinct units and motifs, by the order in which rows have them first.
class CWordList {
 public:
  std::int64_t number_of(std::string_view word) {
    const auto [found, is_new] = numbers_.try_emplace(word, words_.size());
    if (is_new) words_.push_back(word);
    return static_cast<std::int64_t>(found->second);
  }
  [[nodiscard]] const std::vector<std::string_view>& words() const { return words_; }

 private:
  std::unordered_map<std::string_view, std::size_t> numbers_;
  std::vector<std::string_view> words_;
};

struct RowWords {
  std::int64_t unit;
  std::int64_t motif;  ///< plus 1; 0 for none
};

/// Adds a column: a number for each item.
template <class Items, class Number>
void add_column(CPackedText& data, const Items& items, const Number& number) {
  for (const auto& item : items) data.add_number(static_cast<std::int64_t>(number(item)));
}

/// Returns twice the perfection without its point, or 1.
std::int64_t perfection_digits(const PageRow& row) {
  std::string text(row.figures.perfection);
  if (text.find_first_of("ni") != std::string::npos) return 1;
  text.erase(std::remove(text.begin(), text.end(), '.'), text.end());
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number * 2;
}

void add_records(CPackedText& data, const CPageContents& contents) {
  const std::vector<RecordSummary>& records = contents.summary().records();
  std::vector<std::int64_t> row_counts(records.size());
  for (const PageRow& row : contents.sample().rows()) ++row_counts[row.sequence];

  add_column(data, records, [](const RecordSummary& record) { return record.identifier.size(); });
  for (const RecordSummary& record : records) data.add(record.identifier);
  add_column(data, records, [](const RecordSummary& record) { return record.length; });
  add_column(data, records, [](const auto& record) { return record.figures.repeat_count; });
  add_column(data, records, [](const auto& record) { return record.figures.base_count; });
  add_column(data, row_counts, [](std::int64_t count) { return count; });
  add_column(data, records, [](const auto& record) { return record.is_complete ? 1 : 0; });
}

void add_starts(CPackedText& data, const std::vector<PageRow>& rows) {
  std::int64_t previous = 0;
  std::uint32_t sequence = 0;
  for (const PageRow& row : rows) {
    if (row.sequence != sequence) previous = 0;
    data.add_number(row.figures.start - previous);
    previous = row.figures.start;
    sequence = row.sequence;
  }
}

void add_rows(CPackedText& data, const std::vector<PageRow>& rows,
              const std::vector<RowWords>& words) {
  add_starts(data, rows);
  add_column(data, rows, [](const PageRow& row) { return row.figures.length(); });
  add_column(data, rows, [](const PageRow& row) {
    return row.figures.normalized_length - row.figures.length();
  });
  for (const auto member : {&Repeat::score, &Repeat::mismatches, &Repeat::insertions,
                            &Repeat::deletions, &Repeat::ns}) {
    add_column(data, rows, [&](const PageRow& row) { return row.figures.*member; });
  }
  add_column(data, rows, perfection_digits);
  add_column(data, words, [](const RowWords& word) { return word.unit; });
  add_column(data, words, [](const RowWords& word) { return word.motif; });
}

}  // namespace

void write_table_data(const CPageContents& contents, COutput& output) {
  const std::vector<PageRow>& rows = contents.sample().rows();
  CWordList list;
  std::vector<RowWords> words;
  words.reserve(rows.size());
  for (const PageRow& row : rows) {
    const std::int64_t unit = list.number_of(row.figures.unit);
    const std::string_view motif = row.figures.motif;
    words.push_back({unit, motif.empty() ? 0 : list.number_of(motif) + 1});
  }

  CPackedText data(output);
  const std::string head = page_head(contents, list.words().size());
  data.add_number(static_cast<std::int64_t>(head.size()));
  data.add(head);
  add_records(data, contents);
  add_column(data, contents.density().counts(), [](std::int64_t count) { return count; });
  add_column(data, list.words(), [](std::string_view word) { return word.size(); });
  for (const std::string_view word : list.words()) data.add(word);
  add_rows(data, rows, words);
  data.finish();
}

void write_detail_data(const CPageContents& contents, COutput& output) {
  const std::vector<PageRow>& rows = contents.sample().rows();
  CPackedText data(output);
  add_column(data, rows, [](const PageRow& row) {
    return row.details == nullptr ? -1 : static_cast<std::int64_t>(row.figures.bases.size());
  });
  for (const auto member :
       {&Repeat::aligned_unit, &Repeat::edits, &Repeat::left_flank, &Repeat::right_flank}) {
    add_column(data, rows, [&](const PageRow& row) { return (row.figures.*member).size(); });
  }
  for (const auto member : {&Repeat::bases, &Repeat::aligned_unit, &Repeat::edits,
                            &Repeat::left_flank, &Repeat::right_flank}) {
    for (const PageRow& row : rows) data.add(row.figures.*member);
  }
  data.finish();
}

void write_page(const CPageContents& contents, COutput& output) {
  const std::string_view page = page_template();
  const std::size_t table = page.find(kTableMark);
  const std::size_t details = page.find(kDetailMark);
  output.add(page.substr(0, table));
  write_table_data(contents, output);
  const std::size_t after_table = table + kTableMark.size();
  output.add(page.substr(after_table, details - after_table));
  write_detail_data(contents, output);
  output.add(page.substr(details + kDetailMark.size()));
}

}  // namespace quorix::tools
