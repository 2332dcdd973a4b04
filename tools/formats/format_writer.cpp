#include "tools/formats/format_writer.h"

#include <stdexcept>

#include "tools/formats/jsonl_writer.h"
#include "tools/formats/tsv_writer.h"

namespace quorix::tools {

std::unique_ptr<CFormatWriter> make_format_writer(const std::string& format, COutput& output) {
  if (format == "jsonl") return std::make_unique<CJsonlWriter>(output);
  if (format == "tsv") return std::make_unique<CTsvWriter>(output);
  throw std::logic_error("no format has the name " + format);
}

}  // namespace quorix::tools
