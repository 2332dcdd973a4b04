#pragma once

/// @file
/// The records of a run: all of them, one after the other, and the steps that this is made of.

#include <cstdint>

#include "driver/run_files.h"
#include "sequence/file.h"
#include "sequence/sequence_mol.h"

namespace quorix {

/// True if the settings ask for record `number`, from 1.
[[nodiscard]] bool is_in_sequence_range(std::uint64_t number);

/// Says where reading failed and, if the device failed, why, and closes the input. Returns the
/// code.
[[nodiscard]] int end_on_read_error(CFile& input);

/// Flushes the report of `record` and, on request, writes the record to the masked copy. Returns
/// `kSuccess`, or the code of a failed write after its message.
/// REQUIRES: `COutputFile::expect_writes` came before what is to be flushed.
[[nodiscard]] int finish_record(const CSequence_Mol& record, RunFiles& files);

/// Reads all records, also those after the range: an error in one of them ends the run as well.
/// Searches, reports and masks those in the range, one after the other, in `record`. Returns
/// `kSuccess`, or the code of a failure after its message. Throws: std::bad_alloc.
[[nodiscard]] int process_records(RunFiles& files, CSequence_Mol& record);

}  // namespace quorix
