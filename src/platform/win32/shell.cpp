// Shell facts from the shell, the perceived type from the registry.
//
// Tested by tests/unit/platform/shell_test.cpp
#include "platform/shell.h"

#include <cstddef>
#include <string_view>

#include "platform/win32/system.h"

namespace zenfo::platform {
namespace {

constexpr UINT kSmallIcon = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;

DWORD_PTR ask_shell(const char* path, UINT question, SHFILEINFOA& answer) {
  return SHGetFileInfoA(path, 0, &answer, sizeof answer, question);
}

// With its point; empty when the bare name has none.
std::string_view extension_of(std::string_view path) {
  const std::string_view name = path.substr(path.find_last_of("\\/:") + 1);
  const size_t point = name.rfind('.');
  return point == name.npos ? std::string_view() : name.substr(point);
}

// A text of the registry, which need not end in a zero. Only as much as a
// comparison with `expected` needs is read.
bool registry_text_is(HKEY key, const char* value, std::string_view expected) {
  char text[16] = {};
  DWORD size = sizeof text;
  DWORD type = 0;
  if (RegQueryValueExA(key, value, nullptr, &type,
                       reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS ||
      type != REG_SZ) {
    return false;
  }
  const std::string_view found(text, size);
  return found.substr(0, found.find('\0')) == expected;
}

}  // namespace

bool read_type_name(const char* path, std::string& type_name) {
  SHFILEINFOA answer = {};
  if (ask_shell(path, SHGFI_TYPENAME, answer) == 0) return false;
  type_name = answer.szTypeName;
  return true;
}

bool read_icon_index(const char* path, int32_t& index) {
  SHFILEINFOA answer = {};
  if (ask_shell(path, kSmallIcon, answer) == 0) return false;
  index = answer.iIcon;
  return true;
}

intptr_t system_image_list(const char* path) {
  SHFILEINFOA answer = {};
  return static_cast<intptr_t>(ask_shell(path, kSmallIcon, answer));
}

bool is_perceived_text(const char* path) {
  const std::string extension(extension_of(path));
  if (extension.empty()) return false;
  HKEY key;
  if (RegOpenKeyExA(HKEY_CLASSES_ROOT, extension.c_str(), 0, KEY_QUERY_VALUE,
                    &key) != ERROR_SUCCESS) {
    return false;
  }
  const bool is_text = registry_text_is(key, "PerceivedType", "text");
  RegCloseKey(key);
  return is_text;
}

}  // namespace zenfo::platform
