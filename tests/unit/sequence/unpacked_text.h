#pragma once

/// @file
/// All that a source of unpacked bytes gives, in reads of one length.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "sequence/unpacked_source.h"
#include "support/scripted_source.h"

namespace quorix::testing {

struct UnpackedText {
  std::string text;
  bool is_good;  ///< it ended, rather than failed
  std::string reason;
  bool is_cut_short = false;
};

/// Reads until the end or a failure.
inline UnpackedText read_all(CByteSource& source, std::size_t room) {
  UnpackedText all{{}, false, {}, false};
  std::string block(room, '\0');
  while (true) {
    const CByteSource::ReadResult result = source.read(block.data(), room);
    if (result.outcome == CByteSource::Outcome::kBytes) {
      EXPECT_GE(result.byte_count, 1U);
      EXPECT_LE(result.byte_count, room);
      all.text.append(block, 0, result.byte_count);
      continue;
    }
    EXPECT_EQ(result.byte_count, 0U);
    all.is_good = result.outcome == CByteSource::Outcome::kEnd;
    all.reason = source.failure_reason();
    all.is_cut_short = source.is_cut_short();
    EXPECT_EQ(all.is_good, all.reason.empty());
    EXPECT_FALSE(all.is_good && all.is_cut_short);
    return all;
  }
}

/// Unpacks the bytes that a script gives.
inline UnpackedText unpack(ReadScript script, std::size_t room = 1'000'000) {
  const auto source = unpacked(std::make_unique<CScriptedSource>(std::move(script)));
  return read_all(*source, room);
}

/// Unpacks bytes that come in pieces of one length.
inline UnpackedText unpack(std::string_view bytes, std::size_t piece_length = 1'000'000,
                           std::size_t room = 1'000'000) {
  return unpack(in_pieces(bytes, piece_length), room);
}

/// The reason of a failure of bytes that fail; empty if they do not.
inline std::string reason_of(std::string_view bytes) {
  return unpack(bytes).reason;
}

/// Lines of FASTA with `length` bases that no compressor makes tiny.
inline std::string varied_fasta(std::size_t length) {
  std::string text = ">varied\n";
  std::uint32_t draw = 1;
  for (std::size_t i = 1; i <= length; ++i) {
    draw = draw * 1664525U + 1013904223U;
    text += "ACGT"[draw >> 30U];
    if (i % 60 == 0) text += '\n';
  }
  return text + "\n";
}

}  // namespace quorix::testing
