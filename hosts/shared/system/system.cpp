#include "shared/system/system.h"

#include <cstdlib>

namespace zenfo::host::system {
namespace {

// Not with new, because the compiler may remove a new with its delete.
bool is_memory_for(int64_t size) {
  void* volatile room = std::malloc(static_cast<size_t>(size) + 1);
  const bool is_there = room != nullptr;
  std::free(room);
  return is_there;
}

}  // namespace

std::string why_too_large(int64_t size) {
  if (size > kLargestFile) return "too large to be loaded";
  return is_memory_for(size) ? "" : "there is no memory for it";
}

}  // namespace zenfo::host::system
