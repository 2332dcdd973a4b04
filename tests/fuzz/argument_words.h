#pragma once

/// @file
/// The words of command lines that mean something.

#include <array>

#include "settings/settings.h"

namespace quorix::fuzz {

/// An option with a whole number, and the setting that the number is stored into.
struct IntOption {
  const char* flag;  ///< "" if there is none
  const char* name;
  int* setting;
};

/// One with a number that is taken as unsigned, or stored as if it were.
struct UnsignedOption {
  const char* flag;
  const char* name;
  std::uint32_t* setting;
};

struct FloatOption {
  const char* flag;
  const char* name;
  float* setting;
};

inline const std::array kIntOptions{
    IntOption{"-N", "--succN", &global_Ns_allowed_in_a_row},
    IntOption{"", "--reportUnit", &global_report_unit_mode},
    IntOption{"", "--NPerfectionMode", &global_N_and_perfection_mode},
    IntOption{"", "--printRepeatSeqMode", &global_print_sat_seq_mode},
    IntOption{"", "--outputFormat", &global_print_sat_mode},
    IntOption{"-f", "--flanking", &global_flanking},
    IntOption{"-R", "--maximum_score_reduction", &global_maximum_scorereduction},
    IntOption{"-r", "--recursion", &global_maximum_recursion_depth},
    IntOption{"", "--minLength_a", &global_min_length_a},
    IntOption{"-l", "--minLength", &global_min_length},
    IntOption{"", "--minScore_a", &global_min_score_a},
    IntOption{"-s", "--minScore", &global_min_score},
    IntOption{"-m", "--mismatchScore", &global_mismatch_score},
    IntOption{"-g", "--indelScore", &global_indel_score},
};

inline const std::array kUnsignedOptions{
    UnsignedOption{"", "--firstSeq", &global_sequence_from},
    UnsignedOption{"", "--lastSeq", &global_sequence_to},
    UnsignedOption{"-u", "--minUnitLen", &global_min_unit_length},
    UnsignedOption{"-U", "--maxUnitLen", &global_max_unit_length},
};

inline const std::array kFloatOptions{
    FloatOption{"-P", "--minPerfection", &global_perfection_minimum},
    FloatOption{"", "--minLength_b", &global_min_length_bx},
    FloatOption{"", "--minScore_b", &global_min_score_bx},
};

/// Each of them stands for itself after a byte of 128 and more in an input of the harness.
inline constexpr std::array kWords{"-N",
                                   "--succN",
                                   "--reportUnit",
                                   "--NPerfectionMode",
                                   "--printRepeatSeqMode",
                                   "--outputFormat",
                                   "-f",
                                   "--flanking",
                                   "-R",
                                   "--maximum_score_reduction",
                                   "-r",
                                   "--recursion",
                                   "--minLength_a",
                                   "-l",
                                   "--minLength",
                                   "--minScore_a",
                                   "-s",
                                   "--minScore",
                                   "-m",
                                   "--mismatchScore",
                                   "-g",
                                   "--indelScore",
                                   "--firstSeq",
                                   "--lastSeq",
                                   "-u",
                                   "--minUnitLen",
                                   "-U",
                                   "--maxUnitLen",
                                   "-P",
                                   "--minPerfection",
                                   "--minLength_b",
                                   "--minScore_b",
                                   "-M",
                                   "--searchMode",
                                   "--NsAsMissense",
                                   "--maskX",
                                   "-D",
                                   "--dontRemoveMostlyOverlapping",
                                   "-h",
                                   "--help",
                                   "--version",
                                   "--",
                                   "--ignore_rest",
                                   "exact",
                                   "extendExact",
                                   "imperfect",
                                   "in.fa",
                                   "0",
                                   "1",
                                   "2",
                                   "3",
                                   "-1",
                                   "-2",
                                   "-6",
                                   "7",
                                   "0.5",
                                   "1e9",
                                   "-0.1",
                                   "255",
                                   "256",
                                   "2147483647",
                                   "2147483648",
                                   "-2147483648",
                                   "4294967295"};

}  // namespace quorix::fuzz
