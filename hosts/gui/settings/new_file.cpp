#include "gui/settings/new_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "shared/system/paths.h"

namespace zenfo::host::gui {

namespace fs = std::filesystem;

NewFile::~NewFile() {
  if (!made_) return;
  close();
  std::error_code ignored;
  fs::remove(to_path(beside()), ignored);
}

// The system's error of the C library's last call.
bool NewFile::fail() {
  reason_ = std::error_code(errno, std::generic_category()).message();
  return false;
}

bool NewFile::open() {
  const fs::path target = to_path(path_);
  std::error_code ignored;  // Opening tells what matters.
  if (target.has_parent_path()) {
    fs::create_directories(target.parent_path(), ignored);
  }
  file_ = open_file(beside(), "wb");
  if (file_ == nullptr) return fail();
  made_ = true;
  return true;
}

bool NewFile::write(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), file_) == text.size() ||
         fail();
}

bool NewFile::close() {
  std::FILE* file = std::exchange(file_, nullptr);
  return file == nullptr || std::fclose(file) == 0 || fail();
}

bool NewFile::put_in_place() {
  if (!close()) return false;
  std::error_code failed;
  fs::rename(to_path(beside()), to_path(path_), failed);
  made_ = static_cast<bool>(failed);
  if (failed) reason_ = failed.message();
  return !failed;
}

bool replace_file(const std::string& path, std::string_view text,
                  std::string* reason) {
  NewFile file(path);
  const bool replaced = file.open() && file.write(text) && file.put_in_place();
  if (!replaced) *reason = file.reason();
  return replaced;
}

}  // namespace zenfo::host::gui
