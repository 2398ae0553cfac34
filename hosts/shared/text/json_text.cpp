#include "shared/text/json_text.h"

#include <algorithm>
#include <cstdio>

namespace zenfo::host {
namespace {

unsigned byte_at(std::string_view bytes, size_t index) {
  return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
}

// A row of the table of well-formed UTF-8: ranges of the first and second byte,
// and the length. Further bytes are 80 to BF.
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

// The length of the non-ASCII character at the start; 0 if there is none.
size_t sequence_length(std::string_view bytes) {
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

std::string quoted(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const auto end = std::find_if(text.begin(), text.end(), is_escaped);
    quoted.append(text.begin(), end);
    text.remove_prefix(static_cast<size_t>(end - text.begin()));
    if (text.empty()) break;
    append_escaped(quoted, text.front());
    text.remove_prefix(1);
  }
  return quoted + '"';
}

std::string encoded(std::string_view bytes) {
  return "{\"bytes\":\"" + base64(bytes) + "\"}";
}

}  // namespace

bool is_utf8(std::string_view bytes) {
  for (;;) {
    const auto other = std::find_if(bytes.begin(), bytes.end(), [](char c) {
      return static_cast<unsigned char>(c) >= 0x80;
    });
    if (other == bytes.end()) return true;
    bytes.remove_prefix(static_cast<size_t>(other - bytes.begin()));
    const size_t length = sequence_length(bytes);
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

std::string json_text(std::string_view bytes) {
  return is_utf8(bytes) ? quoted(bytes) : encoded(bytes);
}

std::string json_bytes(std::string_view bytes) {
  return is_utf8(bytes) ? "{\"text\":" + quoted(bytes) + '}' : encoded(bytes);
}

}  // namespace zenfo::host
