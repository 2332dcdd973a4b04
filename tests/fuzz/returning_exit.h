#pragma once

/// @file
/// Included before everything else when the command line is compiled for its harness: the
/// command-line library ends the process for help and for errors, and a harness that tries
/// thousands of command lines a second needs to get them back instead.

#include <stdlib.h>  // what declares the true one, before its name is taken

#include <cstdlib>

#include "fuzz/command_line_exit.h"

/// Throws `CommandLineExit`, so that all that the library holds is given back.
[[noreturn]] inline void throw_command_line_exit(int status) {
  throw quorix::fuzz::CommandLineExit{status};
}

#define exit throw_command_line_exit
