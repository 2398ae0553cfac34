// Which part of a file has been read: the pages of it that the system keeps in
// memory. Only Linux says that.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zenfo::test {

// The percentage of the first `size` bytes of a file.
inline size_t percent_in_memory(const std::string& path, size_t size) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  void* const data = mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
  close(file);
  EXPECT_NE(data, MAP_FAILED);
  std::vector<unsigned char> pages(size / static_cast<size_t>(getpagesize()));
  EXPECT_EQ(mincore(data, size, pages.data()), 0);
  munmap(data, size);
  const auto present =
      std::count_if(pages.begin(), pages.end(),
                    [](unsigned char page) { return (page & 1) != 0; });
  return static_cast<size_t>(present) * 100 / pages.size();
}

}  // namespace zenfo::test
