#include "tools/page_data.h"

#include <zlib.h>

#include <stdexcept>
#include <string_view>

namespace quorix::testing {

namespace {

std::string decoded(std::string_view letters) {
  constexpr std::string_view kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  if (letters.size() % 4 != 0) throw std::runtime_error("base64 of a wrong length");
  std::string bytes;
  std::uint32_t bits = 0;
  int bit_count = 0;
  while (letters.ends_with('=')) letters.remove_suffix(1);
  for (const char letter : letters) {
    const std::size_t value = kLetters.find(letter);
    if (value == std::string_view::npos) throw std::runtime_error("no letter of base64");
    bits = (bits << 6U) | static_cast<std::uint32_t>(value);
    bit_count += 6;
    if (bit_count < 8) continue;
    bit_count -= 8;
    bytes += static_cast<char>((bits >> static_cast<unsigned>(bit_count)) & 0xFFU);
  }
  return bytes;
}

std::string inflated(std::string packed) {
  z_stream stream{};
  if (inflateInit2(&stream, 15 + 16) != Z_OK) throw std::runtime_error("zlib");
  stream.next_in = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_in = static_cast<uInt>(packed.size());
  std::string text;
  std::string block(1U << 16U, '\0');
  int result = Z_OK;
  while (result == Z_OK) {
    stream.next_out = reinterpret_cast<Bytef*>(block.data());
    stream.avail_out = static_cast<uInt>(block.size());
    result = inflate(&stream, Z_NO_FLUSH);
    text.append(block, 0, block.size() - stream.avail_out);
  }
  const bool is_whole = result == Z_STREAM_END && stream.avail_in == 0;
  inflateEnd(&stream);
  if (!is_whole) throw std::runtime_error("the data of the page are no whole gzip");
  return text;
}

class CByteReader {
 public:
  explicit CByteReader(std::string bytes) : bytes_(std::move(bytes)) {}

  std::int64_t number() {
    std::uint64_t bits = 0;
    for (unsigned shift = 0;; shift += 7) {
      const auto byte = static_cast<unsigned char>(bytes_.at(place_++));
      bits |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
      if (byte < 0x80U) break;
    }
    const auto half = static_cast<std::int64_t>(bits >> 1U);
    return (bits & 1U) != 0 ? -half - 1 : half;
  }

  std::string text(std::int64_t length) {
    const auto size = static_cast<std::size_t>(length);
    if (size > bytes_.size() - place_) throw std::runtime_error("the data of the page end early");
    place_ += size;
    return bytes_.substr(place_ - size, size);
  }

  std::vector<std::int64_t> numbers(std::size_t count) {
    std::vector<std::int64_t> column(count);
    for (std::int64_t& item : column) item = number();
    return column;
  }

  std::vector<std::string> texts(const std::vector<std::int64_t>& lengths) {
    std::vector<std::string> column;
    for (const std::int64_t length : lengths)
      column.push_back(text(std::max<std::int64_t>(length, 0)));
    return column;
  }

  void expect_end() const {
    if (place_ != bytes_.size()) throw std::runtime_error("bytes are left over in the page");
  }

 private:
  std::string bytes_;
  std::size_t place_ = 0;
};

void read_records(CByteReader& reader, PageData& data) {
  const auto count = data.head.at("total").at("records").get<std::size_t>();
  const std::vector<std::string> names = reader.texts(reader.numbers(count));
  std::vector<std::vector<std::int64_t>> columns;
  for (int i = 0; i < 5; ++i) columns.push_back(reader.numbers(count));
  for (std::size_t i = 0; i < count; ++i) {
    data.records.push_back(
        {names[i], columns[0][i], columns[1][i], columns[2][i], columns[3][i], columns[4][i] == 1});
  }
}

void read_windows(CByteReader& reader, PageData& data) {
  const auto window = data.head.at("window").get<std::int64_t>();
  std::size_t count = 0;
  for (const PageRecord& record : data.records) {
    count += static_cast<std::size_t>((record.length + window - 1) / window);
  }
  data.windows = reader.numbers(count);
}

void read_rows(CByteReader& reader, PageData& data) {
  const auto word_count = data.head.at("words").get<std::size_t>();
  const std::vector<std::string> words = reader.texts(reader.numbers(word_count));
  data.repeats.resize(data.head.at("rows").get<std::size_t>());
  auto row = data.repeats.begin();
  for (const PageRecord& record : data.records) {
    std::int64_t start = 0;
    for (std::int64_t i = 0; i < record.rows; ++i, ++row) {
      start += reader.number();
      row->identifier = record.identifier;
      row->start = start;
    }
  }
  if (row != data.repeats.end()) throw std::runtime_error("rows without a record");
  for (PageRepeat& repeat : data.repeats) repeat.length = reader.number();
  for (PageRepeat& repeat : data.repeats)
    repeat.normalized_length = repeat.length + reader.number();
  for (const auto member : {&PageRepeat::score, &PageRepeat::mismatches, &PageRepeat::insertions,
                            &PageRepeat::deletions, &PageRepeat::ns, &PageRepeat::perfection}) {
    for (PageRepeat& repeat : data.repeats) repeat.*member = reader.number();
  }
  for (PageRepeat& repeat : data.repeats) {
    repeat.unit = words.at(static_cast<std::size_t>(reader.number()));
  }
  for (PageRepeat& repeat : data.repeats) {
    const std::int64_t number = reader.number();
    if (number > 0) repeat.motif = words.at(static_cast<std::size_t>(number - 1));
  }
}

/// Makes the lines of the alignment of what the page has.
void unfold(PageRepeat& repeat, const std::string& copies, bool has_alignment) {
  const std::string& unit = repeat.motif.empty() ? copies : repeat.motif;
  std::size_t place = 0;
  for (char& base : repeat.bases) {
    const bool is_insertion = base >= 'a' && base <= 'z' && base != 'x';
    if (is_insertion) base = static_cast<char>(base - 'a' + 'A');
    if (base == 'x') base = 'N';
    if (!has_alignment) continue;
    repeat.aligned_unit += is_insertion ? '-' : unit.at(place++ % unit.size());
  }
}

void read_details(CByteReader& reader, PageData& data) {
  std::vector<std::vector<std::int64_t>> lengths;
  for (int i = 0; i < 5; ++i) lengths.push_back(reader.numbers(data.repeats.size()));
  std::vector<std::vector<std::string>> columns;
  for (const auto& column : lengths) columns.push_back(reader.texts(column));
  const bool has_alignment = data.head.at("bases") == "alignment";
  for (std::size_t i = 0; i < data.repeats.size(); ++i) {
    PageRepeat& repeat = data.repeats[i];
    repeat.is_left_out = lengths[0][i] < 0;
    repeat.bases = columns[0][i];
    repeat.edits = columns[2][i];
    repeat.left_flank = columns[3][i];
    repeat.right_flank = columns[4][i];
    if (!repeat.is_left_out) unfold(repeat, columns[1][i], has_alignment);
  }
}

}  // namespace

PageData read_page(const std::string& page) {
  constexpr std::string_view kBegin = "<html>";
  constexpr std::string_view kEnd = "</html>\n";
  const std::size_t bar = page.find('|');
  if (!page.starts_with(kBegin) || !page.ends_with(kEnd) || bar == std::string::npos) {
    throw std::runtime_error("no page of the short template");
  }
  const std::string_view text = page;
  const std::string_view table = text.substr(kBegin.size(), bar - kBegin.size());
  const std::string_view details = text.substr(bar + 1, text.size() - kEnd.size() - bar - 1);

  PageData data;
  CByteReader reader(inflated(decoded(table)));
  data.head = nlohmann::json::parse(reader.text(reader.number()));
  read_records(reader, data);
  read_windows(reader, data);
  read_rows(reader, data);
  reader.expect_end();
  CByteReader detail_reader(inflated(decoded(details)));
  read_details(detail_reader, data);
  detail_reader.expect_end();
  return data;
}

}  // namespace quorix::testing
