// A file that is written beside the one it replaces when it is complete.
//
// Tested by tests/gui/settings/new_file_test.cpp
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

namespace zenfo::host::gui {

class NewFile {
 public:
  explicit NewFile(std::string path) : path_(std::move(path)) {}
  // Deletes what was written, unless it was put in place.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // Creates folders that are missing. False, with reason(), when that fails.
  bool open();
  bool write(std::string_view text);
  bool put_in_place();
  const std::string& reason() const { return reason_; }

 private:
  std::string beside() const { return path_ + ".new"; }
  bool fail();
  bool close();

  const std::string path_;
  std::FILE* file_ = nullptr;
  bool made_ = false;
  std::string reason_;
};

// Writes a whole text so.
bool replace_file(const std::string& path, std::string_view text,
                  std::string* reason);

}  // namespace zenfo::host::gui
