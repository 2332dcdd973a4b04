#pragma once

/// @file
/// The ways in which a run can end. `main` returns these codes; the shell sees their low 8 bits,
/// the number in each comment. The command-line library sets the status of help and version, 0, and
/// of a malformed command line, 1.

namespace quorix {

enum ExitCode : int {
  kSuccess = 0,              ///< 0: the whole input was read, searched and reported.
  kInvalidSetting = -1,      ///< 255: a setting is refused, or no input was named.
  kUnknownMode = -2,         ///< 254: a mode code outside its range.
  kInputReadError = -25,     ///< 231: the input is not FASTA, or could not be read on.
  kInputNotOpened = -101,    ///< 155: the input file cannot be opened.
  kOutputNotOpened = -102,   ///< 154: an output is refused, or the report cannot be opened.
  kOutputWriteError = -103,  ///< 153: the report or the masked file cannot be written.
  kNoMemory = -104,          ///< 152: the memory ran out.
};

}  // namespace quorix
