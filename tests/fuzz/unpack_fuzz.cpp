// Compressed bytes to their text, in three ways, which the first byte of the input chooses:
//
//   0  the rest is a file: the same text and the same end, in whatever pieces it comes
//   1  the rest is deflate data, with a good header and trailer around it: as zlib inflates it
//   2  the rest is a text, compressed into members of many lengths: it comes back, and no cut of
//   the
//      members passes for a whole file
//
// All blocks have exactly the size that the reader is told, so a sanitizer sees what lies beyond
// them.

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"
#include "fuzz/harness.h"
#include "sequence/unpacked_source.h"
#include "support/gzip_text.h"
#include "support/piece_source.h"

namespace quorix::fuzz {
namespace {

using Outcome = CByteSource::Outcome;

/// Pieces that the bytes come in, and the room for the text of one read.
struct Lengths {
  std::size_t piece;
  std::size_t room;
};

constexpr std::array<Lengths, 5> kLengths{
    {{100'000, 100'000}, {1, 100'000}, {7, 100}, {4096, 1}, {64, 4096}}};

/// Longer texts only take time.
constexpr std::size_t kMaxText = 40'000;

struct Unpacked {
  std::string text;
  Outcome last;
  std::string reason;

  friend bool operator==(const Unpacked&, const Unpacked&) = default;
};

Unpacked unpack(std::string_view bytes, const Lengths& lengths) {
  const auto source =
      unpacked(std::make_unique<testing::CPieceSource>(bytes, lengths.piece, Outcome::kEnd));
  const auto block = std::make_unique<char[]>(lengths.room);
  Unpacked all{{}, Outcome::kBytes, {}};
  while (all.text.size() < kMaxText) {
    const CByteSource::ReadResult result = source->read(block.get(), lengths.room);
    all.last = result.outcome;
    if (result.outcome != Outcome::kBytes) break;
    all.text.append(block.get(), result.byte_count);
  }
  all.text.resize(std::min(all.text.size(), kMaxText));
  all.reason = source->failure_reason();
  return all;
}

/// Unpacks in all pieces, and expects the same of each.
Unpacked unpack_in_all_pieces(const std::string& bytes) {
  const Unpacked first = unpack(bytes, kLengths.front());
  for (const Lengths& lengths : kLengths) {
    const Unpacked other = unpack(bytes, lengths);
    // What is beyond the longest text is not looked at, so neither is how it ends.
    const bool is_same =
        other == first || (other.text == first.text && first.text.size() == kMaxText);
    expect(is_same, [&] {
      return "another text or end in pieces of " + std::to_string(lengths.piece) +
             " and rooms of " + std::to_string(lengths.room) + ": " + quoted(bytes) + ": " +
             other.reason + ", not " + first.reason;
    });
  }
  return first;
}

struct Inflated {
  std::string text;
  bool is_complete;
  std::size_t taken;
};

/// What zlib makes of deflate data, up to the longest text.
Inflated inflate_with_zlib(std::string& data) {
  z_stream stream{};
  Inflated inflated{std::string(kMaxText, '\0'), false, 0};
  if (inflateInit2(&stream, -15) != Z_OK) report_finding("zlib does not begin");
  stream.next_in = reinterpret_cast<Bytef*>(data.data());
  stream.avail_in = static_cast<uInt>(data.size());
  stream.next_out = reinterpret_cast<Bytef*>(inflated.text.data());
  stream.avail_out = static_cast<uInt>(kMaxText);
  inflated.is_complete = inflate(&stream, Z_FINISH) == Z_STREAM_END;
  inflated.taken = stream.total_in;
  inflated.text.resize(stream.total_out);
  inflateEnd(&stream);
  return inflated;
}

void try_deflate_data(std::string data) {
  const Inflated expected = inflate_with_zlib(data);
  if (expected.text.size() == kMaxText) return;
  if (expected.is_complete) data.resize(expected.taken);
  const Unpacked all =
      unpack_in_all_pieces(testing::gzip_header() + data + testing::gzip_trailer(expected.text));
  expect((all.last == Outcome::kEnd) == expected.is_complete,
         [&] { return "not the end that zlib finds: " + quoted(data) + ": " + all.reason; });
  if (!expected.is_complete) return;
  expect(all.text == expected.text,
         [&] { return "not the text that zlib makes: " + quoted(data); });
}

void try_text(CFuzzInput& input) {
  std::string bytes;
  std::string text;
  while (input.remaining() > 0) {
    const auto kind = input.take_between(0, 2);
    const std::string piece = input.take_text(static_cast<std::size_t>(input.take_between(0, 255)));
    text += piece;
    bytes += kind == 0   ? testing::gzip_member(piece)
             : kind == 1 ? testing::stored_member(piece)
                         : testing::bgzf(piece, 16);
  }
  if (bytes.empty()) return;
  const Unpacked all = unpack_in_all_pieces(bytes);
  expect(all.last == Outcome::kEnd && all.text == text,
         [&] { return "not the text that was compressed: " + quoted(text) + ": " + all.reason; });
  const Unpacked cut =
      unpack(std::string_view(bytes).substr(0, bytes.size() - 1), kLengths.front());
  expect(cut.last == Outcome::kError && text.starts_with(cut.text),
         [&] { return "a cut is not noticed: " + quoted(text); });
}

}  // namespace
}  // namespace quorix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix::fuzz;
  CFuzzInput input(data, size);
  switch (input.take_between(0, 2)) {
    case 0:
      static_cast<void>(unpack_in_all_pieces(input.take_text(size)));
      break;
    case 1:
      try_deflate_data(input.take_text(size));
      break;
    default:
      try_text(input);
      break;
  }
  return 0;
}
