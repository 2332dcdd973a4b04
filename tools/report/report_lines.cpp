#include "tools/report/report_lines.h"

#include "tools/io/errors.h"

namespace quorix::tools {

std::string_view CReportLines::next() {
  std::string_view line;
  if (!reader_.next_line(line)) fail_as_cut();
  return line;
}

void CReportLines::expect_end() {
  std::string_view line;
  const bool has_line = reader_.next_line(line);
  if (has_line || reader_.has_open_line()) {
    throw InputError(name_ + ":" + std::to_string(reader_.line_number() + (has_line ? 0 : 1)) +
                     ": nothing may follow the closing line of a report");
  }
  if (!reader_.cut_reason().empty()) fail_as_cut();
}

void CReportLines::fail(std::string_view reason, std::uint64_t lines_after) const {
  throw InputError(name_ + ":" + std::to_string(reader_.line_number() - lines_after) + ": " +
                   std::string(reason));
}

void CReportLines::fail_as_cut() const {
  const std::string reason = reader_.cut_reason();
  throw InputCutShort(name_ + ":" + std::to_string(reader_.line_number() + 1) +
                      ": the report ends early" + (reason.empty() ? "" : ", " + reason));
}

}  // namespace quorix::tools
