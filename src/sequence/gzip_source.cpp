// A read makes as much text as there is room for without waiting: it goes through the members whose
// bytes are at hand, and reads more bytes only while it has made nothing. What is wrong with a
// member is thrown by whoever finds it. `read` alone catches it, and hands over the text before it
// first.

#include "sequence/gzip_source.h"

#include <algorithm>
#include <utility>

#include "sequence/gzip_header.h"

namespace quorix {

CGzipSource::CGzipSource(std::unique_ptr<CByteSource> source, std::string_view first)
    : source_(std::move(source)), bytes_(*source_, first) {}

CByteSource::ReadResult CGzipSource::read(char* destination, std::size_t room) {
  if (has_failed_) return {Outcome::kError, 0};
  std::span<char> rest(destination, room);
  try {
    while (rest.size() == room || (!rest.empty() && !bytes_.unread().empty())) {
      if (!is_in_member_ && !begin_member()) break;
      inflate(rest);
    }
  } catch (const EndOfCompressedBytes&) {
    is_cut_short_ = true;
    fail("the input ends within its " + std::string(part_));
  } catch (const DamagedMember& member) {
    fail(member.fault);
  } catch (const UnreadableInput& input) {
    has_failed_ = true;
    failure_reason_ = input.reason;
  }
  const std::size_t made = room - rest.size();
  if (made > 0) return {Outcome::kBytes, made};
  return {has_failed_ ? Outcome::kError : Outcome::kEnd, 0};
}

/// Takes the header of the next member. Returns false if there is none.
bool CGzipSource::begin_member() {
  member_start_ = bytes_.position();
  part_ = "header";
  if (!bytes_.fill() || bytes_.unread().front() == '\0') {
    take_padding();
    if (!lacks_end_mark_) return false;
    is_cut_short_ = true;
    throw UnreadableInput{"The BGZF input has no end mark, so its end may be missing."};
  }
  if (bytes_.take_byte() != kGzipFirstByte || bytes_.take_byte() != kGzipSecondByte) {
    throw UnreadableInput{"Gzip input goes on at offset " + std::to_string(member_start_) +
                          " with bytes that begin no member."};
  }
  is_bgzf_ = take_gzip_header(bytes_).is_bgzf;
  part_ = "compressed data";
  inflater_.begin();
  is_in_member_ = true;
  return true;
}

/// Takes zeros up to the end of the input. Tapes and archives round lengths up with them.
void CGzipSource::take_padding() {
  while (bytes_.fill()) {
    const std::string_view unread = bytes_.unread();
    const std::size_t zero_count = std::min(unread.find_first_not_of('\0'), unread.size());
    bytes_.take(zero_count);
    if (zero_count < unread.size()) {
      throw UnreadableInput{"Gzip input goes on at offset " + std::to_string(bytes_.position()) +
                            " after zeros that should end it."};
    }
  }
}

/// Makes text at the beginning of `room`, and leaves the rest of it.
void CGzipSource::inflate(std::span<char>& room) {
  const CInflater::Step step = inflater_.inflate(bytes_.unread(), room);
  bytes_.take(step.taken);
  room = room.subspan(step.made);
  if (step.outcome == CInflater::Outcome::kDamaged) {
    throw DamagedMember{"its compressed data are damaged"};
  }
  if (step.outcome == CInflater::Outcome::kEnd) {
    end_member();
  } else if (step.made == 0 && !bytes_.fill()) {
    throw EndOfCompressedBytes{};
  }
}

/// Takes the trailer: checksum and length of the text, the latter modulo 2^32.
void CGzipSource::end_member() {
  part_ = "trailer";
  const std::uint32_t checksum = take_number();
  const std::uint32_t length = take_number();
  if (checksum != inflater_.checksum()) {
    throw DamagedMember{"its text does not match its checksum"};
  }
  if (length != static_cast<std::uint32_t>(inflater_.length())) {
    throw DamagedMember{"its text does not have the length that its trailer states"};
  }
  lacks_end_mark_ = is_bgzf_ && inflater_.length() > 0;
  is_in_member_ = false;
}

/// Takes a number of four bytes, the low one first.
std::uint32_t CGzipSource::take_number() {
  std::uint32_t number = 0;
  for (unsigned shift = 0; shift < 32; shift += 8) number |= bytes_.take_byte() << shift;
  return number;
}

void CGzipSource::fail(const std::string& fault) {
  has_failed_ = true;
  failure_reason_ = "Gzip member at offset " + std::to_string(member_start_) + ": " + fault + ".";
}

}  // namespace quorix
