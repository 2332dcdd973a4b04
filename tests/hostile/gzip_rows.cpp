#include "hostile/input_rows.h"
#include "support/gzip_text.h"

namespace quorix::testing {

using std::string_literals::operator""s;

namespace {

constexpr const char* kTwoTexts = ">a\nACACACAC\n>b\nGTGTGTGT\n";
constexpr const char* kCutHeader = "Gzip member at offset 0: the input ends within its header.";
constexpr const char* kCutData =
    "Gzip member at offset 0: the input ends within its compressed data.";
constexpr const char* kCutTrailer = "Gzip member at offset 0: the input ends within its trailer.";
constexpr const char* kDamaged = "Gzip member at offset 0: its compressed data are damaged.";
constexpr const char* kWrongChecksum =
    "Gzip member at offset 0: its text does not match its checksum.";

/// The bytes without their last `count`.
std::string without_last(const std::string& bytes, std::size_t count) {
  return bytes.substr(0, bytes.size() - count);
}

/// The bytes with one bit of byte `index` changed.
std::string with_flipped_bit(std::string bytes, std::size_t index) {
  bytes[index] = static_cast<char>(bytes[index] ^ 1);
  return bytes;
}

}  // namespace

InputRows gzip_rows() {
  const std::vector<ExpectedRecord> first{{"a", 8, "AC 1-8"}};
  const std::vector<ExpectedRecord> both{{"a", 8, "AC 1-8"}, {"b", 8, "AC 1-8"}};
  const std::string member = gzip_member(kTwoTexts);
  const std::string plain_stored = stored_member(kTwoTexts);
  return {
      // What is a file of sequences.
      {"a member", member, both},
      {"a stored member", plain_stored, both},
      {"a member with all optional parts",
       gzip_member(
           kTwoTexts,
           {.extra = "XY\1\0?"s, .has_name = true, .has_comment = true, .has_checksum = true}),
       both},
      {"a member a record", gzip_member(">a\nACACACAC\n") + gzip_member(">b\nGTGTGTGT\n"), both},
      {"members that part a line", gzip_member(">a\nACAC") + gzip_member("ACAC\n"), first},
      {"members that part a line end", gzip_member(">a\nACACACAC\r") + gzip_member("\n"), first},
      {"members without a text", gzip_member("") + member + gzip_member(""), both},
      {"zeros after a member", member + std::string(512, '\0'), both},
      {"BGZF", bgzf(kTwoTexts, 5), both},
      {"BGZF without its last line end", bgzf(">a\nACACACAC", 100), first},
      // What is none.
      {"an empty member", gzip_member(""), {}, 1},
      {"an end mark of BGZF", bgzf("", 1), {}, 1},
      {"a compressed table", gzip_member("a\t1\t9\n"), {}, 1},
      {"compressed FASTA with a digit in it", gzip_member(">a\nACACACAC\n>b\nAC1\n"), first, 4},
      {"what is compressed twice", gzip_member(member), {}, 1},
      // What is cut short.
      {"two bytes of gzip", "\037\213", {}, 1, {}, kCutHeader},
      {"gzip", "\037\213\b\0\0\0\0\0\0\003"s, {}, 1, {}, kCutData},
      {"a member without its trailer", without_last(member, 8), first, 5, {}, kCutTrailer},
      {"a member without its last byte", without_last(member, 1), first, 5, {}, kCutTrailer},
      {"a stored member without its last line",
       without_last(plain_stored, 8 + 9),
       first,
       4,
       {},
       kCutData},
      {"BGZF without its end mark",
       bgzf_member(kTwoTexts),
       first,
       5,
       {},
       "The BGZF input has no end mark, so its end may be missing."},
      // What is damaged.
      {"a flipped bit of a checksum",
       with_flipped_bit(member, member.size() - 8),
       first,
       5,
       {},
       kWrongChecksum},
      {"a flipped bit of a length",
       with_flipped_bit(member, member.size() - 4),
       first,
       5,
       {},
       "Gzip member at offset 0: its text does not have the length that its trailer states."},
      {"a flipped bit of a base",
       with_flipped_bit(plain_stored, plain_stored.size() - 8 - 2),
       first,
       5,
       {},
       kWrongChecksum},
      {"a gzip sign before FASTA",
       "\037\213\b\n>a\nACAC\n",
       {},
       1,
       {},
       "Gzip member at offset 0: the input ends within its header."},
      {"an unknown method",
       "\037\213\a\0\0\0\0\0\0\003"s,
       {},
       1,
       {},
       "Gzip member at offset 0: its compression method is unknown."},
      {"unknown flags",
       "\037\213\b\200\0\0\0\0\0\003"s,
       {},
       1,
       {},
       "Gzip member at offset 0: its header has unknown flags."},
      {"an unknown block", gzip_header() + "\a" + gzip_trailer(""), {}, 1, {}, kDamaged},
      {"a text after a member",
       plain_stored + ">c\nACACACAC\n",
       first,
       5,
       {},
       "Gzip input goes on at offset 47 with bytes that begin no member."},
      {"a member after zeros",
       plain_stored + "\0\0"s + plain_stored,
       first,
       5,
       {},
       "Gzip input goes on at offset 49 after zeros that should end it."},
      {"a damaged second member",
       plain_stored + gzip_header() + "\a",
       first,
       5,
       {},
       "Gzip member at offset 47: its compressed data are damaged."},
  };
}

}  // namespace quorix::testing
