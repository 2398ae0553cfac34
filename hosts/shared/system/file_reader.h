// Reads ordinary files, one after the other, with few calls of the system.
// posix/file_reader.cpp and win32/file_reader.cpp are twins.
//
// Tested by tests/hosts/shared/found_text_test.cpp,
// tests/cli/posix_reading_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zenfo::host {

class FileReader {
 public:
  FileReader();
  ~FileReader();
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;

  // False if the file cannot be opened or is not an ordinary one: a pipe that
  // replaced the file is not waited for.
  bool open(const std::string& path);
  void close();
  // Of the open file. A file that the system makes while it is read has size 0.
  uint64_t size() const { return size_; }
  // Continues at this offset. False when the system cannot.
  bool seek(uint64_t offset);
  // Reads at most this many bytes; 0 at the end, no value for a failure.
  std::optional<size_t> read(char* buffer, size_t most);

 private:
  struct Handles;

  std::unique_ptr<Handles> handles_;
  uint64_t size_ = 0;
};

}  // namespace zenfo::host
