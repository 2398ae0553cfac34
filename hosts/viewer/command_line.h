// The command line of zenfo-view.
#pragma once

#include <optional>
#include <string>

namespace zenfo::viewer {

inline constexpr wchar_t kUsage[] =
    L"zenfo-view [--pattern] [--hex] [--shot PNG] FILE TEXT\n\n"
    L"  --pattern    TEXT is a pattern, not a plain text\n"
    L"  --hex        begin with a hex dump\n"
    L"  --shot PNG   save a picture of the text and end";

struct CommandLine {
  bool pattern = false;
  bool hex = false;
  std::wstring shot;  // empty: none
  std::wstring file;
  std::wstring text;
};

// No value when the command line is invalid.
std::optional<CommandLine> read_command_line();

// Converts a path or a text to the bytes that the engine expects: those of the
// process's code page, which the manifest sets to UTF-8. No value when a
// character cannot be converted.
std::optional<std::string> narrow(const std::wstring& text);

}  // namespace zenfo::viewer
