#include "faults/verdict.h"

#include <algorithm>
#include <cstring>

namespace quorix::testing {

namespace {

constexpr const char* kSuccessText = "Analysis finished successfully.";
constexpr const char* kNoEdits = "Program aborded due to failed realloc!\n";
constexpr int kFirstErrorStatus = 152;
constexpr int kLastErrorStatus = 155;

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

bool is_beginning_of(const std::string& part, const std::string& whole) {
  return whole.starts_with(part);
}

/// The texts of all outputs of a run.
std::vector<const std::string*> outputs_of(const Outcome& outcome) {
  return {&outcome.output, &outcome.report, &outcome.masked};
}

bool has_success_mark(const Outcome& outcome) {
  return contains(outcome.output, kSuccessMark) || contains(outcome.report, kSuccessMark);
}

/// Of an outcome whose last line of standard output says that edits could not grow.
std::string find_fault_without_edits(Outcome outcome, const Outcome& undisturbed) {
  outcome.output.erase(outcome.output.size() - std::strlen(kNoEdits));
  if (has_success_mark(outcome)) return "a mark of success without all edits";
  if (contains(outcome.messages, kSuccessText)) return "success is reported without all edits";
  for (std::size_t i = 0; i < outputs_of(outcome).size(); ++i) {
    if (!is_beginning_of(*outputs_of(outcome)[i], *outputs_of(undisturbed)[i])) {
      return "an output without all edits is not the beginning of the undisturbed one";
    }
  }
  return {};
}

std::string find_fault_of_success(const Outcome& outcome, const Outcome& undisturbed,
                                  const Expectation& expectation) {
  if (expectation.may_lack_edits && lacks_edits(outcome)) {
    return find_fault_without_edits(outcome, undisturbed);
  }
  if (outcome.output != undisturbed.output) return "status 0 with another standard output";
  if (outcome.report != undisturbed.report) return "status 0 with another report";
  if (outcome.masked != undisturbed.masked) return "status 0 with another masked copy";
  return {};
}

/// Of the texts on standard error of a run with a failing status.
std::string find_fault_of_messages(const Outcome& outcome, const std::string& expected) {
  const std::string& messages = outcome.messages;
  const std::size_t place = messages.find(expected);
  if (place == std::string::npos) return "the message is missing";
  if (messages.find(kSuccessText, place) != std::string::npos) {
    return "success is reported after the message";
  }
  if (outcome.status < kFirstErrorStatus || outcome.status > kLastErrorStatus) return {};
  const std::string closing_text = "\nAnalysis has been aborted due to errors. Error number: " +
                                   std::to_string(outcome.status - 256) + "\n";
  return contains(messages.substr(place), closing_text) ? "" : "the closing text is missing";
}

/// Of what a run leaves that has failed or was ended.
std::string find_fault_of_remains(const Outcome& outcome, const Outcome& undisturbed,
                                  const Expectation& expectation) {
  if (has_success_mark(outcome)) {
    const bool is_whole =
        outcome.output == undisturbed.output && outcome.report == undisturbed.report;
    if (!is_whole) return "a mark of success in a report that is not whole";
    if (!expectation.is_at_the_end) return "a mark of success after a failure";
  }
  if (!expectation.is_at_the_end && contains(outcome.messages, kSuccessText)) {
    return "success is reported of a run that has failed";
  }
  if (expectation.may_have_holes) return {};
  for (std::size_t i = 0; i < outputs_of(outcome).size(); ++i) {
    if (!is_beginning_of(*outputs_of(outcome)[i], *outputs_of(undisturbed)[i])) {
      return "an output is not the beginning of the undisturbed one";
    }
  }
  return {};
}

}  // namespace

std::string failed_write_text(const std::string& target, int error) {
  return "Sorry! Failed to write to file\n   \"" + target + "\"\n" + std::strerror(error) + "\n";
}

std::string failed_open_text(const std::string& target) {
  return "Sorry! Failed to open file\n   \"" + target + "\"\nas output file.\n";
}

std::string no_memory_text() {
  return "Sorry! There is not enough memory for this analysis.\n";
}

bool lacks_edits(const Outcome& outcome) {
  return outcome.status == 0 && outcome.output.ends_with(kNoEdits);
}

std::string find_fault(const Outcome& outcome, const Outcome& undisturbed,
                       const Expectation& expectation) {
  if (outcome.signal != 0) {
    if (std::count(expectation.signals.begin(), expectation.signals.end(), outcome.signal) == 0) {
      return "ended by signal " + std::to_string(outcome.signal);
    }
    return find_fault_of_remains(outcome, undisturbed, expectation);
  }
  const auto allowed = expectation.statuses.find(outcome.status);
  if (allowed == expectation.statuses.end()) {
    return "status " + std::to_string(outcome.status) + " is not allowed";
  }
  if (outcome.status == 0) return find_fault_of_success(outcome, undisturbed, expectation);
  if (!expectation.has_no_messages) {
    const std::string fault = find_fault_of_messages(outcome, allowed->second);
    if (!fault.empty()) return fault;
  }
  return find_fault_of_remains(outcome, undisturbed, expectation);
}

}  // namespace quorix::testing
