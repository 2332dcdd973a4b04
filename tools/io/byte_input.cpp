#include "tools/io/byte_input.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "sequence/byte_source.h"
#include "sequence/posix_source.h"
#include "sequence/unpacked_source.h"
#include "tools/io/errors.h"

namespace quorix::tools {

namespace {

/// The text of a source. A source that ends too early has an end like any other, and a reason.
class CSourceInput : public CByteInput {
 public:
  CSourceInput(std::unique_ptr<CByteSource> source, std::string name)
      : source_(std::move(source)), name_(std::move(name)) {}

  std::size_t read(char* block, std::size_t size) override {
    const CByteSource::ReadResult result = source_->read(block, size);
    if (result.outcome == CByteSource::Outcome::kError && !source_->is_cut_short()) {
      throw InputError(name_ + ": " + source_->failure_reason());
    }
    return result.byte_count;
  }

  [[nodiscard]] std::string cut_reason() const override {
    return source_->is_cut_short() ? "the compressed data end early" : "";
  }

 private:
  std::unique_ptr<CByteSource> source_;
  std::string name_;
};

/// A descriptor of its own, so that the source may close it.
std::unique_ptr<CByteSource> standard_input() {
  const int descriptor = ::dup(STDIN_FILENO);
  return descriptor < 0 ? nullptr : posix_source_of(descriptor);
}

}  // namespace

std::string shown_input_name(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

std::unique_ptr<CByteInput> open_input(const std::string& name) {
  const std::string shown = shown_input_name(name);
  std::unique_ptr<CByteSource> source =
      unpacked(name == "-" ? standard_input() : open_posix_source(name));
  if (source == nullptr) throw InputError(shown + ": " + std::strerror(errno));
  return std::make_unique<CSourceInput>(std::move(source), shown);
}

}  // namespace quorix::tools
