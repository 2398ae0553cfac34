// A file, pipe or device of the system, read or written in pieces.
//
// posix/byte_stream.cpp and win32/byte_stream.cpp are twins.
//
// Tested by tests/cli/input_test.cpp, tests/cli/posix_input_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace zenfo::host {

class ByteStream {
 public:
  static ByteStream standard_input();
  // Waits for the writer of a pipe.
  static ByteStream to_read(const std::string& path);
  // Opens an existing file and empties it.
  static ByteStream to_rewrite(const std::string& path);
  ~ByteStream();
  ByteStream(const ByteStream&) = delete;
  ByteStream& operator=(const ByteStream&) = delete;

  bool is_open() const;
  // Returns the number of bytes read; 0 at the end and when the user stops the
  // command, no value after an error.
  std::optional<size_t> read(char* bytes, size_t room) const;
  // Writes all of them. False after an error.
  bool write(const char* bytes, size_t size) const;
  // Why the last call failed.
  static std::string last_error();

 private:
  ByteStream(intptr_t file, bool owned) : file_(file), owned_(owned) {}

  intptr_t file_;  // the system's number or handle
  bool owned_;     // closed with this object
};

}  // namespace zenfo::host
