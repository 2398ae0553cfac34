#include "gui/win32/system/editor.h"

#include <algorithm>

#include "gui/win32/base/wide.h"

// After windows.h.
#include <shellapi.h>

namespace zenfo::host::gui::win32 {
namespace {

std::string extension_of(const std::string& path) {
  const size_t dot = path.find_last_of(".\\/");
  if (dot == std::string::npos || path[dot] != '.') return "";
  return path.substr(dot + 1);
}

std::string command_for(const Settings& settings, const std::string& path) {
  const auto found = settings.editors.find(extension_of(path));
  return found == settings.editors.end() ? settings.editor : found->second;
}

std::string reason_of_last_error() {
  wchar_t text[512] = L"";
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                 nullptr, GetLastError(), 0, text, 512, nullptr);
  std::string reason = narrow(text);
  while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r' ||
                             reason.back() == '.')) {
    reason.pop_back();
  }
  return reason;
}

std::string start(const std::string& command) {
  std::wstring line = wide(command);
  STARTUPINFOW info{};
  info.cb = sizeof info;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      nullptr, &info, &process)) {
    return reason_of_last_error();
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return "";
}

}  // namespace

std::string editor_command(const std::string& command, const std::string& path,
                           uint64_t line) {
  std::string made;
  for (size_t at = 0; at < command.size();) {
    const std::string_view rest = std::string_view(command).substr(at);
    if (rest.starts_with("{file}")) {
      const bool quoted = at > 0 && command[at - 1] == '"';
      const bool needs = !quoted && path.find(' ') != std::string::npos;
      made += needs ? '"' + path + '"' : path;
      at += 6;
    } else if (rest.starts_with("{line}")) {
      made += std::to_string(std::max<uint64_t>(line, 1));
      at += 6;
    } else {
      made += command[at++];
    }
  }
  return made;
}

std::string open_in_editor(HWND owner, const Settings& settings,
                           const std::string& path, uint64_t line) {
  const std::string command = command_for(settings, path);
  if (!command.empty()) return start(editor_command(command, path, line));
  const auto answer = reinterpret_cast<INT_PTR>(ShellExecuteW(
      owner, nullptr, wide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  return answer > 32 ? "" : reason_of_last_error();
}

void show_in_folder(const std::string& path) {
  const std::wstring arguments = L"/select,\"" + wide(path) + L'"';
  ShellExecuteW(nullptr, nullptr, L"explorer.exe", arguments.c_str(), nullptr,
                SW_SHOWNORMAL);
}

}  // namespace zenfo::host::gui::win32
