#pragma once

/// @file
/// The settings of a run.
///
/// They are process-wide: `init_param` sets their defaults, the command line
/// (`driver/command_line.h`) overwrites and checks them once, and after that every room only reads
/// them. A test may set them directly before it builds what reads them.
///
/// Lengths are in bp. Sequences are numbered from 1 in file order, and both ends of a range are
/// inclusive. A match always scores +1.

#include <cstdint>
#include <limits>
#include <string>

namespace quorix {

/// Values of `global_search_mode`; every other value counts as imperfect.
inline constexpr int kSearchExact = 0;
inline constexpr int kSearchExtendExact = 1;
inline constexpr int kSearchImperfect = 2;

/// Values of `global_N_and_perfection_mode`: how a perfection counts an N.
inline constexpr int kNAsMismatch = 0;
inline constexpr int kNAsNeutral = 1;
inline constexpr int kNAsMatch = 2;

/// Values of `global_report_unit_mode`; every other value counts as alphabetical.
inline constexpr int kUnitAsFound = 0;
inline constexpr int kUnitAlphabetical = 1;
inline constexpr int kUnitAlphabeticalBothStrands = 2;

/// Values of `global_print_sat_seq_mode`; every other value counts as none.
inline constexpr int kPrintNoSequence = 0;
inline constexpr int kPrintSequence = 1;
inline constexpr int kPrintAlignment = 2;

/// Values of `global_print_sat_mode`; every other value counts as extended.
inline constexpr int kFormatQuorix = 0;
inline constexpr int kFormatExtendedQuorix = 1;
inline constexpr int kFormatSputnik = 2;

/// `global_sequence_to` with this value means "up to the last sequence".
inline constexpr std::uint32_t kLastSequence = std::numeric_limits<std::uint32_t>::max();

/// `global_maximum_scorereduction` with this value means "no limit".
inline constexpr int kNoScoreReductionLimit = std::numeric_limits<int>::max();

/// Values of `global_maximum_recursion_depth` up to this one limit the edits of the look-ahead.
inline constexpr int kMaxRecursionLimit = 255;

/// Path of the FASTA file that is searched.
extern std::string global_input_filename;
/// Path of the report file; empty means standard output.
extern std::string global_output_filename;
/// First sequence that is searched, from 1. Default 1.
extern std::uint32_t global_sequence_from;
/// Last sequence that is searched, inclusive. Default `kLastSequence`.
extern std::uint32_t global_sequence_to;
/// The search that runs, see `kSearchExact` and the next two. Default imperfect.
extern int global_search_mode;
/// Reserved: set to 0 and never read.
extern int global_trim_mode;
/// How N counts in a perfection, see `kNAsMismatch`. Default mismatch.
extern int global_N_and_perfection_mode;
/// How units are printed, see `kUnitAsFound`. Default both strands.
extern int global_report_unit_mode;
/// How the bases of a repeat are printed, see `kPrintNoSequence`. Default alignment.
extern int global_print_sat_seq_mode;
/// The format of a repeat's line, see `kFormatQuorix`. Default extended.
extern int global_print_sat_mode;
/// Bases printed to the left and right of a printed repeat, 0 or more. Default 0.
extern int global_flanking;
/// Minimum perfection in percent; the command line accepts only 0. Default 0.
extern float global_perfection_minimum;
/// Edits on a path of the look-ahead, 1 or more. Above `kMaxRecursionLimit` there is no limit,
/// since the count of edits has 8 bits and is compared for equality. Default 5.
extern int global_maximum_recursion_depth;
/// How far the score may fall below the best score so far. Default `kNoScoreReductionLimit`.
extern int global_maximum_scorereduction;
/// Minimum unit length searched; 0 is allowed, and length 0 finds nothing. Default 1.
extern std::uint32_t global_min_unit_length;
/// Maximum unit length searched, inclusive, not below the minimum. Default 6.
extern std::uint32_t global_max_unit_length;
/// True: N is a mismatch; false: N is neutral, with score 0. Default false.
extern bool global_treat_Ns_as_missense;
/// Consecutive N's that a repeat may hold, 0 or more. Default 4.
extern int global_Ns_allowed_in_a_row;
/// Constant term of the minimum score. Default 6.
extern int global_min_score;
/// Offset of the minimum score's linear term. Default 0.
extern int global_min_score_a;
/// Factor of the minimum score's linear term, per bp of unit. Default 1.
extern float global_min_score_bx;
/// Constant term of the minimum length, in bp. Default 1.
extern int global_min_length;
/// Offset of the minimum length's linear term. Default 0.
extern int global_min_length_a;
/// Factor of the minimum length's linear term, per bp of unit. Default 0.
extern float global_min_length_bx;
/// Score of a mismatch, -2 or lower. Default -6.
extern int global_mismatch_score;
/// Score of an inserted or deleted base, -2 or lower. Default -6.
extern int global_indel_score;
/// Reserved: set to false and never read.
extern bool global_clip_overlapping;
/// True: of two mostly overlapping repeats the lower-scoring one is dropped. Default true.
extern bool global_remove_mostly_hidden;
/// True: a copy of the input is written in which repeats are 'X'. Default false.
extern bool global_mask_repeats;

/// Reserved status word of the run: never read or written.
extern int run_status;

/// Sets every setting to its default, except the two file names, which are empty from the start and
/// belong to the command line.
void init_param();

}  // namespace quorix
