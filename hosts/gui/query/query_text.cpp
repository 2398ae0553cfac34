#include "gui/query/query_text.h"

namespace zenfo::host::gui {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string with_line_ends(std::string_view typed, std::string_view line_end) {
  std::string text;
  for (size_t i = 0; i < typed.size(); ++i) {
    if (typed[i] == '\n') {
      text += line_end;
    } else if (typed[i] != '\r' || typed.substr(i + 1, 1) != "\n") {
      text += typed[i];
    }
  }
  return text;
}

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return "";
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Where the part at the start of a field ends.
size_t part_end(std::string_view field) {
  bool quoted = false;
  for (size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '"') quoted = !quoted;
    if (field[i] == ';' && !quoted) return i;
  }
  return field.size();
}

std::string without_quotes(std::string_view part) {
  std::string text;
  for (const char c : part) {
    if (c != '"') text += c;
  }
  return text;
}

}  // namespace

std::vector<std::string> texts_to_find(std::string_view typed) {
  std::string text = with_line_ends(typed, "\n");
  if (text.find('\n') == std::string::npos) return {text};
  return {text, with_line_ends(typed, "\r\n")};
}

std::string typed_form(std::string_view bytes) {
  return with_line_ends(bytes, "\n");
}

std::string field_form(std::string_view text) {
  return with_line_ends(text, kLineBreakSign);
}

std::string text_of_field(std::string_view field) {
  std::string text;
  while (!field.empty()) {
    const bool breaks = field.starts_with(kLineBreakSign);
    text += breaks ? '\n' : field.front();
    field.remove_prefix(breaks ? kLineBreakSign.size() : 1);
  }
  return text;
}

std::vector<std::string> split_list(std::string_view field) {
  std::vector<std::string> parts;
  while (!field.empty()) {
    const size_t end = part_end(field);
    const std::string part = without_quotes(trimmed(field.substr(0, end)));
    if (!part.empty()) parts.push_back(part);
    field.remove_prefix(end < field.size() ? end + 1 : end);
  }
  return parts;
}

std::string join_list(const std::vector<std::string>& parts) {
  std::string field;
  for (const std::string& part : parts) {
    if (!field.empty()) field += "; ";
    const bool quoted =
        part.find(';') != std::string::npos || trimmed(part) != part;
    field += quoted ? '"' + part + '"' : part;
  }
  return field;
}

}  // namespace zenfo::host::gui
