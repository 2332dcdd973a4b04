#include "support/engine_comparison.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>

namespace quorix::testing {

namespace {

/// `record` with ever smaller pieces cut out as long as the engines still differ.
NamedBases shrink_record(NamedBases record) {
  for (std::size_t piece = record.bases.size() / 2; piece > 0; piece /= 2) {
    for (std::size_t start = 0; start + piece <= record.bases.size();) {
      NamedBases shorter = record;
      shorter.bases.erase(start, piece);
      if (compare_engines(shorter).is_equal()) {
        start += piece;
      } else {
        record = shorter;
      }
    }
  }
  return record;
}

}  // namespace

Comparison compare_engines(const NamedBases& record) {
  return {run_program(fasta_text({record})), run_plain_engine({record})};
}

std::string describe_difference(const NamedBases& record, const Options& options) {
  const NamedBases smallest = shrink_record(record);
  const auto [program, plain] = compare_engines(smallest);
  return "The engines differ.\nFASTA:\n" + fasta_text({smallest}) + "Command line:\nquorix " +
         joined(options) + " --maskX in.fa\nProgram:\n" + program.report + program.masked +
         "Plain engine:\n" + plain.report + plain.masked;
}

void silence_standard_error() {
  const int descriptor = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (descriptor == -1 || ::dup2(descriptor, STDERR_FILENO) == -1) {
    throw std::runtime_error("cannot silence standard error");
  }
  ::close(descriptor);
}

}  // namespace quorix::testing
