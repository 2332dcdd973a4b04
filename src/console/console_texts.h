#pragma once

/// @file
/// The fixed texts around a run: banner, creator lines, progress lines and closing messages. Texts
/// for the person at the terminal go to standard error, comment lines of the report to the stream
/// that the caller passes.
///
/// A line prefix is written at the start of every line of a block: empty on standard error, "# "
/// in the report, where the lines are comments. Write errors are not checked here: the driver
/// asks its streams.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace quorix {

/// Writes up to four pieces one after the other, with nothing between them. In each piece "%%"
/// prints one percent sign and everything else prints as it stands, so text that comes from
/// outside passes through `double_percent_signs` first.
void general_PrintMessage(std::FILE* stream, std::string_view first, std::string_view second = {},
                          std::string_view third = {}, std::string_view fourth = {});

/// The same for streams other than standard error; `general_PrintMessage` hands them on to it.
void PrintMessage(std::FILE* stream, std::string_view first, std::string_view second = {},
                  std::string_view third = {}, std::string_view fourth = {});

/// `text` with every percent sign doubled, so that `general_PrintMessage` prints it as it stands.
std::string double_percent_signs(std::string_view text);

/// Writes the welcome banner.
void quorix_welcome(std::FILE* stream);

/// Writes the two lines that say which program made a report.
void creator_message(std::FILE* stream, const char* prefix);

/// Writes one progress line to standard error and flushes it: the time since
/// `time_analysis_started`, the number of the sequence (from 1), the unit length in bp and the
/// first 70 bytes of the sequence's name. The mode letter is not printed.
void report_status(std::uint64_t sequence_number, const char* sequence_name,
                   std::uint64_t unit_length, char mode);

/// Writes the head of the progress table to standard error and flushes it.
void print_progress_head();

/// Writes the closing text for an abnormal end to standard error and flushes it. Codes below -1
/// are named, -1 ends the message with an empty line, a positive code reports a stop by the user,
/// and 0 writes nothing.
void good_bye_on_error(int code);

/// Writes the mark of a finished report to `report`, then the closing text to standard error.
void good_bye(std::FILE* report);

}  // namespace quorix
