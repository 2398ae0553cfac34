// Standard output through one buffer of 64 KB. The first write that fails
// causes a complaint; later output is dropped, and the command ends with 2. If
// the reader of a pipe closed it, later output is dropped without a complaint.
//
// On a terminal control characters in texts are made visible, see visible.h; a
// pipe or a file gets every byte unchanged.
//
// Tested by tests/cli/command_test.cpp, tests/cli/posix_terminal_test.cpp
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace zenfo::host::cli {

class Output {
 public:
  Output();
  ~Output() { flush(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Writes text of one or more lines.
  void put(std::string_view text) {
    if (on_terminal_) {
      put_visible(text);
    } else {
      put_bytes(text);
    }
  }
  // Writes a file name, or another text that must stay on its line.
  void put_name(std::string_view name) { put_bytes(shown_name(name)); }
  std::string shown_name(std::string_view name) const;
  // Whole lines of JSON.
  void put_json(std::string_view lines);
  // Writes the command's own bytes: line ends, zero bytes, colours.
  void put(char byte) { put_bytes(std::string_view(&byte, 1)); }
  void put_bytes(std::string_view bytes) {
    if (bytes.size() > kSize - used_) {
      put_piecewise(bytes);
      return;
    }
    std::memcpy(buffer_.get() + used_, bytes.data(), bytes.size());
    used_ += bytes.size();
  }
  // Writes a number in decimal digits.
  void put_number(uint64_t number);
  void flush();
  bool on_terminal() const { return on_terminal_; }
  // Whether a write failed, so that all output is dropped. May be asked from
  // any thread.
  bool failed() const { return failed_; }

 private:
  static constexpr size_t kSize = 64 * 1024;

  void put_visible(std::string_view text);
  void put_piecewise(std::string_view bytes);
  // Returns the reason for a failure.
  std::string write_buffer() const;

  bool on_terminal_;
  std::unique_ptr<char[]> buffer_;
  size_t used_ = 0;
  std::atomic<bool> failed_ = false;
};

}  // namespace zenfo::host::cli
