// A file descriptor and its owner.
//
// Tested by tests/unit/platform/posix_streams_test.cpp
#pragma once

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstddef>

namespace zenfo::platform {

// One call of Linux transfers at most 2 GB less one page.
inline constexpr size_t kMostPerCall = size_t{1} << 30;

// Opening never waits, not for the writer of a pipe either.
inline constexpr int kOpenFlags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

// Owns a descriptor, or none (-1), and closes it.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() { reset(-1); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return descriptor_; }
  bool is_open() const { return descriptor_ >= 0; }

  void reset(int descriptor) {
    if (is_open()) ::close(descriptor_);
    descriptor_ = descriptor;
  }
  int release() {
    const int descriptor = descriptor_;
    descriptor_ = -1;
    return descriptor;
  }
  // False when the system reports that written bytes were lost.
  bool close() {
    if (!is_open()) return true;
    const int result = ::close(descriptor_);
    descriptor_ = -1;
    return result == 0 || errno == EINTR;  // Linux closes it even then
  }

 private:
  int descriptor_ = -1;
};

// Repeats the call until no signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace zenfo::platform
