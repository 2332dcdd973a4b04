#pragma once

/// @file
/// The header of a gzip member (RFC 1952), and what of it matters to a reader: nothing of the file
/// name, the time and the comments, but whether the member is a block of BGZF.

#include "sequence/compressed_bytes.h"

namespace quorix {

/// The first two bytes of every gzip member. No FASTA text begins with them.
constexpr unsigned kGzipFirstByte = 0x1f;
constexpr unsigned kGzipSecondByte = 0x8b;

struct GzipHeader {
  /// BGZF is gzip in many small members, each with its own length in the header. The last one is
  /// empty: it marks the end.
  bool is_bgzf = false;
};

/// Takes the header of a member, after its first two bytes. Throws: DamagedMember for an unknown
/// compression method, flags that have no meaning, an extra field whose parts do not fit it and a
/// wrong checksum; EndOfCompressedBytes, UnreadableInput.
[[nodiscard]] GzipHeader take_gzip_header(CCompressedBytes& bytes);

}  // namespace quorix
