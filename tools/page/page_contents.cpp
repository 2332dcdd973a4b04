#include "tools/page/page_contents.h"

#include <utility>

namespace quorix::tools {

CPageContents::CPageContents(const ReportSettings& settings, const PageLimits& limits,
                             std::string filters)
    : settings_(settings), filters_(std::move(filters)), density_(limits.windows), sample_(limits) {
  summary_.begin_report(settings.unit_form);
}

void CPageContents::begin_sequence(std::string_view identifier, std::int64_t length) {
  summary_.begin_record(identifier, length);
  density_.begin_sequence(length);
  ++sequence_count_;
}

void CPageContents::add(const Repeat& repeat) {
  summary_.add(repeat);
  distributions_.add(repeat);
  density_.add(repeat.start, repeat.end);
  sample_.add(sequence_count_ - 1, repeat);
}

}  // namespace quorix::tools
