#include "mapped_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "messages.h"
#include "system.h"
#include "temporary_folder.h"

namespace zenfo::cli {
namespace {

// Smaller files are read as fast, and stay what they were when they were read.
constexpr off_t kWorthIt = 1 << 20;

// Written before the file is looked at, as the handler may not put it together.
char message[8192];
size_t message_size = 0;

void leave_without_file(int signal) {
  if (message_size == 0) {  // nothing of this is mapped
    ::signal(signal, SIG_DFL);
    raise(signal);
    return;
  }
  static_cast<void>(!write(STDERR_FILENO, message, message_size));
  temporary_folder::remove();
  system::leave(kError);
}

void expect_loss(const std::string& path) {
  const int length = std::snprintf(
      message, sizeof message,
      "zenfo: %.4096s: has been shortened while it was shown\n", path.c_str());
  message_size = static_cast<size_t>(std::max(length, 0));
}

}  // namespace

void MappedFile::prepare() { signal(SIGBUS, leave_without_file); }

bool MappedFile::open(const std::string& path) {
  close();
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return false;
  struct stat facts;
  if (fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) &&
      facts.st_size >= kWorthIt) {
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
  message_size = 0;
  data_ = nullptr;
  size_ = 0;
}

}  // namespace zenfo::cli
