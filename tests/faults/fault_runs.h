#pragma once

/// @file
/// The runs that meet the faults: a small input, each search mode, each place for the outputs.

#include <cstdint>
#include <string>
#include <vector>

#include "faults/program_run.h"

namespace quorix::testing {

/// What the command line of this test program names.
struct FaultSettings {
  std::string program;           ///< the program under test
  std::string careless_program;  ///< one that looks at no result of its writes
  std::string failing_memory;    ///< the library whose allocations fail
  std::uint64_t seed = 1;        ///< for moments that are random
  std::size_t min_points = 0;    ///< that all tests together have to reach
  bool is_brief = false;         ///< fewer runs, for programs that a sanitizer slows down
};

/// Set by `main`.
extern FaultSettings fault_settings;

/// How the program is called.
struct RunShape {
  std::string mode;  ///< as -M has it
  bool has_report_file;
  bool is_masked;

  /// For messages of a test.
  [[nodiscard]] std::string name() const;
  [[nodiscard]] RunPlan plan() const;
  /// The report's name in the program's messages.
  [[nodiscard]] std::string report_target() const;
};

/// The three of the program; in brief the slowest one alone.
std::vector<std::string> search_modes();

/// Every mode with every place for the outputs.
std::vector<RunShape> all_run_shapes();

/// One of them for each mode, with all three files.
std::vector<RunShape> three_file_shapes();

// The standard streams as bits: 1, 2 and 4 for the descriptors 0, 1 and 2.
constexpr unsigned kOutputBit = 2;
constexpr unsigned kMessagesBit = 4;

/// In the new process: closes the streams of these bits.
void close_streams(unsigned bits);

/// A folder that holds the input: eight small records, with every kind of edit among their repeats,
/// an empty record and one without a name.
class CFaultFolder : public CTemporaryFolder {
 public:
  CFaultFolder();

  /// The bytes of the input.
  [[nodiscard]] static const std::string& input();
};

}  // namespace quorix::testing
