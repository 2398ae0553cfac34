// The records of an error file without their time stamps.
#pragma once

#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace zenfo::test {

struct ErrorRecord {
  std::string message;
  std::string context;
  std::string routine;
  bool operator==(const ErrorRecord&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const ErrorRecord& r) {
    return out << r.message << " / " << r.context << " / " << r.routine;
  }
};

// All records, oldest first; none when there is no file.
inline std::vector<ErrorRecord> read_error_records(const std::string& path) {
  std::vector<ErrorRecord> records;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const auto value = [&](const char* label) -> std::string* {
      if (!line.starts_with(label)) return nullptr;
      line.erase(0, std::string(label).size());
      return &line;
    };
    if (auto* message = value("  message  : ")) {
      records.push_back({*message, "", ""});
    } else if (auto* context = value("  context  : ")) {
      records.back().context = *context;
    } else if (auto* routine = value("  routine  : ")) {
      records.back().routine = *routine;
    }
  }
  return records;
}

// The record of a fault inside an operation.
inline ErrorRecord runtime_error(const std::string& routine) {
  return {"Runtime error", "Default error handler", routine};
}

}  // namespace zenfo::test
