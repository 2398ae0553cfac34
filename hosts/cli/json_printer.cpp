#include "json_printer.h"

#include <algorithm>
#include <cstdio>

namespace zenfo::cli {
namespace {

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

// Bytes of the character in front, which is none of ASCII; 0 for no character.
size_t character_length(std::string_view bytes) {
  for (const Sequence& sequence : kSequences) {
    if (holds(sequence, bytes)) return sequence.length;
  }
  return 0;
}

struct Escape {
  char byte;
  char letter;
};
constexpr Escape kEscapes[] = {{'"', '"'},  {'\\', '\\'}, {'\b', 'b'},
                               {'\f', 'f'}, {'\n', 'n'},  {'\r', 'r'},
                               {'\t', 't'}};

void append_escaped(std::string& text, char byte) {
  for (const Escape& escape : kEscapes) {
    if (escape.byte != byte) continue;
    text += '\\';
    text += escape.letter;
    return;
  }
  char code[8];
  std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(byte));
  text += code;
}

bool is_escaped(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 || byte == '"' || byte == '\\';
}

}  // namespace

bool is_utf8(std::string_view bytes) {
  for (;;) {
    const auto other = std::find_if(bytes.begin(), bytes.end(), [](char c) {
      return static_cast<unsigned char>(c) >= 0x80;
    });
    if (other == bytes.end()) return true;
    bytes.remove_prefix(static_cast<size_t>(other - bytes.begin()));
    const size_t length = character_length(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
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

std::string json_bytes(std::string_view bytes) {
  if (!is_utf8(bytes)) return "{\"bytes\":\"" + base64(bytes) + "\"}";
  std::string text = "{\"text\":\"";
  while (!bytes.empty()) {
    const auto end = std::find_if(bytes.begin(), bytes.end(), is_escaped);
    text.append(bytes.begin(), end);
    bytes.remove_prefix(static_cast<size_t>(end - bytes.begin()));
    if (bytes.empty()) break;
    append_escaped(text, bytes.front());
    bytes.remove_prefix(1);
  }
  return text + "\"}";
}

class JsonPrinter::Walk : public LineVisitor {
 public:
  Walk(JsonPrinter& printer, std::string_view path, std::string_view text)
      : output_(printer.output_),
        path_(json_bytes(path)),
        text_(text),
        numbers_(text) {}

  void context(size_t start, size_t end) override {
    put("context", start, end, {});
  }
  void block(const Block& block) override {
    counts_.matches += block.matches.size();
    counts_.lines += count_lines(part(block.start, block.end));
    put("match", block.start, block.end, block.matches);
  }

  void begin() {
    output_.put_json("{\"type\":\"begin\",\"data\":{\"path\":" + path_ +
                     "}}\n");
  }
  Counts end() {
    const size_t zero = text_.find('\0');
    const bool binary = zero != std::string_view::npos;
    output_.put_json(
        "{\"type\":\"end\",\"data\":{\"path\":" + path_ +
        ",\"binary_offset\":" + (binary ? std::to_string(zero) : "null") +
        ",\"stats\":{\"matched_lines\":" + std::to_string(counts_.lines) +
        ",\"matches\":" + std::to_string(counts_.matches) + "}}}\n");
    return counts_;
  }

 private:
  std::string_view part(size_t start, size_t end) const {
    return text_.substr(start, end - start);
  }

  void put(std::string_view type, size_t start, size_t end,
           std::span<const Match> matches) {
    line_ = "{\"type\":\"";
    line_ += type;
    line_ += "\",\"data\":{\"path\":" + path_;
    line_ += ",\"lines\":" + json_bytes(part(start, end));
    line_ += ",\"line_number\":" + std::to_string(numbers_.at(start));
    line_ += ",\"absolute_offset\":" + std::to_string(start);
    line_ += ",\"submatches\":[";
    for (const Match& match : matches) {
      const size_t from = match.offset - start;
      if (&match != matches.data()) line_ += ',';
      line_ +=
          "{\"match\":" + json_bytes(text_.substr(match.offset, match.length));
      line_ += ",\"start\":" + std::to_string(from);
      line_ += ",\"end\":" + std::to_string(from + match.length) + '}';
    }
    line_ += "]}}\n";
    output_.put_json(line_);
  }

  Output& output_;
  const std::string path_;
  std::string_view text_;
  LineNumbers numbers_;
  Counts counts_;
  std::string line_;
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
  output_.put_json("{\"type\":\"summary\",\"data\":{\"stats\":{\"searches\":" +
                   std::to_string(files_searched) +
                   ",\"searches_with_match\":" + std::to_string(files_) +
                   ",\"matched_lines\":" + std::to_string(total_.lines) +
                   ",\"matches\":" + std::to_string(total_.matches) + "}}}\n");
}

}  // namespace zenfo::cli
