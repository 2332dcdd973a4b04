#include "tools/formats/format_writer.h"

#include <stdexcept>

#include "tools/formats/bed_writer.h"
#include "tools/formats/bedgraph_writer.h"
#include "tools/formats/format_names.h"
#include "tools/formats/gff3_writer.h"
#include "tools/formats/jsonl_writer.h"
#include "tools/formats/tsv_writer.h"

namespace quorix::tools {

std::unique_ptr<CFormatWriter> make_format_writer(const std::string& format, COutput& output,
                                                  std::int64_t window) {
  if (format == "bed") return std::make_unique<CBedWriter>(output);
  if (format == kBedgraph) return std::make_unique<CBedgraphWriter>(output, window);
  if (format == "gff3") return std::make_unique<CGff3Writer>(output);
  if (format == "jsonl") return std::make_unique<CJsonlWriter>(output);
  if (format == "tsv") return std::make_unique<CTsvWriter>(output);
  throw std::logic_error("no format has the name " + format);
}

}  // namespace quorix::tools
