// Laws of files and records: what does not change what is reported.

#include <algorithm>

#include "property/generators.h"
#include "support/engine_comparison.h"

namespace quorix::testing {
namespace {

RC_GTEST_PROP(RecordLaws, program_and_plain_engine_agree, ()) {
  silence_standard_error();
  apply_any_options();
  const auto records = *records_generator();
  RC_PRE(!records.empty());
  RC_ASSERT(run_program(fasta_text(records)) == run_plain_engine(records));
}

RC_GTEST_PROP(RecordLaws, line_length_and_line_ends_change_nothing, ()) {
  silence_standard_error();
  apply_any_options();
  const auto records = *records_generator();
  RC_PRE(!records.empty());
  const auto line_length = *rc::gen::inRange<std::size_t>(1, 500);
  const auto line_end = *rc::gen::element<std::string>("\n", "\r\n", "\r", "\n\n", "\r\r\n");
  RC_ASSERT(run_program(fasta_text(records, line_length, line_end)) ==
            run_program(fasta_text(records)));
}

RC_GTEST_PROP(RecordLaws, letter_case_and_dropped_characters_change_nothing, ()) {
  silence_standard_error();
  apply_any_options();
  const auto bases = *bases_generator();
  std::string written;
  for (const char base : bases) {
    written += *rc::gen::element<std::string>("", "", "", " ", "-", "*", "\t", "\n");
    const bool is_lower = *rc::gen::arbitrary<bool>();
    written += is_lower ? static_cast<char>(base - 'A' + 'a') : base;
  }
  RC_ASSERT(run_program(">name\n" + written + "\n") == run_program(fasta_text({{"name", bases}})));
}

RC_GTEST_PROP(RecordLaws, a_record_is_reported_alike_alone_and_among_others, ()) {
  silence_standard_error();
  apply_any_options();
  const auto records = *records_generator();
  RC_PRE(!records.empty());
  RunOutput one_by_one;
  for (const NamedBases& record : records) {
    const RunOutput alone = run_program(fasta_text({record}));
    one_by_one.report += alone.report;
    one_by_one.masked += alone.masked;
  }
  RC_ASSERT(run_program(fasta_text(records)) == one_by_one);
}

RC_GTEST_PROP(RecordLaws, a_masked_copy_differs_from_the_record_in_x_alone, ()) {
  silence_standard_error();
  apply_any_options();
  const auto bases = *bases_generator();
  const std::string masked = run_program(fasta_text({{"name", bases}})).masked;
  const std::string unmasked = fasta_text({{"name", bases}}, 80);
  RC_ASSERT(masked.size() == unmasked.size());
  RC_ASSERT(std::equal(masked.begin(), masked.end(), unmasked.begin(),
                       [](char left, char right) { return left == right || left == 'X'; }));
}

}  // namespace
}  // namespace quorix::testing
