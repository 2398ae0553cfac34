// Parts of a file, read as they are needed, a small window at a time.
//
// Tested by tests/gui/text/file_part_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "shared/system/file_reader.h"

namespace zenfo::host::gui {

class FilePart {
 public:
  // False if the file cannot be opened or is not an ordinary one. It stays open
  // until close(): on Windows nobody can delete it meanwhile.
  bool open(const std::string& path);
  void close();
  uint64_t size() const { return size_; }

  // The bytes of a part, fewer at the end of the file and after an error. Valid
  // until the next call.
  std::string_view read(uint64_t offset, size_t length);

 private:
  static constexpr size_t kWindow = size_t{64} * 1024;

  void fill(uint64_t offset, size_t length);

  FileReader reader_;
  uint64_t size_ = 0;
  std::string window_;
  uint64_t start_ = 0;  // of the window in the file
};

}  // namespace zenfo::host::gui
