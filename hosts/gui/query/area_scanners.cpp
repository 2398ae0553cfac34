#include "gui/query/area_scanners.h"

#include <cctype>

namespace zenfo::host::gui {
namespace {

size_t end_or_all(size_t found, size_t length, std::string_view text) {
  return found == std::string_view::npos ? text.size() : found + length;
}

Match area(size_t start, size_t end) {
  return {static_cast<uint32_t>(start), static_cast<uint32_t>(end - start)};
}

// The end of a string with "\" before any byte; a line end that is not escaped
// ends it too, but does not belong to it.
size_t string_end(std::string_view text, size_t start) {
  const char quote = text[start];
  for (size_t at = start + 1; at < text.size(); ++at) {
    if (text[at] == quote) return at + 1;
    if (text[at] == '\n') return at;
    if (text[at] != '\\') continue;
    ++at;
    if (text.substr(at, 2) == "\r\n") ++at;
  }
  return text.size();
}

// Between two digits, as in 1'000'000, it is no quote.
bool separates_digits(std::string_view text, size_t at) {
  const auto is_digit = [&](size_t i) {
    return i < text.size() &&
           std::isxdigit(static_cast<unsigned char>(text[i])) != 0;
  };
  return text[at] == '\'' && at > 0 && is_digit(at - 1) && is_digit(at + 1);
}

enum class CodePart { kComments, kStrings };

std::vector<Match> code_parts(std::string_view text, CodePart wanted) {
  std::vector<Match> areas;
  const auto pass = [&](size_t start, size_t end, CodePart part) {
    if (part == wanted) areas.push_back(area(start, end));
    return end;
  };
  size_t at = 0;
  while ((at = text.find_first_of("/\"'", at)) < text.size()) {
    if (text[at] == '/') {
      const std::string_view two = text.substr(at, 2);
      if (two == "//") {
        const size_t end = end_or_all(text.find('\n', at), 0, text);
        at = pass(at, end, CodePart::kComments);
      } else if (two == "/*") {
        const size_t end = end_or_all(text.find("*/", at + 2), 2, text);
        at = pass(at, end, CodePart::kComments);
      } else {
        ++at;
      }
    } else if (separates_digits(text, at)) {
      ++at;
    } else {
      at = pass(at, string_end(text, at), CodePart::kStrings);
    }
  }
  return areas;
}

// The end of a tag that begins with "<": its ">" outside of quotes.
size_t tag_end(std::string_view text, size_t start) {
  char quote = '\0';
  for (size_t at = start; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '>') {
      return at + 1;
    } else if (c == '"' || c == '\'') {
      quote = c;
    }
  }
  return text.size();
}

bool begins_tag(std::string_view rest) {
  if (rest.size() < 2) return false;
  const char c = rest[1];
  return c == '/' || c == '!' || c == '?' ||
         std::isalpha(static_cast<unsigned char>(c)) != 0;
}

// A shell's word begins after these, so a "#" there begins a comment.
bool begins_word(std::string_view text, size_t at) {
  constexpr std::string_view kBefore = " \t\r\n;&|(){}`";
  return at == 0 || kBefore.find(text[at - 1]) != std::string_view::npos;
}

// Unlike in code, lines may end inside quotes, and "\" is an ordinary byte in
// single ones.
size_t shell_quote_end(std::string_view text, size_t start) {
  const char quote = text[start];
  for (size_t at = start + 1; at < text.size(); ++at) {
    if (text[at] == quote) return at + 1;
    if (text[at] == '\\' && quote == '"') ++at;
  }
  return text.size();
}

}  // namespace

std::vector<Match> code_comments(std::string_view text) {
  return code_parts(text, CodePart::kComments);
}

std::vector<Match> code_strings(std::string_view text) {
  return code_parts(text, CodePart::kStrings);
}

std::vector<Match> markup_tags(std::string_view text) {
  std::vector<Match> areas;
  size_t at = 0;
  while ((at = text.find('<', at)) < text.size()) {
    const std::string_view rest = text.substr(at);
    if (!begins_tag(rest)) {
      ++at;
      continue;
    }
    size_t end;
    if (rest.starts_with("<!--")) {
      end = end_or_all(text.find("-->", at + 4), 3, text);
    } else if (rest.starts_with("<![CDATA[")) {
      end = end_or_all(text.find("]]>", at), 3, text);
    } else {
      end = tag_end(text, at);
    }
    areas.push_back(area(at, end));
    at = end;
  }
  return areas;
}

std::vector<Match> shell_comments(std::string_view text) {
  std::vector<Match> areas;
  size_t at = 0;
  while ((at = text.find_first_of("#\"'\\", at)) < text.size()) {
    if (text[at] == '\\') {
      at += 2;
    } else if (text[at] != '#') {
      at = shell_quote_end(text, at);
    } else if (begins_word(text, at)) {
      const size_t end = end_or_all(text.find('\n', at), 0, text);
      areas.push_back(area(at, end));
      at = end;
    } else {
      ++at;
    }
  }
  return areas;
}

}  // namespace zenfo::host::gui
