// A lock on a file of this host, released when its process ends in any way; and
// whether the system has been restarted since some time.
//
// posix/run_lock.cpp and win32/run_lock.cpp are twins.
//
// Tested by tests/hosts/shared/run_lock_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::host {

class RunLock {
 public:
  RunLock() = default;
  RunLock(RunLock&& other) noexcept;
  RunLock& operator=(RunLock&& other) noexcept;
  ~RunLock() { release(); }

  // Creates the file if necessary. False when another process holds the lock,
  // or when that cannot be determined. On a file system without locks no other
  // process can hold one, so the result is true.
  bool take(const std::string& path);
  // Why the lock was not taken.
  const std::string& why_not() const { return why_not_; }
  // Waits until the lock is free. Takes no lock when the file cannot be opened.
  void wait_for(const std::string& path);
  // Releases the lock and deletes its file.
  void release_for_good();
  void release();

 private:
#ifdef _WIN32
  void* handle_ = nullptr;
#else
  bool take(const std::string& path, int how);

  int file_ = -1;
#endif
  std::string path_;
  std::string why_not_;
};

// Identifies the current boot of the system.
std::string boot_name();
// Whether the system has not been restarted since boot_name() returned `name`.
bool is_this_boot(std::string_view name);
// False when the bytes of the file may not be on the disk.
bool flush_file(const std::string& path);

}  // namespace zenfo::host
