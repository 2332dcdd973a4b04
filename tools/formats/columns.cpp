#include "tools/formats/columns.h"

#include <algorithm>
#include <string>

#include "tools/io/errors.h"

namespace quorix::tools {

void add_quotient(COutput& output, std::int64_t length, std::int64_t unit_length) {
  const std::int64_t whole = length / unit_length;
  const std::int64_t rest = length % unit_length;
  const std::int64_t hundredths = (rest * 200 + unit_length) / (2 * unit_length);
  output.add_number(whole + hundredths / 100);
  const char decimals[] = {'.', static_cast<char>('0' + hundredths % 100 / 10),
                           static_cast<char>('0' + hundredths % 10)};
  output.add({decimals, sizeof decimals});
}

void add_copies(COutput& output, const Repeat& repeat) {
  add_quotient(output, repeat.normalized_length, repeat.unit_length);
}

void add_count(COutput& output, std::int64_t count) {
  if (count == kNotTold) {
    output.add(kNoValue);
  } else {
    output.add_number(count);
  }
}

void add_count_if_told(COutput& output, std::string_view key, std::int64_t count) {
  if (count == kNotTold) return;
  output.add(key);
  output.add_number(count);
}

void add_text(COutput& output, std::string_view text) {
  output.add(text.empty() ? kNoValue : text);
}

bool has_perfection(const Repeat& repeat) {
  return repeat.perfection.find_first_of("ni") == std::string_view::npos;
}

void add_perfection(COutput& output, const Repeat& repeat) {
  output.add(has_perfection(repeat) ? repeat.perfection : kNoValue);
}

void refuse_identifier(std::string_view identifier, std::string_view format,
                       const std::string& reason) {
  throw InputError("the identifier \"" + std::string(identifier) + "\" cannot stand in " +
                   std::string(format) + ": " + reason);
}

void check_column_text(std::string_view identifier, std::string_view format) {
  if (identifier.find('\t') != std::string_view::npos) {
    refuse_identifier(identifier, format, "it holds a tab, which ends a column");
  }
}

void check_bed_identifier(std::string_view identifier, std::string_view format) {
  check_column_text(identifier, format);
  for (const std::string_view begin : {"#", "track", "browser"}) {
    if (identifier.starts_with(begin)) {
      refuse_identifier(
          identifier, format,
          "a line that begins with \"" + std::string(begin) + "\" is no repeat there");
    }
  }
}

}  // namespace quorix::tools
