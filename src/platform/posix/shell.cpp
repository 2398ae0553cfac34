// Shell facts without a shell: they follow from the extension alone.
//
// Tested by tests/unit/platform/shell_test.cpp
#include "platform/shell.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace zenfo::platform {
namespace {

// Sorted, in lower case.
constexpr std::string_view kTextExtensions[] = {
    "asm", "bat",  "c",    "cc",   "cmd", "conf", "cpp",  "cs",  "css",
    "csv", "cxx",  "diff", "h",    "hpp", "htm",  "html", "hxx", "inf",
    "ini", "java", "js",   "json", "log", "md",   "php",  "pl",  "ps1",
    "py",  "reg",  "rs",   "sh",   "sql", "text", "toml", "ts",  "txt",
    "vbs", "xml",  "xsl",  "yaml", "yml"};
static_assert(std::is_sorted(std::begin(kTextExtensions),
                             std::end(kTextExtensions)));

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view extension_of(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const size_t point = name.rfind('.');
  return point == std::string_view::npos ? std::string_view()
                                         : name.substr(point + 1);
}

}  // namespace

bool read_type_name(const char* path, std::string& type_name) {
  const std::string_view extension = extension_of(path);
  type_name.clear();
  std::transform(extension.begin(), extension.end(),
                 std::back_inserter(type_name), upper);
  type_name += extension.empty() ? "File" : " File";
  return true;
}

bool read_icon_index(const char*, int32_t& index) {
  index = 0;
  return true;
}

intptr_t system_image_list(const char*) { return 0; }

bool is_perceived_text(const char* path) {
  std::string extension(extension_of(path));
  std::transform(extension.begin(), extension.end(), extension.begin(), lower);
  return std::binary_search(std::begin(kTextExtensions),
                            std::end(kTextExtensions), extension);
}

}  // namespace zenfo::platform
