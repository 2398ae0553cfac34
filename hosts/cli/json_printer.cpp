#include "json_printer.h"

#include <nlohmann/json.hpp>

namespace zenfo::cli {
namespace {

using Json = nlohmann::ordered_json;

unsigned byte_at(std::string_view bytes, size_t index) {
  return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
}

// A row of the table of well-formed sequences: first byte, second byte, and
// how many more bytes of 80 to BF follow.
struct Sequence {
  unsigned first_low, first_high, second_low, second_high;
  size_t length;
};

constexpr Sequence kSequences[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
    {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

bool lies_in(unsigned byte, unsigned low, unsigned high) {
  return byte >= low && byte <= high;
}

bool holds(const Sequence& sequence, std::string_view bytes) {
  if (!lies_in(byte_at(bytes, 0), sequence.first_low, sequence.first_high) ||
      !lies_in(byte_at(bytes, 1), sequence.second_low, sequence.second_high)) {
    return false;
  }
  for (size_t i = 2; i < sequence.length; ++i) {
    if (!lies_in(byte_at(bytes, i), 0x80, 0xBF)) return false;
  }
  return true;
}

// Bytes of the character in front; 0 when there is none.
size_t character_length(std::string_view bytes) {
  if (byte_at(bytes, 0) < 0x80) return 1;
  for (const Sequence& sequence : kSequences) {
    if (holds(sequence, bytes)) return sequence.length;
  }
  return 0;
}

}  // namespace

bool is_utf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const size_t length = character_length(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string base64(std::string_view bytes) {
  constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (; !bytes.empty();
       bytes.remove_prefix(std::min<size_t>(3, bytes.size()))) {
    const unsigned group =
        byte_at(bytes, 0) << 16 | byte_at(bytes, 1) << 8 | byte_at(bytes, 2);
    for (unsigned i = 0; i < 4; ++i) {
      text += i > bytes.size() ? '=' : kDigits[group >> (18 - 6 * i) & 63];
    }
  }
  return text;
}

Json json_bytes(std::string_view bytes) {
  if (is_utf8(bytes)) return {{"text", bytes}};
  return {{"bytes", base64(bytes)}};
}

void JsonPrinter::put(const char* type, const Json& data) {
  output_.put(Json{{"type", type}, {"data", data}}.dump());
  output_.put('\n');
}

class JsonPrinter::Walk : public LineVisitor {
 public:
  Walk(JsonPrinter& printer, std::string_view path, std::string_view text)
      : printer_(printer),
        path_(json_bytes(path)),
        text_(text),
        numbers_(text) {}

  void context(size_t start, size_t end) override {
    put("context", start, end, {});
  }
  void block(const Block& block) override {
    counts_.matches += block.matches.size();
    counts_.lines +=
        count_lines(text_.substr(block.start, block.end - block.start));
    put("match", block.start, block.end, block.matches);
  }

  void begin() { printer_.put("begin", {{"path", path_}}); }
  Counts end() {
    const size_t zero = text_.find('\0');
    Json data = {{"path", path_}, {"binary_offset", nullptr}};
    if (zero != std::string_view::npos) data["binary_offset"] = zero;
    data["stats"] = {{"matched_lines", counts_.lines},
                     {"matches", counts_.matches}};
    printer_.put("end", data);
    return counts_;
  }

 private:
  void put(const char* type, size_t start, size_t end,
           std::span<const Match> matches) {
    Json found = Json::array();
    for (const Match& match : matches) {
      const size_t from = match.offset - start;
      found.push_back(
          {{"match", json_bytes(text_.substr(match.offset, match.length))},
           {"start", from},
           {"end", from + match.length}});
    }
    printer_.put(type, {{"path", path_},
                        {"lines", json_bytes(text_.substr(start, end - start))},
                        {"line_number", numbers_.at(start)},
                        {"absolute_offset", start},
                        {"submatches", std::move(found)}});
  }

  JsonPrinter& printer_;
  const Json path_;
  std::string_view text_;
  LineNumbers numbers_;
  Counts counts_;
};

void JsonPrinter::print_file(std::string_view path, std::string_view text,
                             const std::vector<Block>& blocks) {
  if (blocks.empty()) return;
  Walk walk(*this, path, text);
  walk.begin();
  visit_lines(text, blocks, before_, after_, walk);
  const Counts counts = walk.end();
  ++files_;
  total_.lines += counts.lines;
  total_.matches += counts.matches;
}

void JsonPrinter::print_summary(uint64_t files_searched) {
  put("summary", {{"stats",
                   {{"searches", files_searched},
                    {"searches_with_match", files_},
                    {"matched_lines", total_.lines},
                    {"matches", total_.matches}}}});
}

}  // namespace zenfo::cli
