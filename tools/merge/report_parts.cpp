#include "tools/merge/report_parts.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/merge/body_copy.h"
#include "tools/report/report_reader.h"

namespace quorix::tools {

namespace {

constexpr std::string_view kInputLine = "# Input file name: ";
constexpr std::string_view kOutputLine = "# Output file name:                   ";
constexpr std::string_view kRangeLine = "#    Sequence range to process:       ";

/// A head is some 2 kB long.
constexpr std::size_t kHeadBlockSize = 4096;

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t length = text.find('\n') + 1;
    lines.push_back(text.substr(0, length - 1));
    text.remove_prefix(length);
  }
  return lines;
}

/// The lines of a head that all parts have alike.
std::vector<std::string_view> shared_lines(std::string_view head) {
  std::vector<std::string_view> lines = lines_of(head);
  std::erase_if(lines, [](std::string_view line) {
    return line.starts_with(kOutputLine) || line.starts_with(kRangeLine);
  });
  return lines;
}

std::string last_text(const ReportSettings& settings) {
  return settings.last_sequence ? std::to_string(*settings.last_sequence) : "last sequence";
}

std::string with_range(const ReportPart& part) {
  return part.name + " (" + part.range_text() + ")";
}

/// Throws: InputError unless `next` begins where `part` ends.
void check_neighbours(const ReportPart& part, const ReportPart& next) {
  const std::uint64_t first = next.settings.first_sequence;
  if (first < part.end()) {
    throw InputError(with_range(next) + " begins within the range of " + with_range(part));
  }
  if (first > part.end()) {
    throw InputError("the records " + std::to_string(part.end()) + " - " +
                     std::to_string(first - 1) + " are missing between " + with_range(part) +
                     " and " + with_range(next));
  }
}

}  // namespace

std::uint64_t ReportPart::begin() const {
  return std::max<std::uint64_t>(settings.first_sequence, 1);
}

std::uint64_t ReportPart::end() const {
  return settings.last_sequence ? std::uint64_t{*settings.last_sequence} + 1 : UINT64_MAX;
}

std::string ReportPart::range_text() const {
  return std::to_string(settings.first_sequence) + " - " + last_text(settings);
}

ReportPart read_part(const std::string& file_name) {
  CBodyCopy copy(nullptr);
  const CReportReader reader(std::make_unique<CCopiedInput>(open_input(file_name), copy), file_name,
                             false, kHeadBlockSize);
  return {file_name, reader.settings(), copy.head(reader.byte_count())};
}

void check_same_run(const std::vector<ReportPart>& parts) {
  const std::vector<std::string_view> expected = shared_lines(parts.front().head);
  for (const ReportPart& part : parts) {
    const std::vector<std::string_view> lines = shared_lines(part.head);
    const auto [line, other] =
        std::mismatch(lines.begin(), lines.end(), expected.begin(), expected.end());
    if (line == lines.end() && other == expected.end()) continue;
    // The lines that can lack are neither first nor last, so both heads have one here.
    throw InputError(part.name + " is no part of the same run as " + parts.front().name + ": \"" +
                     std::string(*line) + "\" in its head, \"" + std::string(*other) +
                     "\" in the other");
  }
}

void sort_by_range(std::vector<ReportPart>& parts) {
  std::stable_sort(parts.begin(), parts.end(), [](const ReportPart& left, const ReportPart& right) {
    return std::tuple(left.settings.first_sequence, left.end()) <
           std::tuple(right.settings.first_sequence, right.end());
  });
  for (const ReportPart& part : parts) {
    if (part.end() < part.settings.first_sequence) {
      throw InputError(part.name + ": its range " + part.range_text() + " ends before it begins");
    }
  }
  for (std::size_t i = 1; i < parts.size(); ++i) check_neighbours(parts[i - 1], parts[i]);
}

std::string merged_head(const std::vector<ReportPart>& parts,
                        const std::optional<std::string>& output_name) {
  std::string head;
  for (const std::string_view line : lines_of(parts.front().head)) {
    if (line.starts_with(kOutputLine)) continue;
    if (line.starts_with(kRangeLine)) {
      head += kRangeLine;
      head += std::to_string(parts.front().settings.first_sequence) + " - " +
              last_text(parts.back().settings);
    } else {
      head += line;
    }
    head += '\n';
    if (output_name && line.starts_with(kInputLine)) {
      head += kOutputLine;
      head += *output_name + '\n';
    }
  }
  return head;
}

void CRecordCount::add(const ReportPart& part, std::uint64_t record_count) {
  const std::uint64_t capacity = part.end() - std::min(part.begin(), part.end());
  if (record_count > capacity) {
    throw InputError(with_range(part) + " has " + std::to_string(record_count) +
                     " records, more than its range");
  }
  if (record_count > 0 && !last_part_.empty()) {
    throw InputError(with_range(part) + " has records, although " + last_part_ +
                     " shows that the input has no more than " + std::to_string(last_record_) +
                     "; they are not of one input");
  }
  if (record_count < capacity && last_part_.empty()) {
    last_part_ = with_range(part);
    last_record_ = part.begin() + record_count - 1;
  }
}

}  // namespace quorix::tools
