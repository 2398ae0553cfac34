#include "shared/system/mapped_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace zenfo::host {
namespace {

// Reading is as fast for smaller files, and the copy does not change later.
constexpr uint64_t kWorthIt = 1 << 20;

MappedFile::LossHandler* on_loss = nullptr;

// Set before the mapping is read; empty while nothing is mapped.
char mapped_path[4096];

void on_bus_error(int number) {
  if (mapped_path[0] == '\0') {
    signal(number, SIG_DFL);
    raise(number);
    return;
  }
  on_loss(mapped_path);
}

void expect_loss(const std::string& path) {
  mapped_path[path.copy(mapped_path, sizeof mapped_path - 1)] = '\0';
}

}  // namespace

void MappedFile::prepare(LossHandler& handler) {
  on_loss = &handler;
  signal(SIGBUS, on_bus_error);
}

bool MappedFile::is_worth(uint64_t size) { return size >= kWorthIt; }

bool MappedFile::open(const std::string& path) {
  close();
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return false;
  struct stat facts;
  if (fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) &&
      is_worth(static_cast<uint64_t>(facts.st_size))) {
    const auto size = static_cast<size_t>(facts.st_size);
    void* data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (data != MAP_FAILED) {
      data_ = static_cast<const char*>(data);
      size_ = size;
      expect_loss(path);
    }
  }
  ::close(file);
  return is_open();
}

void MappedFile::close() {
  if (data_ == nullptr) return;
  munmap(const_cast<char*>(data_), size_);
  mapped_path[0] = '\0';
  data_ = nullptr;
  size_ = 0;
}

}  // namespace zenfo::host
