#include "shared/system/file_reader.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

namespace zenfo::host {
namespace {

// The system reads no more than about 2 GB at once.
constexpr size_t kMostAtOnce = size_t{1} << 30;

void close_number(int& number) {
  if (number >= 0) ::close(std::exchange(number, -1));
}

}  // namespace

// The folder of the last file is opened when two files in a row are in it: then
// the system need not look it up for every file.
struct FileReader::Handles {
  ~Handles() {
    close_number(file);
    close_number(folder);
  }

  void open(const std::string& path) {
    constexpr int kMode = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    if (enter(path)) {
      file = openat(folder, path.c_str() + folder_path.size(), kMode);
    }
    // Another folder may have taken the place of the open one.
    if (file < 0) file = ::open(path.c_str(), kMode);
  }

  // Whether the path's folder is open.
  bool enter(std::string_view path) {
    const size_t cut = path.rfind('/') + 1;  // 0 when there is none
    if (cut == 0 || cut == path.size() || path.size() >= PATH_MAX) return false;
    if (path.substr(0, cut) != folder_path) {
      folder_path = path.substr(0, cut);
      close_number(folder);
      return false;
    }
    if (folder < 0) {
      folder = ::open(folder_path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }
    return folder >= 0;
  }

  int file = -1;
  int folder = -1;
  std::string folder_path;  // with its last slash
};

FileReader::FileReader() : handles_(std::make_unique<Handles>()) {}
FileReader::~FileReader() = default;

bool FileReader::open(const std::string& path) {
  close();
  handles_->open(path);
  struct stat facts;
  if (handles_->file < 0 || fstat(handles_->file, &facts) != 0 ||
      !S_ISREG(facts.st_mode)) {
    close();
    return false;
  }
  size_ = static_cast<uint64_t>(facts.st_size);
  return true;
}

void FileReader::close() { close_number(handles_->file); }

bool FileReader::seek(uint64_t offset) {
  return lseek(handles_->file, static_cast<off_t>(offset), SEEK_SET) >= 0;
}

std::optional<size_t> FileReader::read(char* buffer, size_t most) {
  for (;;) {
    const ssize_t got =
        ::read(handles_->file, buffer, std::min(most, kMostAtOnce));
    if (got >= 0) return static_cast<size_t>(got);
    if (errno != EINTR) return std::nullopt;
  }
}

}  // namespace zenfo::host
