// Reads the records that the library appends to its error file.
//
//   2026/11/14-09:42:56
//
//     message  : Getting local time failed
//     context  : Getting local time
//     module   : Main
//     routine  : GetCTime
//
// Tested by tests/hosts/shared/error_records_test.cpp
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zenfo::host {

struct ErrorRecord {
  std::string message;
  std::string context;
  std::string routine;

  bool operator==(const ErrorRecord&) const = default;
};

// The complete records in the bytes of an error file; lines end in CR LF or LF.
std::vector<ErrorRecord> parse_error_records(std::string_view bytes);
// The path of the file, if the record is about one that could not be loaded.
std::optional<std::string> unloaded_file(const ErrorRecord& record);

}  // namespace zenfo::host
