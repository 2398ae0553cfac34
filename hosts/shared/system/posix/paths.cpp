#include "shared/system/paths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace zenfo::host {

std::filesystem::path to_path(std::string_view text) { return text; }

std::string narrow(const NativeText& native) { return native; }

std::FILE* open_file(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

std::string without_case(std::string_view name) { return std::string(name); }

std::FILE* open_ordinary(const std::string& path) {
  const int number =
      open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (number < 0) return nullptr;
  struct stat facts;
  const bool ordinary = fstat(number, &facts) == 0 && S_ISREG(facts.st_mode);
  std::FILE* file = ordinary ? fdopen(number, "rb") : nullptr;
  if (file == nullptr) close(number);
  return file;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

void set_environment(const char* name, const char* value) {
  setenv(name, value, 1);
}

}  // namespace zenfo::host
