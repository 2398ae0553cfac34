#include "shared/text/error_records.h"

#include <utility>

namespace zenfo::host {
namespace {

std::string_view take_line(std::string_view& rest) {
  const size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

struct Field {
  std::string_view label;
  std::string ErrorRecord::*place;
};

constexpr Field kFields[] = {
    {"  message  : ", &ErrorRecord::message},
    {"  context  : ", &ErrorRecord::context},
    {"  routine  : ", &ErrorRecord::routine},
};

}  // namespace

std::vector<ErrorRecord> parse_error_records(std::string_view bytes) {
  std::vector<ErrorRecord> records;
  ErrorRecord record;
  while (!bytes.empty()) {
    const std::string_view line = take_line(bytes);
    for (const Field& field : kFields) {
      if (!line.starts_with(field.label)) continue;
      record.*field.place = line.substr(field.label.size());
      // The routine is the last line of a record.
      if (field.place == &ErrorRecord::routine) {
        records.push_back(std::exchange(record, {}));
      }
    }
  }
  return records;
}

std::optional<std::string> unloaded_file(const ErrorRecord& record) {
  constexpr std::string_view kWords = " could not be opened";
  if (record.context != "loading file" || !record.message.ends_with(kWords)) {
    return std::nullopt;
  }
  return record.message.substr(0, record.message.size() - kWords.size());
}

}  // namespace zenfo::host
