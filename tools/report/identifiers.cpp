#include "tools/report/identifiers.h"

#include <algorithm>

#include "tools/io/errors.h"

namespace quorix::tools {

namespace {

/// What ends the first word of a name. A name holds no line feed or carriage return.
constexpr std::string_view kWhiteSpace = " \t\v\f";

}  // namespace

const std::string& CIdentifiers::add(const std::string& report_name,
                                     const ReportedSequence& sequence) {
  const std::string place = report_name + ":" + std::to_string(sequence.line);
  const std::string_view identifier =
      has_full_names_ ? sequence.name
                      : sequence.name.substr(0, sequence.name.find_first_of(kWhiteSpace));
  if (identifier.empty()) {
    throw InputError(place + ": the record \"" + std::string(sequence.name) +
                     "\" has no identifier: its name is empty or begins with white space");
  }
  const auto [found, is_new] =
      records_.try_emplace(std::string(identifier), Record{std::string(sequence.name), place});
  if (!is_new) {
    throw InputError(
        place + ": the record \"" + std::string(sequence.name) + "\" has the identifier of \"" +
        found->second.name + "\" at " + found->second.place +
        (found->second.name == sequence.name ? "" : "; --full-names takes whole names"));
  }
  return found->first;
}

}  // namespace quorix::tools
