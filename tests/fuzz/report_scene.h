#pragma once

/// @file
/// Records with repeats whose every base and edit is known, made from a fuzz input.

#include <list>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "reference/plain_repeat.h"
#include "report/csat.h"
#include "sequence/sequence_mol.h"

namespace quorix::fuzz {

struct ReportScene {
  std::string name;
  std::string bases;
  std::vector<reference::Repeat> repeats;
};

/// A record of some repeats in a row, each after a copy of its unit. N's are edits or unknown
/// bases, as the settings say. Most counts are true, and some are far larger, up to 2^40.
[[nodiscard]] ReportScene take_scene(CFuzzInput& input);

/// The repeats of `scene` as the program holds them, over the text of `record`, which gets name and
/// bases of the scene. They live in a pool of this function's own, until its next call.
[[nodiscard]] std::list<Csat*> as_program_holds(const ReportScene& scene, CSequence_Mol& record);

}  // namespace quorix::fuzz
