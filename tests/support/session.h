// The library between Initialize and Terminate, with an error file and a
// folder: the base of most contract tests.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo::test {

// One record of the error file, without its time stamp.
struct LogRecord {
  std::string message;
  std::string context;
  std::string routine;
  std::string module = "Main";
  bool operator==(const LogRecord&) const = default;
};

inline void PrintTo(const LogRecord& record, std::ostream* out) {
  *out << "{" << record.message << " | " << record.context << " | "
       << record.routine << " | " << record.module << "}";
}

inline LogRecord logged_fault(std::string routine) {
  return {"Runtime error", "Default error handler", std::move(routine)};
}

// The record for an unknown list number.
inline LogRecord unknown_list() {
  return {"", "Error retrieving list handler", "get_list"};
}

// Parses a whole error file; any unexpected byte fails the test.
class LogReader {
 public:
  explicit LogReader(std::string bytes) : rest_(std::move(bytes)) {}

  std::vector<LogRecord> records() {
    std::vector<LogRecord> all;
    while (!rest_.empty() && !testing::Test::HasFailure()) {
      stamps.push_back(take_stamp());
      LogRecord record;
      record.message = take_field("  message  : ");
      record.context = take_field("  context  : ");
      record.module = take_field("  module   : ");
      record.routine = take_field("  routine  : ");
      expect("\r\n");
      all.push_back(record);
    }
    return all;
  }

  std::vector<std::string> stamps;  // of the records, in order

 private:
  void expect(std::string_view wanted) {
    EXPECT_EQ(rest_.substr(0, wanted.size()), wanted);
    rest_.erase(0, wanted.size());
  }
  std::string take_stamp() {
    constexpr std::string_view kForm = "0000/00/00-00:00:00";
    const std::string stamp = rest_.substr(0, kForm.size());
    std::string form = stamp;
    for (char& c : form) {
      if (c >= '0' && c <= '9') c = '0';
    }
    EXPECT_EQ(form, kForm);
    rest_.erase(0, kForm.size());
    expect("\r\n\r\n");
    return stamp;
  }
  std::string take_field(std::string_view title) {
    expect(title);
    const size_t end = rest_.find("\r\n");
    EXPECT_NE(end, std::string::npos) << "no line end in " << rest_;
    const std::string value = rest_.substr(0, end);
    rest_.erase(0, value.size());
    expect("\r\n");
    return value;
  }

  std::string rest_;
};

// A host's buffer, filled with garbage before each call.
using TextAccessor = int32_t(ZENFO_CALL*)(int32_t, uint32_t, char*, uint32_t);
using FixedListAccessor = int32_t(ZENFO_CALL*)(uint32_t, char*, uint32_t);

// The result of an accessor and the text in the buffer.
struct Text {
  int32_t result = 0;
  std::string text;
  bool operator==(const Text&) const = default;
};

inline void PrintTo(const Text& text, std::ostream* out) {
  *out << text.result << " \"" << text.text << '"';
}

inline const Text kNoText{-1, ""};

inline Text read_text(TextAccessor accessor, int32_t list, uint32_t index) {
  std::vector<char> buffer(8192, '#');
  const int32_t result = accessor(list, index, buffer.data(), 0);
  return {result, buffer.data()};
}

inline Text read_text(FixedListAccessor accessor, uint32_t index) {
  std::vector<char> buffer(8192, '#');
  const int32_t result = accessor(index, buffer.data(), 0);
  return {result, buffer.data()};
}

// Option bytes that select these facts.
using Options = std::array<unsigned char, ZENFO_OPTION_COUNT>;
inline Options asking_for(std::initializer_list<int> bytes) {
  Options options{};
  for (int byte : bytes) options[static_cast<size_t>(byte)] = 1;
  return options;
}
inline const Options kNoFacts{};
inline const Options kAllFacts = asking_for({1, 2, 3, 4, 5});

class Session {
 public:
  Session() {
    EXPECT_EQ(Initialize(), 1);
    EXPECT_EQ(SetErrorFile(error_file().c_str()), 1);
  }
  ~Session() { Terminate(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  std::string error_file() const { return logs_.path("errors.txt"); }
  // The records written since the last call.
  std::vector<LogRecord> take_log() {
    if (!file_exists(error_file())) return {};
    LogReader reader(read_file(error_file()));
    std::remove(error_file().c_str());
    return reader.records();
  }

  // A specification or path in which "~" means the session's folder and "/" the
  // system's separator.
  std::string spelled(std::string_view text) const {
    std::string whole;
    for (char c : text) {
      if (c == '~') {
        whole += folder.path();
      } else {
        whole += c == '/' ? kSeparator : c;
      }
    }
    return whole;
  }

  int32_t find(int32_t list, std::string_view specification,
               const Options& options = kAllFacts) const {
    return FindFiles(list, spelled(specification).c_str(), options.data(), "");
  }

  // The full names of a list, below "~" and with "/".
  std::vector<std::string> names(int32_t list) const {
    std::vector<std::string> all;
    const int32_t count = GetCount(list, -1);
    for (int32_t i = 0; i < count; ++i) {
      all.push_back(
          shown(read_text(GetFullName, list, static_cast<uint32_t>(i)).text));
    }
    return all;
  }
  std::string shown(std::string path) const {
    if (path.rfind(folder.path(), 0) == 0) {
      path.replace(0, folder.path().size(), "~");
    }
    for (char& c : path) {
      if (c == kSeparator) c = '/';
    }
    return path;
  }

  // Appends `count` entries to a list that is empty, all of one small file.
  void fill(int32_t list, int32_t count) const {
    folder.file("fill/one", "x");
    std::string specification = "0~/fill/one";
    for (int32_t i = 1; i < count; ++i) specification += ";one";
    ASSERT_EQ(find(list, specification, kNoFacts), count);
  }

  TempFolder folder;

 private:
  TempFolder logs_;
};

}  // namespace zenfo::test
