// Sets an environment variable as long as the object lives.
#pragma once

#include <cstdlib>
#include <string>
#ifdef _WIN32
#include <windows.h>
#endif

namespace zenfo::test {

class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) {
      had_value_ = true;
      old_ = old;
    }
    set(value);
  }
  ~EnvironmentVariable() { set(had_value_ ? old_.c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  // Null removes the variable.
  void set(const char* value) {
#ifdef _WIN32
    SetEnvironmentVariableA(name_.c_str(), value);
#else
    if (value != nullptr) {
      setenv(name_.c_str(), value, 1);
    } else {
      unsetenv(name_.c_str());
    }
#endif
  }

 private:
  std::string name_;
  std::string old_;
  bool had_value_ = false;
};

}  // namespace zenfo::test
