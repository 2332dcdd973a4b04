// All texts of the terminal in one place, to the byte: users grep for them. Texts from outside
// (names of files and sequences) never become a format; a percent sign in a piece is doubled by the
// caller and made single by `write_pieces`.

#include "console/console_texts.h"

#include <cstddef>

#include "console/clock.h"
#include "console/number_text.h"
#include "console/run_clock.h"

namespace quorix {

namespace {

constexpr std::size_t kWrittenBlockSize = 4096;

/// Writes the pieces joined, with "%%" made "%": in one write for all but the longest texts, since
/// standard error is unbuffered. It allocates nothing: it must be able to say that memory has run
/// out, and nothing may fail after the mark of success.
void write_pieces(std::FILE* stream, std::string_view first, std::string_view second,
                  std::string_view third, std::string_view fourth) {
  char block[kWrittenBlockSize];
  std::size_t length = 0;
  for (const std::string_view piece : {first, second, third, fourth}) {
    for (std::size_t i = 0; i < piece.size(); ++i) {
      if (length == kWrittenBlockSize) {
        std::fwrite(block, 1, length, stream);
        length = 0;
      }
      block[length++] = piece[i];
      if (piece.substr(i, 2) == "%%") ++i;
    }
  }
  std::fwrite(block, 1, length, stream);
}

}  // namespace

void PrintMessage(std::FILE* stream, std::string_view first, std::string_view second,
                  std::string_view third, std::string_view fourth) {
  write_pieces(stream, first, second, third, fourth);
}

void general_PrintMessage(std::FILE* stream, std::string_view first, std::string_view second,
                          std::string_view third, std::string_view fourth) {
  if (stream == stderr) {
    write_pieces(stream, first, second, third, fourth);
  } else {
    PrintMessage(stream, first, second, third, fourth);
  }
}

std::string double_percent_signs(std::string_view text) {
  std::string doubled;
  doubled.reserve(text.size());
  for (const char character : text) {
    doubled += character;
    if (character == '%') doubled += '%';
  }
  return doubled;
}

void quorix_welcome(std::FILE* stream) {
  general_PrintMessage(stream,
                       "\n\n      Welcome to Quorix, version 3.3.2b,\n"
                       "      a microsatellite and satellite search tool.\n"
                       "\n      Important note: The search mode: Search for repeats with\n"
                       "                      a minimum percentage perfection is not\n"
                       "                      fully implemented in this version.\n\n\n");
}

void creator_message(std::FILE* stream, const char* prefix) {
  general_PrintMessage(stream, prefix, "Results computed with:\n", prefix,
                       "   Quorix, version 3.3.2b\n");
}

void report_status(std::uint64_t sequence_number, const char* sequence_name,
                   std::uint64_t unit_length, char /*mode*/) {
  const long long seconds = static_cast<long long>(current_time() - time_analysis_started);
  std::fprintf(stderr, "%.2lld.%.2lld.%.2lld - # %3llu - %4llubp - %.70s\n", seconds / 3600,
               seconds % 3600 / 60, seconds % 60, static_cast<unsigned long long>(sequence_number),
               static_cast<unsigned long long>(unit_length), sequence_name);
  std::fflush(stderr);
}

void print_progress_head() {
  general_PrintMessage(stderr,
                       "\n\nSearch progress:\n\nTime     - SeqNr - PatLen - Seq-Name\n"
                       "------------------------------------"
                       "------------------------------------\n");
  std::fflush(stderr);
}

void good_bye_on_error(int code) {
  if (code < -1) {
    general_PrintMessage(stderr, "\nAnalysis has been aborted due to errors. Error number: ",
                         number2str(code), "\n\n");
  } else if (code == -1) {
    general_PrintMessage(stderr, "\n\n");
  } else if (code > 0) {
    general_PrintMessage(stderr, "\nAnalysis has been stopped by the user.\n\n");
  }
  std::fflush(stderr);
}

void good_bye(std::FILE* report) {
  general_PrintMessage(report, "## Finished successfully. ##\n");
  general_PrintMessage(stderr, "\nAnalysis finished successfully.\n\n");
  general_PrintMessage(stderr, "Quorix says goodbye.\n\n");
  std::fflush(stderr);
}

}  // namespace quorix
