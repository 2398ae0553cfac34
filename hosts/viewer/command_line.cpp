#include "viewer/command_line.h"

#include <windows.h>

#include <shellapi.h>

#include <deque>
#include <utility>

namespace zenfo::viewer {
namespace {

std::deque<std::wstring> arguments() {
  int count = 0;
  wchar_t** const all = CommandLineToArgvW(GetCommandLineW(), &count);
  if (all == nullptr) return {};
  std::deque<std::wstring> rest(all + 1, all + count);
  LocalFree(all);
  return rest;
}

std::wstring take_first(std::deque<std::wstring>& rest) {
  std::wstring first = std::move(rest.front());
  rest.pop_front();
  return first;
}

}  // namespace

// The last two arguments are never options, so they may begin with "--".
std::optional<CommandLine> read_command_line() {
  CommandLine line;
  std::deque<std::wstring> rest = arguments();
  while (rest.size() > 2) {
    const std::wstring option = take_first(rest);
    if (option == L"--pattern") {
      line.pattern = true;
    } else if (option == L"--hex") {
      line.hex = true;
    } else if (option == L"--shot") {
      line.shot = take_first(rest);
    } else {
      return std::nullopt;
    }
  }
  if (rest.size() != 2) return std::nullopt;
  line.file = take_first(rest);
  line.text = take_first(rest);
  return line;
}

std::optional<std::string> narrow(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  // With UTF-8 Windows reports lost characters by a flag, with other code pages
  // by an output argument.
  BOOL lost = FALSE;
  const bool utf8 = GetACP() == CP_UTF8;
  BOOL* const note = utf8 ? nullptr : &lost;
  const DWORD flags = utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
  const int size = WideCharToMultiByte(CP_ACP, flags, text.data(), length,
                                       nullptr, 0, nullptr, note);
  std::string bytes(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, flags, text.data(), length, bytes.data(), size,
                      nullptr, note);
  if (lost || (size == 0 && length != 0)) return std::nullopt;
  return bytes;
}

}  // namespace zenfo::viewer
