// An open file's bytes in memory without a copy of them.
//
// Tested by tests/unit/platform/file_view_test.cpp,
// tests/unit/platform/posix_file_view_test.cpp
#pragma once

#include <atomic>
#include <cstddef>

#include "platform/files.h"

namespace zenfo::platform {

// Natively a private mapping: what is written to it never reaches the file, and
// what others write to the file meanwhile may be seen. The system reads a page
// when it is first used. One that cannot be read then or later, as when the
// file has been shortened, reads as zero bytes, and lost() says so.
// Windows has no views: a mapped file could not be shortened by anybody.
class FileView {
 public:
  FileView() = default;
  ~FileView() { close(); }
  FileView(const FileView&) = delete;
  FileView& operator=(const FileView&) = delete;

  // Views the first `size` bytes (not 0), with one more byte after them that
  // may be used too. False when no view is possible: read the file instead.
  bool open(const InputFile& file, size_t size);
  // Reads the bytes from `begin` to `end` into memory; call it in order. False
  // when they, or any before, cannot be read.
  bool fill(size_t begin, size_t end);
  // Whether any page that was used could not be read.
  bool lost() const { return lost_; }
  void close();

  bool is_open() const { return data_ != nullptr; }
  char* data() const { return data_; }

 private:
  char* reserved_ = nullptr;  // the addresses around the view
  char* data_ = nullptr;
  size_t size_ = 0;
  size_t filled_ = 0;
  std::atomic<bool> lost_{false};
};

}  // namespace zenfo::platform
