// Standard output through one buffer of 64 KB. The first write that fails is
// complained about; what follows is dropped, and the command ends with 2. A
// reader that has had enough is no failure: what follows is dropped, and the
// command ends quietly.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string>
#include <string_view>

namespace zenfo::cli {

class Output {
 public:
  Output() { buffer_.reserve(kSize); }
  ~Output() { flush(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void put(std::string_view text) {
    if (buffer_.size() + text.size() > kSize) flush();
    buffer_ += text;
  }
  void put(char byte) { put(std::string_view(&byte, 1)); }
  void flush();
  // Whether nobody gets the output any more.
  bool failed() const { return failed_; }

 private:
  static constexpr size_t kSize = 64 * 1024;
  std::string buffer_;
  bool failed_ = false;
};

}  // namespace zenfo::cli
