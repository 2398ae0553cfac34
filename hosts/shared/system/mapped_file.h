// A file's bytes where the system has them, without reading it whole: for one
// line of a large file only its part of the file is touched.
//
// Tested by tests/hosts/shared/found_text_test.cpp,
// tests/cli/posix_find_test.cpp
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zenfo::host {

// Should the file be shortened by somebody meanwhile, the process ends when it
// looks at what is gone. For commands that leave nothing half done.
class MappedFile {
 public:
  MappedFile() = default;
  ~MappedFile() { close(); }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // To be called once, before the library is at work: that has a handler of its
  // own for the files that it maps, and passes on what is not its own.
  // `handler` is called from within a signal handler, and is to end the
  // process.
  using LossHandler = void(const char* path);
  static void prepare(LossHandler& handler);

  // False for a file that is not worth it or cannot be mapped, and always on
  // Windows, where nobody else could shorten it then: read it.
  bool open(const std::string& path);
  void close();
  bool is_open() const { return data_ != nullptr; }
  std::string_view view() const { return {data_, size_}; }

 private:
  const char* data_ = nullptr;
  size_t size_ = 0;
};

}  // namespace zenfo::host
