// The system's icons of files, by their name extension. A thread asks for them,
// because the system may take long; a notice says that there are new ones.
//
// Tested by tests/gui/win32/file_icons_test.cpp
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gui/engine/side_thread.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

class FileIcons {
 public:
  // Called on the thread; finish() is to be called then.
  explicit FileIcons(SideThread::Notice notice) : thread_(std::move(notice)) {}
  ~FileIcons();
  FileIcons(const FileIcons&) = delete;
  FileIcons& operator=(const FileIcons&) = delete;

  // Null if it is not there yet, or if there is none.
  HICON find(std::string_view extension);
  bool waiting() const { return thread_.busy(); }
  void finish() { thread_.finish(); }
  // Called by finish() when there are new ones.
  std::function<void()> on_new;

 private:
  using Icons = std::map<std::string, HICON, std::less<>>;
  static constexpr size_t kMost = 300;  // Others have none.

  void fetch();

  Icons icons_;  // null: wanted
  std::vector<std::string> wanted_;
  SideThread thread_;
};

}  // namespace zenfo::host::gui::win32
