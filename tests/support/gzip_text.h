#pragma once

/// @file
/// Texts as gzip members, with every part at the hand of a test. What the program shares with this
/// is the format alone: the checksum is computed bit by bit.

#include <cstdint>
#include <string>
#include <string_view>

namespace quorix::testing {

/// CRC-32 of a text.
std::uint32_t crc32_of(std::string_view text);

/// A number in four bytes, the low one first.
std::string four_bytes(std::uint64_t number);

/// The text as deflate data that store it as it is.
std::string stored(std::string_view text);

/// The text as deflate data. `level` is 1 (fast) to 9 (small).
std::string deflated(std::string_view text, int level = 6);

/// The parts of a header that may be left out.
struct HeaderParts {
  std::string extra = {};  ///< the extra field without its length; left out if empty
  bool has_name = false;
  bool has_comment = false;
  bool has_checksum = false;
};

std::string gzip_header(const HeaderParts& parts = {});

std::string gzip_trailer(std::string_view text);

/// A member with the text deflated.
std::string gzip_member(std::string_view text, const HeaderParts& parts = {});

/// A member with the text stored.
std::string stored_member(std::string_view text);

/// A member of BGZF; one without text is the end mark.
std::string bgzf_member(std::string_view text);

/// The text in BGZF members of `piece_length` bytes each, with the end mark.
std::string bgzf(std::string_view text, std::size_t piece_length);

}  // namespace quorix::testing
