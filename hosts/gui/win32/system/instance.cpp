#include "gui/win32/system/instance.h"

#include <string_view>

namespace zenfo::host::gui::win32 {
namespace {

constexpr ULONG_PTR kArguments = 0x5A46'0001;
constexpr UINT kPatience = 5000;  // milliseconds

}  // namespace

// Each argument ends with a zero byte; no argument can contain one.
bool hand_over(const wchar_t* window_class,
               const std::vector<std::string>& arguments) {
  const HWND window = FindWindowW(window_class, nullptr);
  if (window == nullptr) return false;
  std::string text;
  for (const std::string& argument : arguments) text += argument + '\0';
  COPYDATASTRUCT data{kArguments, static_cast<DWORD>(text.size()), text.data()};
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  AllowSetForegroundWindow(process);
  DWORD_PTR taken = 0;
  if (SendMessageTimeoutW(window, WM_COPYDATA, 0,
                          reinterpret_cast<LPARAM>(&data), SMTO_ABORTIFHUNG,
                          kPatience, &taken) == 0 ||
      taken == 0) {
    return false;
  }
  if (IsIconic(window)) ShowWindowAsync(window, SW_RESTORE);
  SetForegroundWindow(window);
  return true;
}

std::optional<std::vector<std::string>> arguments_in(
    const COPYDATASTRUCT& data) {
  if (data.dwData != kArguments) return std::nullopt;
  std::string_view rest(static_cast<const char*>(data.lpData), data.cbData);
  std::vector<std::string> arguments;
  while (!rest.empty()) {
    const size_t end = rest.find('\0');
    arguments.emplace_back(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return arguments;
}

}  // namespace zenfo::host::gui::win32
