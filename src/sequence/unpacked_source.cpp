// What the input is shows in its first two bytes. They come with the first read, whose destination
// they do not leave if the input is plain. Only where a read brings the first byte of gzip alone,
// as a pipe may do, the second byte is read ahead and held.

#include "sequence/unpacked_source.h"

#include <optional>
#include <string>
#include <utility>

#include "sequence/gzip_header.h"
#include "sequence/gzip_source.h"

namespace quorix {

namespace {

bool is_byte(char character, unsigned byte) {
  return static_cast<unsigned char>(character) == byte;
}

class CUnpackedSource : public CByteSource {
 public:
  explicit CUnpackedSource(std::unique_ptr<CByteSource> source) : source_(std::move(source)) {}

  [[nodiscard]] ReadResult read(char* destination, std::size_t room) override {
    if (!is_known_) return read_first(destination, room);
    if (held_) {
      const Held held = *std::exchange(held_, std::nullopt);
      *destination = held.byte;
      return held.result;
    }
    return source_->read(destination, room);
  }

  [[nodiscard]] std::string failure_reason() const override { return source_->failure_reason(); }
  [[nodiscard]] bool is_cut_short() const override { return source_->is_cut_short(); }

 private:
  /// The read of the second byte alone.
  struct Held {
    ReadResult result;
    char byte;
  };

  ReadResult read_first(char* destination, std::size_t room) {
    const ReadResult result = source_->read(destination, room);
    is_known_ = true;
    if (result.outcome != Outcome::kBytes || !is_byte(*destination, kGzipFirstByte)) return result;
    std::string first(destination, result.byte_count);
    if (first.size() == 1) {
      Held second{{}, '\0'};
      second.result = source_->read(&second.byte, 1);
      if (second.result.outcome != Outcome::kBytes || !is_byte(second.byte, kGzipSecondByte)) {
        held_ = second;
        return result;
      }
      first += second.byte;
    }
    if (!is_byte(first[1], kGzipSecondByte)) return result;
    source_ = std::make_unique<CGzipSource>(std::move(source_), first);
    return source_->read(destination, room);
  }

  std::unique_ptr<CByteSource> source_;
  bool is_known_ = false;
  std::optional<Held> held_;
};

}  // namespace

std::unique_ptr<CByteSource> unpacked(std::unique_ptr<CByteSource> source) {
  if (source == nullptr) return nullptr;
  return std::make_unique<CUnpackedSource>(std::move(source));
}

}  // namespace quorix
