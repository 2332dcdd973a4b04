#pragma once

/// @file
/// Which repeats are loci of a catalogue. Loci are repeats whose end may have been cut and whose
/// motif may be several, separated by commas.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/catalogues/catalogue.h"
#include "tools/catalogues/left_out.h"
#include "tools/formats/format_writer.h"
#include "tools/report/repeat.h"
#include "tools/report/report_settings.h"
#include "tools/report/unit_forms.h"

namespace quorix::tools {

/// Throws: InputError if a report with these settings tells no motifs; the message names the
/// options with which `quorix` tells them. `report_name` is that in messages.
void check_motifs_are_told(const ReportSettings& settings, const std::string& report_name);

/// Takes the repeats of a record in the order of the report and hands on its loci in the same
/// order. Memory: the repeats with one start.
class CLocusSelection {
 public:
  /// Loci go to `take`; of their texts only motif and perfection remain, valid during the call.
  /// `catalogue` must stay where it is.
  CLocusSelection(const Catalogue& catalogue,
                  std::function<void(const OutputSequence&, const Repeat&)> take)
      : catalogue_(catalogue), take_(std::move(take)) {}

  void begin_sequence(const OutputSequence& sequence);
  void add(const Repeat& repeat);
  /// Hands on what waits for repeats at the same place.
  void end_sequence();

  /// Returns what was left out and why, as one line; an empty text for nothing.
  [[nodiscard]] std::string summary() const;

 private:
  /// A repeat with texts of its own.
  struct Locus {
    Repeat figures;
    std::string motif;
    std::string perfection;
  };

  [[nodiscard]] std::optional<LeftOutReason> reason_against(const Repeat& repeat) const;
  [[nodiscard]] std::int64_t locus_end(const Repeat& repeat) const;
  void hold(Locus locus);
  bool is_same(const Locus& left, const Locus& right);
  void hand_on();

  const Catalogue& catalogue_;
  std::function<void(const OutputSequence&, const Repeat&)> take_;
  OutputSequence sequence_;
  bool is_unread_ = false;   ///< the reader of the catalogue refuses the identifier
  std::vector<Locus> held_;  ///< all have the same start
  CUnitForms forms_;
  std::int64_t repeat_count_ = 0;
  CLeftOut left_out_;
  std::string unread_identifier_;
};

}  // namespace quorix::tools
