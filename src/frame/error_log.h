// The error file: one record is appended for each failure. The file is opened
// and closed each time, so that a host can read it whenever it wants.
//
// Nothing here throws: a failure while logging is dropped.
//
// Tested by tests/unit/frame/error_log_test.cpp
#pragma once

#include <cstdint>
#include <string>

namespace zenfo {

class ErrorLog {
 public:
  ErrorLog() = default;

  // Takes a new file name; null keeps the old one, empty switches logging off.
  // Always 1.
  int32_t set_file(const char* name);
  const std::string& file_name() const { return file_name_; }
  // Writes one record; 1, or -1 when no file is set, a text is null or the
  // file cannot be written.
  int32_t write(const char* message, const char* context, const char* module,
                const char* routine) const;

 private:
  std::string file_name_;  // empty: logging is off
};

// The log that report_error writes to; null outside Initialize and Terminate.
// Process-wide: a failure may happen where nothing else of the library can be
// reached. The library object owns the log and installs it.
void install_error_log(ErrorLog* log);

// Writes a record of the module "Main" to the installed log; -1 without one.
int32_t report_error(const char* message, const char* context,
                     const char* routine) noexcept;

// The record of a caught fault.
void report_runtime_error(const char* routine) noexcept;

}  // namespace zenfo
