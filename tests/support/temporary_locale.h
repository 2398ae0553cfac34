// A locale with 8-bit letters, made for one test and reset at its end.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "text/byte_tables.h"

namespace zenfo::test {

// Set as a host would: active while the object lives, if it could be made (the
// system needs localedef and the locale sources). The byte tables stay
// unchanged.
class HostLatinLocale {
 public:
  HostLatinLocale() {
    char folder[] = "/tmp/zenfo_locale_XXXXXX";
    if (mkdtemp(folder) == nullptr) return;
    folder_ = folder;
    const std::string make =
        "localedef --no-archive -c -i de_DE -f ISO-8859-1 " + folder_ +
        "/zenfo_latin >/dev/null 2>&1";
    if (std::system(make.c_str()) == -1) return;
    setenv("LOCPATH", folder_.c_str(), 1);
    in_force_ = std::setlocale(LC_CTYPE, "zenfo_latin") != nullptr;
  }
  ~HostLatinLocale() { leave(); }
  HostLatinLocale(const HostLatinLocale&) = delete;
  HostLatinLocale& operator=(const HostLatinLocale&) = delete;

  bool in_force() const { return in_force_; }

 protected:
  void leave() {
    std::setlocale(LC_CTYPE, "C");
    unsetenv("LOCPATH");
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
    folder_.clear();
  }

 private:
  std::string folder_;
  bool in_force_ = false;
};

// Also updates the byte tables.
class LatinLocale : public HostLatinLocale {
 public:
  LatinLocale() { refresh_byte_tables(); }
  ~LatinLocale() {
    leave();
    refresh_byte_tables();
  }
};

}  // namespace zenfo::test
