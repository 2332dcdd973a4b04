#pragma once

/// @file
/// The formats that reports are converted to, behind one interface.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/io/output.h"
#include "tools/report/repeat.h"

namespace quorix::tools {

/// A record as an output names it.
struct OutputSequence {
  std::string_view identifier;
  std::int64_t length = 0;  ///< in bp
};

/// Writes repeats in one format. The calls come in this order: `begin`; for each record
/// `begin_sequence`, `add` for each of its repeats, and `end_sequence` if the record is complete;
/// `end`. Formats that `can_be_sorted` also take repeats of any record after the end of all
/// records. Identifiers must stay where they are. Each call may throw OutputError, and InputError
/// for what the format cannot hold.
class CFormatWriter {
 public:
  explicit CFormatWriter(COutput& output) : output_(output) {}
  CFormatWriter(const CFormatWriter&) = delete;
  CFormatWriter& operator=(const CFormatWriter&) = delete;
  virtual ~CFormatWriter() = default;

  virtual void begin() {}
  virtual void begin_sequence(const OutputSequence& /*sequence*/) {}
  virtual void add(const OutputSequence& sequence, const Repeat& repeat) = 0;
  virtual void end_sequence(const OutputSequence& /*sequence*/) {}
  virtual void end() {}

  /// False if repeats must come by their positions, with their records.
  [[nodiscard]] virtual bool can_be_sorted() const { return true; }

 protected:
  [[nodiscard]] COutput& output() { return output_; }

 private:
  COutput& output_;
};

/// Makes the writer of a format; `window`, in bp, is for bedgraph alone. REQUIRES: the format is
/// one of `kFormatNames`, and the window of a bedgraph is positive.
std::unique_ptr<CFormatWriter> make_format_writer(const std::string& format, COutput& output,
                                                  std::int64_t window);

}  // namespace quorix::tools
