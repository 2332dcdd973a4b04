// Bytes to a report: whatever the bytes are, and in whatever pieces they come, the reader of
// reports reads them or refuses them with a message, and never anything else.
//
// The first byte chooses the head, since no fuzzer would spell one; the rest is what follows it.

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/harness.h"
#include "tools/io/errors.h"
#include "tools/report/report_reader.h"

namespace quorix::fuzz {
namespace {

/// Bytes of a text, in pieces.
class CPieceInput : public tools::CByteInput {
 public:
  CPieceInput(const std::string& text, std::size_t piece_length)
      : text_(text), piece_length_(piece_length) {}

  std::size_t read(char* block, std::size_t size) override {
    const std::size_t count = std::min({size, piece_length_, text_.size() - taken_});
    std::memcpy(block, text_.data() + taken_, count);
    taken_ += count;
    return count;
  }

 private:
  const std::string& text_;
  std::size_t piece_length_;
  std::size_t taken_ = 0;
};

/// The head of a report in one of 3 formats, 3 print modes, 3 forms of units, 2 treatments of N's
/// and 2 lengths of flanks.
std::string head(unsigned choice) {
  const auto choose = [&](unsigned count) {
    const unsigned chosen = choice % count;
    choice /= count;
    return chosen;
  };
  constexpr const char* kFormats[] = {"quorix format", "extended quorix format",
                                      "sputnik compatible format"};
  constexpr const char* kModes[] = {"don't print sequence", "print sequence", "print alignment"};
  constexpr const char* kForms[] = {"as they are", "alphabetical normal form",
                                    "alphabetical normal form using reverse complement"};
  const unsigned format = choose(3);
  const unsigned mode = choose(3);
  const unsigned form = choose(3);
  const bool is_neutral = choose(2) == 0;
  const bool has_flanks = choose(2) == 1;
  std::string text =
      "# Results computed with:\n#    Quorix, version 3.3.2b\n"
      "# Parameter settings used in this search:\n"
      "# Input file name:                    in.fa\n"
      "#    Sequence range to process:       1 - last sequence\n"
      "#    Satellites searched for:         exact repeats\n"
      "#    Minimum unit length:             1\n#    Maximum unit length:             12\n"
      "#    Minimum score:                   maximum (6, 0+1*unitlength )\n"
      "#    Minimum length:                  maximum (1, 0+0*unitlength )\n";
  text += "#    Treat N's as:                    ";
  text += is_neutral ? "neutral\n" : "missense\n";
  text +=
      "#    Max. succesive N's allowed:      4\n"
      "#    Minimum perfection:              0 %\n#    Number of flanking nucletides:   ";
  text += has_flanks ? "3\n" : "0\n";
  text +=
      "#    Remove mostly overlapping satellites: yes\n"
      "#    Write file with masked seq.:     no\n"
      "#    Computing perfections treat N's: asMismatch\n";
  text += std::string("#    Report units as:                 ") + kForms[form] + '\n';
  text += std::string("#    Output format:                   ") + kFormats[format] + '\n';
  text += std::string("#    Print sequence mode:             ") + kModes[mode] + '\n';
  text +=
      "# \n# Columns in lines of output providing repeat information:\n"
      "# Column  1: Repeat unit length\n"
      "# Column  2: Position at which repeat starts in current sequence\n"
      "# Column  3: Position at which repeat ends in current sequence\n"
      "# Column  4: Length of repeat in original sequence, i.e. (end-start+1)\n"
      "# Column  5: Normalized repeat length, i.e. (end-start+1-insertions+deletions)\n"
      "# Column  6: Repeat score\n# Column  7: Repeat perfection\n";
  const bool is_extended = format == 1;
  if (is_extended) {
    text +=
        "# Column  8: Number of mismatches\n# Column  9: Number of insertions\n"
        "# Column 10: Number of deletions\n";
  }
  if (is_extended && is_neutral) text += "# Column 11: Number of N's\n";
  text += !is_extended ? "# Column  8" : is_neutral ? "# Column 12" : "# Column 11";
  return text + ": Repeat unit\n# \n";
}

/// A small buffer, which has to move and to grow.
constexpr std::size_t kBlockSize = 256;

/// What the reader makes of a text: all that it reads, and how it ends.
std::string reading_of(const std::string& text, std::size_t piece_length, bool allow_incomplete) {
  std::string reading;
  try {
    tools::CReportReader reader(std::make_unique<CPieceInput>(text, piece_length), "r",
                                allow_incomplete, kBlockSize);
    while (reader.next_sequence()) {
      reading.append(reader.sequence().name).append("\n");
      while (reader.next_repeat()) {
        const tools::Repeat& repeat = reader.repeat();
        for (const std::string_view part :
             {repeat.unit, repeat.motif, repeat.perfection, repeat.edits, repeat.bases,
              repeat.aligned_unit, repeat.left_flank, repeat.right_flank}) {
          reading.append(part).append(" ");
        }
        reading += std::to_string(repeat.start) + '-' + std::to_string(repeat.end) + '\n';
        expect(repeat.start >= 1 && repeat.end <= reader.sequence().length,
               [&] { return "a repeat outside of its sequence: " + quoted(text); });
      }
    }
    return reading + "good";
  } catch (const tools::InputCutShort& cut) {
    expect(!allow_incomplete, [&] { return "an incomplete report is refused: " + quoted(text); });
    return reading + cut.what();
  } catch (const tools::InputError& error) {
    return reading + error.what();
  }
}

/// Every head is that of a report. Returns true, so that it can be asked once.
bool check_heads() {
  constexpr unsigned kHeadCount = 3 * 3 * 3 * 2 * 2;
  for (unsigned choice = 0; choice < kHeadCount; ++choice) {
    const std::string text = head(choice) + "## Finished successfully. ##\n";
    expect(reading_of(text, text.size(), false) == "good", [&] { return "no head: " + text; });
  }
  return true;
}

}  // namespace
}  // namespace quorix::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quorix::fuzz;
  [[maybe_unused]] static const bool kAreHeadsChecked = check_heads();
  if (size == 0) return 0;
  constexpr std::size_t kWhole = std::size_t{1} << 20U;
  const std::string text = head(data[0]) + std::string(data + 1, data + size);
  const std::string reading = reading_of(text, kWhole, false);
  for (const std::size_t piece_length : {std::size_t{1}, std::size_t{7}}) {
    expect(reading_of(text, piece_length, false) == reading,
           [&] { return "pieces change what is read: " + quoted(text); });
  }
  const std::string lenient = reading_of(text, kWhole, true);
  if (!reading.ends_with("good")) return 0;
  expect(lenient == reading, [&] { return "a whole report is read in two ways: " + quoted(text); });
  const std::string cut = text.substr(0, text.size() - 1);
  expect(!reading_of(cut, kWhole, false).ends_with("good"),
         [&] { return "a missing last byte is not noticed: " + quoted(text); });
  return 0;
}
