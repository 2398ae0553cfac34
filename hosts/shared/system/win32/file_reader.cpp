#include "shared/system/file_reader.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "shared/system/input_stream.h"
#include "shared/system/paths.h"

namespace zenfo::host {

struct FileReader::Handles {
  InputStream file;
};

FileReader::FileReader() : handles_(std::make_unique<Handles>()) {}
FileReader::~FileReader() = default;

bool FileReader::open(const std::string& path) {
  handles_->file = open_unbuffered(path);
  if (handles_->file == nullptr) return false;
  std::error_code failed;
  const auto size = std::filesystem::file_size(to_path(path), failed);
  size_ = failed ? 0 : static_cast<uint64_t>(size);
  return true;
}

void FileReader::close() { handles_->file.reset(); }

bool FileReader::seek(uint64_t offset) {
  return _fseeki64(handles_->file.get(), static_cast<int64_t>(offset),
                   SEEK_SET) == 0;
}

std::optional<size_t> FileReader::read(char* buffer, size_t most) {
  std::FILE* file = handles_->file.get();
  const size_t got = std::fread(buffer, 1, most, file);
  if (std::ferror(file) != 0) return std::nullopt;
  return got;
}

}  // namespace zenfo::host
