// A file mapped by another program: on Windows it can be opened for writing but
// not truncated.
#pragma once

#include <windows.h>

#include <string>

namespace zenfo::test {

class ForeignMapping {
 public:
  explicit ForeignMapping(const std::string& path)
      : file_(CreateFileA(path.c_str(), GENERIC_READ,
                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                          OPEN_EXISTING, 0, nullptr)),
        mapping_(
            CreateFileMappingA(file_, nullptr, PAGE_READONLY, 0, 0, nullptr)),
        view_(MapViewOfFile(mapping_, FILE_MAP_READ, 0, 0, 0)) {}
  ~ForeignMapping() {
    UnmapViewOfFile(view_);
    CloseHandle(mapping_);
    CloseHandle(file_);
  }
  ForeignMapping(const ForeignMapping&) = delete;
  ForeignMapping& operator=(const ForeignMapping&) = delete;
  bool is_mapped() const { return view_ != nullptr; }

 private:
  HANDLE file_;
  HANDLE mapping_;
  const void* view_;
};

}  // namespace zenfo::test
