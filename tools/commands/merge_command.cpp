// Reports are read twice: first the heads, which decide whether the parts fit together and in which
// order they come, then all of it. What is copied is what the report reader checks, at the same
// time. A file gets its name when everything is checked.

#include "tools/commands/merge_command.h"

#include <memory>
#include <optional>
#include <unordered_map>

#include "tools/commands/progress.h"
#include "tools/commands/report_choice.h"
#include "tools/io/byte_input.h"
#include "tools/io/errors.h"
#include "tools/io/line_reader.h"
#include "tools/io/output.h"
#include "tools/merge/body_copy.h"
#include "tools/merge/masked_copy.h"
#include "tools/merge/part_files.h"
#include "tools/merge/report_parts.h"
#include "tools/report/report_reader.h"
#include "tools/report/text_cursor.h"

namespace quorix::tools {

namespace {

void check_options(const MergeOptions& options) {
  check_output_name(options.output_name, {options.parts});
  if (options.report_name.empty()) return;
  if (!options.is_masked) throw UsageError("--report is for --masked alone");
  check_output_name(options.output_name, {{options.report_name}});
}

/// Returns the name that the head of the merged report has, if any.
std::optional<std::string> reported_output_name(const std::string& output_name) {
  if (output_name.empty() || output_name == "-") return std::nullopt;
  if (output_name.find('\n') != std::string::npos) {
    throw UsageError("the name of the output holds a line feed, which the head of a report cannot");
  }
  return output_name;
}

/// Checks a part, copies its blocks and returns the number of its records.
std::uint64_t copy_blocks(const ReportPart& part, COutput& output, CProgress& progress) {
  CBodyCopy copy(&output);
  CReportReader reader(std::make_unique<CCopiedInput>(open_input(part.name), copy), part.name,
                       false);
  if (copy.head(reader.byte_count()) != part.head) {
    throw InputError(part.name + ": this part has changed while it was read");
  }
  copy.begin_body(reader.byte_count());
  std::uint64_t record_count = 0;
  for (; reader.next_sequence(); ++record_count) {
    while (reader.next_repeat()) progress.note(part.name, reader.byte_count());
  }
  return record_count;
}

void merge_reports(const MergeOptions& options, COutput& output) {
  std::vector<ReportPart> parts;
  for (const std::string& name : options.parts) parts.push_back(read_part(name));
  check_same_run(parts);
  sort_by_range(parts);
  output.add(merged_head(parts, reported_output_name(options.output_name)));
  CRecordCount record_count;
  CProgress progress;
  for (const ReportPart& part : parts) record_count.add(part, copy_blocks(part, output, progress));
  output.add(kClosingLine);
  output.add('\n');
}

/// What masked copies are merged with.
class CMaskedMerge {
 public:
  CMaskedMerge(const MergeOptions& options, COutput& output) : options_(options), output_(output) {
    if (options.report_name.empty()) return;
    const std::string name = shown_input_name(options.report_name);
    report_.emplace(open_input(options.report_name), name, false);
    check_.emplace(*report_, name);
  }

  void run() {
    for (const std::string& name : options_.parts) copy_part(name);
    if (!check_) return;
    try {
      check_->finish();
    } catch (const LineFault& fault) {
      throw InputError(options_.parts.back() + ": " + fault.what());
    }
  }

 private:
  void copy_part(const std::string& name) {
    CLineReader reader(open_input(name));
    CMaskedLines lines;
    std::string_view line;
    while (reader.next_line(line)) {
      try {
        check_line(line, lines, name);
      } catch (const LineFault& fault) {
        throw InputError(name + ":" + std::to_string(reader.line_number()) + ": " + fault.what());
      }
      output_.add(line);
      output_.add('\n');
      progress_.note(name, reader.byte_count());
      reader.set_mark();
    }
    if (reader.has_open_line() || !reader.cut_reason().empty()) {
      const std::string reason = reader.cut_reason();
      throw InputError(name + ":" + std::to_string(reader.line_number() + 1) +
                       ": the masked copy ends within a line" +
                       (reason.empty() ? "" : ", " + reason));
    }
  }

  void check_line(std::string_view line, CMaskedLines& lines, const std::string& part) {
    const bool is_header = lines.is_header(line);
    if (check_ && is_header) {
      check_->begin_record(line.substr(1));
    } else if (check_) {
      check_->add_bases(line);
    } else if (is_header) {
      check_is_new(std::string(line.substr(1)), part);
    }
  }

  /// Without a report, a name in two parts is taken for a record that is there twice.
  void check_is_new(const std::string& record, const std::string& part) {
    const std::string& found = part_of_record_.try_emplace(record, part).first->second;
    if (found == part) return;
    throw LineFault("the record \"" + record + "\" is also in " + found +
                    "; --report tells whether it may be");
  }

  const MergeOptions& options_;
  COutput& output_;
  std::optional<CReportReader> report_;
  std::optional<CMaskedCheck> check_;
  std::unordered_map<std::string, std::string> part_of_record_;  ///< used without a report
  CProgress progress_;
};

}  // namespace

void merge(const MergeOptions& options) {
  check_options(options);
  check_part_files(options.parts);
  COutput output(options.output_name);
  try {
    if (options.is_masked) {
      CMaskedMerge(options, output).run();
    } else {
      merge_reports(options, output);
    }
  } catch (const InputCutShort& cut) {
    throw InputError(cut.what());  // there is no way to allow that here
  }
  output.finish();
}

}  // namespace quorix::tools
