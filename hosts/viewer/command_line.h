// What the user asks for.
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

// Nothing when it cannot be understood.
std::optional<CommandLine> read_command_line();

// The bytes that the engine takes for a path or a text: those of the process's
// code page, which the manifest makes UTF-8. Nothing when it has no such bytes.
std::optional<std::string> narrow(const std::wstring& text);

}  // namespace zenfo::viewer
