#pragma once

/// @file
/// What the columns of several formats share.

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/formats/format_writer.h"
#include "tools/io/output.h"
#include "tools/report/repeat.h"

namespace quorix::tools {

/// Stands in a column for what the report does not tell.
inline constexpr std::string_view kNoValue = ".";

/// Units of so many bases make a minisatellite and a satellite; shorter ones a microsatellite.
inline constexpr std::int64_t kMinMinisatelliteUnit = 10;
inline constexpr std::int64_t kMinSatelliteUnit = 100;

/// Appends `length` / `unit_length` with two decimals; halves are rounded up. REQUIRES: both are
/// positive.
void add_quotient(COutput& output, std::int64_t length, std::int64_t unit_length);

/// Appends the normalized length in units, with two decimals; halves are rounded up.
void add_copies(COutput& output, const Repeat& repeat);

/// Appends a count, or "." if the report does not tell it.
void add_count(COutput& output, std::int64_t count);

/// Appends a key and a count, or nothing if the report does not tell it.
void add_count_if_told(COutput& output, std::string_view key, std::int64_t count);

/// Appends a text, or "." if it is empty.
void add_text(COutput& output, std::string_view text);

/// True if the perfection is a number: a repeat of unknown bases alone may have none.
[[nodiscard]] bool has_perfection(const Repeat& repeat);

/// Appends the perfection as printed, or "." if it is no number.
void add_perfection(COutput& output, const Repeat& repeat);

/// Throws: InputError, which says why an identifier cannot stand in a format.
[[noreturn]] void refuse_identifier(std::string_view identifier, std::string_view format,
                                    const std::string& reason);

/// Throws: InputError if an identifier would break the lines of a format whose columns are
/// separated by tabs.
void check_column_text(std::string_view identifier, std::string_view format);

/// Throws: InputError if an identifier would break a line in the BED family of formats, or turn it
/// into a comment.
void check_bed_identifier(std::string_view identifier, std::string_view format);

}  // namespace quorix::tools
