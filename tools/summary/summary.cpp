// Copies of one unit length have one denominator, so their sum is an integer up to the end. Where
// unit lengths are mixed the quotients are added in the order of the lengths, so that equal repeats
// have equal sums whatever their order.

#include "tools/summary/summary.h"

#include <algorithm>
#include <utility>

namespace quorix::tools {

void CSummary::begin_record(std::string_view identifier, std::int64_t length) {
  record_ = {std::string(identifier), length, true, {}};
  record_sums_ = RepeatSums();
  ++record_number_;
}

void CSummary::add(const Repeat& repeat) {
  record_sums_.add(repeat, record_number_);
  UnitLengthSums& of_length = unit_lengths_[repeat.unit_length];
  if (of_length.sums.record_count != record_number_) {
    record_unit_lengths_.push_back(repeat.unit_length);
    of_length.earlier_normalized_length = of_length.sums.normalized_length;
  }
  of_length.sums.add(repeat, record_number_);
  constexpr UnitForm kForm = UnitForm::kAlphabeticalBothStrands;
  const std::string_view unit =
      form_ == kForm ? repeat.unit : forms_.normal_form(repeat.unit, kForm);
  units_.sums_of(unit).add(repeat, record_number_);
}

void CSummary::end_record(bool is_complete) {
  std::sort(record_unit_lengths_.begin(), record_unit_lengths_.end());
  double copies = 0;
  for (const std::int64_t unit_length : record_unit_lengths_) {
    const UnitLengthSums& of_length = unit_lengths_[unit_length];
    copies += static_cast<double>(of_length.sums.normalized_length -
                                  of_length.earlier_normalized_length) /
              static_cast<double>(unit_length);
  }
  record_unit_lengths_.clear();
  record_.is_complete = is_complete;
  record_.figures = record_sums_.figures(copies);
  searched_length_ += record_.length;
  records_.push_back(std::move(record_));
}

GroupFigures CSummary::total() const {
  GroupFigures total;
  for (const RecordSummary& record : records_) {
    total.repeat_count += record.figures.repeat_count;
    total.base_count += record.figures.base_count;
    total.perfection_sum += record.figures.perfection_sum;
    total.perfection_count += record.figures.perfection_count;
  }
  for (const UnitLengthSummary& summary : unit_lengths()) total.copies += summary.figures.copies;
  return total;
}

std::vector<UnitLengthSummary> CSummary::unit_lengths() const {
  std::vector<UnitLengthSummary> summaries;
  for (const auto& [unit_length, of_length] : unit_lengths_) {
    summaries.push_back({unit_length, of_length.sums.figures_of_length(unit_length)});
  }
  return summaries;
}

UnitSummary CSummary::unit_at(std::uint32_t number) const {
  std::string unit = units_.unit_at(number);
  const auto unit_length = static_cast<std::int64_t>(unit.size());
  return {std::move(unit), units_.sums_at(number).figures_of_length(unit_length)};
}

}  // namespace quorix::tools
