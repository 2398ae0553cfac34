// Standard output through one buffer of 64 KB. The first write that fails is
// complained about; what follows is dropped, and the command ends with 2. A
// reader that has had enough is no failure: what follows is dropped, and the
// command ends quietly.
//
// On a terminal control characters of texts are shown, as visible.h tells; into
// a pipe or a file every byte goes as it is.
//
// Tested by tests/cli/command_test.cpp, tests/cli/posix_terminal_test.cpp
#pragma once

#include <string>
#include <string_view>

namespace zenfo::host::cli {

class Output {
 public:
  Output();
  ~Output() { flush(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Text of several lines perhaps.
  void put(std::string_view text) {
    if (on_terminal_) {
      put_visible(text);
    } else {
      put_bytes(text);
    }
  }
  // A name of a file, or else what is to stay on its line.
  void put_name(std::string_view name) { put_bytes(shown_name(name)); }
  std::string shown_name(std::string_view name) const;
  // Whole lines of JSON.
  void put_json(std::string_view lines);
  // What is the command's own: ends of lines, zero bytes, colours.
  void put(char byte) { put_bytes(std::string_view(&byte, 1)); }
  void put_bytes(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > kSize) flush();
    buffer_ += bytes;
  }
  void flush();
  bool on_terminal() const { return on_terminal_; }
  // Whether nobody gets the output any more.
  bool failed() const { return failed_; }

 private:
  static constexpr size_t kSize = 64 * 1024;

  void put_visible(std::string_view text);

  bool on_terminal_;
  std::string buffer_;
  bool failed_ = false;
};

}  // namespace zenfo::host::cli
