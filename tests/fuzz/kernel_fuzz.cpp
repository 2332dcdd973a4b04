// Every kernel against its slow twin, with the instructions of every kind of processor, over texts
// that end and begin at pages that may not be touched.

#include <array>
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_input.h"
#include "fuzz/harness.h"
#include "fuzz/kernel_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix::fuzz;
  CFuzzInput input(data, size);
  // The twins of the lag sieve and the batch bound cost far more than the others.
  const std::array checks{
      check_match_runs, check_copied_bases, check_bit_set,      check_base_planes,
      check_run_sieve,  check_single_bound, check_lag_sieve,    check_batch_bound,
      check_match_runs, check_copied_bases, check_match_window, check_base_planes,
      check_run_sieve,  check_chain_sieve,  check_group_bound,  check_single_bound};
  checks[input.take_byte() % checks.size()](input);
  return 0;
}
