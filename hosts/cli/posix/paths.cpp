#include "paths.h"

#include <cstdlib>

namespace zenfo::cli {

std::filesystem::path to_path(std::string_view text) { return text; }

std::string narrow(const NativeText& native) { return native; }

std::FILE* open_file(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

std::string without_case(std::string_view name) { return std::string(name); }

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace zenfo::cli
