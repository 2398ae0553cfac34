// A file mapped into memory: showing one line of a large file touches only that
// part of it.
//
// Tested by tests/hosts/shared/found_text_test.cpp,
// tests/cli/posix_find_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::host {

// If somebody shortens the file, the process ends when it reads the missing
// part. So it is only for commands that leave nothing half done.
class MappedFile {
 public:
  MappedFile() = default;
  ~MappedFile() { close(); }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // Call it once, before the library starts: the library installs its own
  // handler for the files it maps and passes other faults on. `handler` is
  // called from a signal handler and must end the process.
  using LossHandler = void(const char* path);
  static void prepare(LossHandler& handler);

  // Whether a file is large enough.
  static bool is_worth(uint64_t size);
  // False for a file that is too small or cannot be mapped, and always on
  // Windows, where a mapping would keep others from shortening the file: read
  // it instead.
  bool open(const std::string& path);
  void close();
  bool is_open() const { return data_ != nullptr; }
  std::string_view view() const { return {data_, size_}; }

 private:
  const char* data_ = nullptr;
  size_t size_ = 0;
};

}  // namespace zenfo::host
